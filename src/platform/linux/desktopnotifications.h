// Notices through the Desktop Notifications Specification 1.2.
#pragma once

#include "platform/notifications/usernotifications.h"

#include <chrono>

namespace ellwynd {

/// The notification server of a freedesktop desktop, on the session bus, which starts the server if
/// it can. The status is `denied` without a server that answers.
class DesktopNotifications final : public UserNotifications {
  public:
    static constexpr auto defaultCallTimeout = std::chrono::seconds(5);

    /// @param callTimeout the time limit of one call to the server.
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
