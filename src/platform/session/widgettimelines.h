// Tells the widgets, which are another process, that their file has changed.
#pragma once

#include <functional>
#include <memory>

/// A broadcast in the desktop session. It carries nothing: whoever receives it reads the widget
/// container. Where the session has no such broadcast, it is neither sent nor received.
namespace ellwynd::widgetTimelines {

/// Asks all widgets of this user to draw themselves again.
void reloadAll();

/// Calls `reload` on this thread's event loop after such a request, once for several that come
/// close together, for as long as the returned handle lives.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void()> reload);

} // namespace ellwynd::widgetTimelines
