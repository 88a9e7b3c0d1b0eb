// The notice of students who newly do worse.
#pragma once

#include "platform/notifications/usernotifications.h"
#include "preferences/userdefaults.h"

#include <QObject>

#include <map>
#include <set>
#include <vector>

namespace ellwynd {

/// One course of a scoring pass.
struct CourseMovement {
    std::int64_t courseID = 0;
    /// As Canvas gives it.
    std::string courseName;
    /// Students whose level is worse than at the last visit.
    std::vector<std::int64_t> worseStudentIDs;
};

/// "1 student newly needs attention", or more of them.
[[nodiscard]] std::string movementTitle(std::size_t students);

/// The name of the one course, or "Biology (2) · Chemistry (1)". A name is one line of its own:
/// control characters become spaces, those that would turn the text around after it are left out,
/// and it ends in "…" where it is longer than Canvas's 255 characters.
[[nodiscard]] std::string movementBody(const std::vector<CourseMovement> &courses);

/// Posts at most one quiet notice for each scoring pass: counts and course names, never a student's
/// name, and each student once until their course is opened. Follows "MovementNotifications",
/// "NotifyWhileActive" and, in the sample college, "SampleNotifications". Lives on the main thread.
class MovementNotifier : public QObject {
    Q_OBJECT

  public:
    /// @param applicationIsActive whether one of the program's windows is in front.
    MovementNotifier(
        UserDefaults &defaults, UserNotifications &notifications,
        std::function<bool()> applicationIsActive);
    ~MovementNotifier() override;

    /// Takes a pass's result. Students count as mentioned from now on, whether or not the system
    /// shows the notice; while notices are switched off nobody does.
    void notify(const std::vector<CourseMovement> &courses);

    /// The course was opened: its students can be mentioned again.
    void forget(std::int64_t courseID);

  Q_SIGNALS:
    /// @param courseID what the notice was about, if that was one course.
    void noticeClicked(std::optional<std::int64_t> courseID);

  private:
    [[nodiscard]] bool isEnabled() const;
    void post(const UserNotice &notice);

    UserDefaults &defaults;
    UserNotifications &notifications;
    std::function<bool()> applicationIsActive;
    /// By course, the students mentioned since it was last opened.
    std::map<std::int64_t, std::set<std::int64_t>> alerted;
    std::shared_ptr<void> observingClicks;
};

} // namespace ellwynd
