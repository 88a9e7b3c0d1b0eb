// The word from the program to its widgets, in another process, that there is something new.
#pragma once

#include <functional>
#include <memory>

/// A signal on the session bus. It carries nothing: what is new lies in the widget container, and
/// whoever hears it looks there. Without a session bus it is neither sent nor heard.
namespace ellwynd::widgetTimelines {

/// Asks all widgets of this user to draw themselves again.
void reloadAll();

/// Calls `reload` on this thread's event loop after such a request, once for several that come
/// close together, for as long as the returned handle lives.
[[nodiscard]] std::shared_ptr<void> observe(std::function<void()> reload);

} // namespace ellwynd::widgetTimelines
