// Posts notices about students whose level got worse.
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
    /// As in Canvas; may contain any characters.
    std::string courseName;
    /// Students whose level is worse than at the last visit.
    std::vector<std::int64_t> worseStudentIDs;
};

/// "1 student newly needs attention".
[[nodiscard]] std::string movementTitle(std::size_t students);

/// The name of a single course, or "Biology (2) · Chemistry (1)". In names, control characters are
/// replaced by spaces, characters that would reorder the following text are removed, and names of
/// more than 255 characters, which is Canvas's limit, are truncated with "…".
[[nodiscard]] std::string movementBody(const std::vector<CourseMovement> &courses);

/// Posts at most one silent notice for each scoring pass, with counts and course names but no
/// students' names. Each student is counted once until the course is opened. Controlled by the
/// preferences "MovementNotifications", "NotifyWhileActive" and, in the sample college,
/// "SampleNotifications". Used on the main thread.
class MovementNotifier : public QObject {
    Q_OBJECT

  public:
    /// @param applicationIsActive whether one of the program's windows is active.
    MovementNotifier(
        UserDefaults &defaults, UserNotifications &notifications,
        std::function<bool()> applicationIsActive);
    ~MovementNotifier() override;

    /// Posts the notice of a scoring pass. Its students are then not counted again, whether or not
    /// the system shows the notice. Does nothing while notices are switched off.
    void notify(const std::vector<CourseMovement> &courses);

    /// Called when a course is opened: its students may be counted again.
    void forget(std::int64_t courseID);
    /// Called when the teacher signs out: the ids of another institution are of other students.
    void forgetAll();

  Q_SIGNALS:
    /// A notice was clicked.
    /// @param courseID the course of the notice; absent if it was about several.
    void openRequested(std::optional<std::int64_t> courseID);

  private:
    [[nodiscard]] bool isEnabled() const;
    void post(const UserNotice &notice);

    UserDefaults &defaults;
    UserNotifications &notifications;
    std::function<bool()> applicationIsActive;
    /// By course, the students counted since it was last opened.
    std::map<std::int64_t, std::set<std::int64_t>> alerted;
    std::shared_ptr<void> observingClicks;
};

} // namespace ellwynd
