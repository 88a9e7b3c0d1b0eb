// Notifies the widgets, which are another process, that their file has changed.
#pragma once

#include <functional>
#include <memory>

/// A broadcast in the desktop session. It has no arguments: receivers reread the widget folder.
/// Without a session bus it is neither sent nor received.
namespace ellwynd::widgetTimelines {

/// Asks all widgets of this user to reload.
void reloadAll();

/// Calls `reload` on this thread's event loop after a request, once for several in quick
/// succession, for as long as the returned handle lives.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void()> reload);

} // namespace ellwynd::widgetTimelines
