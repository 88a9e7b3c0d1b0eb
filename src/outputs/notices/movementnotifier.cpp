#include "outputs/notices/movementnotifier.h"

#include "base/log.h"
#include "base/text.h"

#include <QPointer>
#include <QUuid>

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"notify"};
/// Canvas's limit on a course's name.
constexpr qsizetype maxNameLength = 255;

/// Bidirectional embeddings, overrides and isolates, which affect the text after the name.
/// Directional marks do not, and occur in names.
bool reordersText(QChar c) {
    return (c >= QChar(0x202a) && c <= QChar(0x202e)) || (c >= QChar(0x2066) && c <= QChar(0x2069));
}

std::string nameInNotice(const std::string &name) {
    QString line;
    for (const QChar c : QString::fromStdString(name)) {
        const bool breaks = c.category() == QChar::Other_Control || c == QChar::LineSeparator ||
            c == QChar::ParagraphSeparator;
        if (!reordersText(c))
            line += breaks ? QChar(u' ') : c;
    }
    if (line.size() > maxNameLength) {
        // Do not split a surrogate pair.
        const bool cutsPair = line.at(maxNameLength - 1).isHighSurrogate();
        line = line.left(maxNameLength - (cutsPair ? 1 : 0)) + QChar(u'…');
    }
    return line.toStdString();
}

std::size_t studentsOf(const std::vector<CourseMovement> &courses) {
    std::size_t students = 0;
    for (const CourseMovement &course : courses)
        students += course.worseStudentIDs.size();
    return students;
}

} // namespace

std::string movementTitle(std::size_t students) {
    const auto count = std::int64_t(students);
    return fmt::format(
        "{} newly {} attention", plural(count, "student"), pluralForm(count, "needs", "need"));
}

std::string movementBody(const std::vector<CourseMovement> &courses) {
    if (courses.size() == 1)
        return nameInNotice(courses.front().courseName);
    std::vector<std::string> entries;
    for (const CourseMovement &course : courses) {
        entries.push_back(
            fmt::format("{} ({})", nameInNotice(course.courseName), course.worseStudentIDs.size()));
    }
    return join(entries, " · ");
}

MovementNotifier::MovementNotifier(
    UserDefaults &defaults, UserNotifications &notifications,
    std::function<bool()> applicationIsActive)
    : defaults(defaults),
      notifications(notifications),
      applicationIsActive(std::move(applicationIsActive)),
      observingClicks(notifications.observeClicks(
          [this](const UserNotice &notice) { Q_EMIT openRequested(notice.courseID); })) {}

MovementNotifier::~MovementNotifier() = default;

bool MovementNotifier::isEnabled() const {
    return defaults.value(preferences::movementNotifications) &&
        (!defaults.value(preferences::sampleData) ||
         defaults.value(preferences::sampleNotifications));
}

void MovementNotifier::notify(const std::vector<CourseMovement> &courses) {
    if (!isEnabled())
        return;
    std::vector<CourseMovement> fresh;
    for (const CourseMovement &course : courses) {
        CourseMovement remaining{.courseID = course.courseID, .courseName = course.courseName};
        for (const std::int64_t student : course.worseStudentIDs) {
            if (alerted[course.courseID].insert(student).second)
                remaining.worseStudentIDs.push_back(student);
        }
        if (!remaining.worseStudentIDs.empty())
            fresh.push_back(std::move(remaining));
    }
    if (fresh.empty())
        return;
    const UserNotice notice{
        .identifier =
            "movement-" + QUuid::createUuid().toString(QUuid::WithoutBraces).toStdString(),
        .title = movementTitle(studentsOf(fresh)),
        .body = movementBody(fresh),
        .courseID = fresh.size() == 1 ? std::optional(fresh.front().courseID) : std::nullopt};
    notifications.authorizationStatus(
        [self = QPointer(this), notice](UserNotifications::AuthorizationStatus status) {
            if (!self)
                return;
            if (status == UserNotifications::AuthorizationStatus::authorized)
                self->post(notice);
            else
                logger.info("Movement notification skipped: not authorized");
        });
}

void MovementNotifier::post(const UserNotice &notice) {
    if (applicationIsActive() && !defaults.value(preferences::notifyWhileActive))
        return;
    notifications.post(notice, [](const std::string &message) {
        logger.error(fmt::format("Movement notification failed: {}", message));
    });
}

void MovementNotifier::forget(std::int64_t courseID) {
    alerted.erase(courseID);
}

void MovementNotifier::forgetAll() {
    alerted.clear();
}

} // namespace ellwynd
