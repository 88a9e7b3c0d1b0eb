// The interface of the system's notices, which are shown outside the program's windows.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace ellwynd {

/// A notice. Its texts are plain UTF-8; markup in them is shown literally.
struct UserNotice {
    /// Unique among the program's notices.
    std::string identifier;
    std::string title;
    std::string body;
    /// The course that a click opens; absent when a click only brings the program forward.
    std::optional<std::int64_t> courseID;

    bool operator==(const UserNotice &) const = default;
};

/// The system's notices. Used on the main thread, which it never blocks. Each callback is called at
/// most once, immediately or later, but not after this object is destroyed.
class UserNotifications {
  public:
    enum class AuthorizationStatus {
        authorized,
        /// Nothing would be shown: the system has no notices.
        denied,
    };
    using StatusAnswer = std::function<void(AuthorizationStatus)>;
    /// @param message the system's error message.
    using Failure = std::function<void(const std::string &message)>;
    using ClickObserver = std::function<void(const UserNotice &)>;

    UserNotifications() = default;
    UserNotifications(const UserNotifications &) = delete;
    UserNotifications &operator=(const UserNotifications &) = delete;
    virtual ~UserNotifications() = default;

    virtual void authorizationStatus(StatusAnswer answer) = 0;

    /// Shows a notice without a sound. `failed` is called only if it could not be shown.
    virtual void post(const UserNotice &notice, Failure failed) = 0;

    /// Calls `observer` after each click on a notice of this object, for as long as the returned
    /// handle lives.
    [[nodiscard]] virtual std::shared_ptr<void> observeClicks(ClickObserver observer) = 0;
};

/// The desktop's notices.
[[nodiscard]] std::unique_ptr<UserNotifications> makeUserNotifications();

/// Shows a notice that does nothing when it is clicked, for a process that is about to end. Blocks
/// until the system has it, at most for a few seconds. Returns an error message; absent on success.
[[nodiscard]] std::optional<std::string> postAndWait(const UserNotice &notice);

} // namespace ellwynd
