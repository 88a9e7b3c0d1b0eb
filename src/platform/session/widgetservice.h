// Brings the widgets, which are another process, to the front.
#pragma once

#include <functional>
#include <memory>

/// A method in the desktop session, without arguments. Used on the main thread.
namespace ellwynd::widgetService {

enum class Answer {
    /// The widgets are in front of the other windows.
    inFront,
    /// They are shown, but this desktop does not let them come to the front.
    behind,
    /// No widgets are running in this session, or there is no session bus.
    notRunning,
    /// The process of the widgets does not answer.
    silent,
};

/// Asks the running widgets to show all cards in front. `answered` is called once, on the event
/// loop or at once, within a few seconds.
void show(std::function<void(Answer)> answered);

/// Answers such calls for as long as the returned handle lives.
/// @param show shows the cards, and returns whether they are in front.
[[nodiscard]] std::shared_ptr<void> serve(std::function<bool()> show);

} // namespace ellwynd::widgetService
