// Notices that the system shows outside the program's windows.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ellwynd {

/// One notice. Its texts are plain UTF-8: markup in them is shown as it is written.
struct UserNotice {
    /// The program's own name for it, unique among its notices.
    std::string identifier;
    std::string title;
    std::string body;
    /// The course that a click opens; absent when a click only brings the program forward.
    std::optional<std::int64_t> courseID;

    bool operator==(const UserNotice &) const = default;
};

/// The system's notices. Lives on the main thread and never blocks it. What is asked is answered
/// once, now or later; after this object is gone, not at all.
class UserNotifications {
  public:
    enum class AuthorizationStatus {
        authorized,
        /// Nothing would be shown: the system has no notices, or keeps them quiet.
        denied,
    };
    using StatusAnswer = std::function<void(AuthorizationStatus)>;
    /// @param message the system's.
    using Failure = std::function<void(const std::string &message)>;
    using ClickObserver = std::function<void(const UserNotice &)>;

    UserNotifications() = default;
    UserNotifications(const UserNotifications &) = delete;
    UserNotifications &operator=(const UserNotifications &) = delete;
    virtual ~UserNotifications() = default;

    virtual void authorizationStatus(StatusAnswer answer) = 0;

    /// Shows a notice at once, without a sound. `failed` is called only when it could not be shown.
    virtual void post(const UserNotice &notice, Failure failed) = 0;

    /// Calls `observer` after each click on a notice of this object, for as long as the returned
    /// handle lives.
    [[nodiscard]] virtual std::shared_ptr<void> observeClicks(ClickObserver observer) = 0;
};

/// The desktop's notices.
[[nodiscard]] std::unique_ptr<UserNotifications> makeUserNotifications();

} // namespace ellwynd
