// Notices by the Desktop Notifications Specification 1.2.
#pragma once

#include "platform/notifications/usernotifications.h"

#include <chrono>

namespace ellwynd {

/// The notification server of a freedesktop desktop, on the session bus. A server that is not
/// running is started where the session knows how. Without a session bus, or while the server keeps
/// notices quiet, nothing is authorised.
class DesktopNotifications final : public UserNotifications {
  public:
    static constexpr auto defaultCallTimeout = std::chrono::seconds(5);

    /// @param callTimeout how long a server may take to answer one call.
    explicit DesktopNotifications(std::chrono::milliseconds callTimeout = defaultCallTimeout);
    ~DesktopNotifications() override;

    void authorizationStatus(StatusAnswer answer) override;
    void post(const UserNotice &notice, Failure failed) override;
    std::shared_ptr<void> observeClicks(ClickObserver observer) override;

  private:
    class State;
    std::unique_ptr<State> state;
};

} // namespace ellwynd
