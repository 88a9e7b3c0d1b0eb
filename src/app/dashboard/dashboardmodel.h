// The data of the dashboard: one card for each course of every nearby term.
#pragma once

#include "app/courses/courselabel.h"
#include "app/dashboard/dashboardstudents.h"
#include "base/sharedlist.h"
#include "canvas/records/termgroups.h"
#include "memory/trendsync.h"
#include "risk/levelcounts.h"

#include <QObject>

#include <map>

namespace ellwynd {

/// The assignment that the most students of a course are missing.
struct MostMissed {
    std::string title;
    /// Students missing it.
    std::int64_t count = 0;
    /// Whether it is left out of every student's score, since most of the class is missing it.
    bool isClassWide = false;

    bool operator==(const MostMissed &) const = default;
};

/// The current figures of one course.
struct DashboardCourseCard {
    std::int64_t courseID = 0;
    std::string name;
    /// The name in two parts, for the window.
    CourseLabel label;
    LevelCounts levels;
    /// All students that were scored.
    std::int64_t total = 0;
    // Students whose level changed since the last visit.
    std::int64_t slipped = 0;
    std::int64_t newlyFlagged = 0;
    std::int64_t improved = 0;
    std::int64_t awaitingFollowUp = 0;
    /// Flagged students on each recorded day of the last two weeks, oldest first, and today.
    std::vector<std::int64_t> trend;
    /// Absent if no assignment is missing.
    std::optional<MostMissed> mostMissed;

    [[nodiscard]] std::int64_t flagged() const { return levels.flagged(); }
    bool operator==(const DashboardCourseCard &) const = default;
};

struct DashboardTerm {
    std::int64_t id = 0;
    std::string title;
    /// When the last of its courses had been read.
    Date updatedAt;
    std::vector<DashboardCourseCard> cards;
    /// Students with a level in any of the courses, each counted once.
    std::int64_t flaggedStudents = 0;
    /// The flagged students of all courses, in the order in which they need the teacher.
    SharedList<DashboardStudent> students;
    /// Whether contacts are remembered; otherwise nobody is known to have been written to.
    bool remembersContacts = true;

    bool operator==(const DashboardTerm &) const = default;
};

/// The result of scoring passes.
struct DashboardModel {
    /// When the last complete pass ended; before that, when the first term was scored.
    Date updatedAt;
    /// The term that "Automatic" selects; absent if no term has started.
    std::optional<std::int64_t> automaticTermID;
    /// The terms whose courses have all been scored, newest start first. Terms that are no longer
    /// nearby come last and stay until a pass is complete.
    std::vector<DashboardTerm> terms;

    bool operator==(const DashboardModel &) const = default;
};

/// Makes a course's card. Days that this machine did not record are taken from the shared counts;
/// days without either are left out of the trend, which ends with the day of the fetch.
/// @param movement the course's changes of level since the last visit.
/// @param flagged the course's flagged students.
[[nodiscard]] DashboardCourseCard dashboardCard(
    const ScoredCourse &course, const std::vector<RosterChange> &movement,
    const std::vector<DashboardStudent> &flagged, const Stores &stores, const TrendSync &trends);

/// The progress of a pass, in courses.
struct PassProgress {
    bool running = false;
    std::int64_t done = 0;
    std::int64_t total = 0;
    /// Courses still to be scored, by term. Courses that failed count as done.
    std::map<std::int64_t, std::int64_t> remaining;

    bool operator==(const PassProgress &) const = default;
};

/// The dashboard's model, the terms known before they are scored, and the progress of a pass.
/// Follows "DashboardTermID". Used on the main thread.
class Dashboard : public QObject {
    Q_OBJECT

  public:
    /// @param defaults must outlive this object.
    explicit Dashboard(UserDefaults &defaults);

    /// Sets the nearby terms once the course list has arrived.
    void prepareTerms(std::vector<TermGroup> nearby, const std::optional<Term> &automatic);
    void beginPass();
    void courseScored(std::int64_t termID);
    void courseFailed(std::int64_t termID, const std::string &courseName);
    /// Adds or replaces a term whose courses have all been scored.
    void termScored(DashboardTerm term);
    /// Ends a pass that scored every term, and removes terms that are no longer nearby.
    void passCompleted(Date fetchedAt);
    /// Ends a pass in which a course could not be scored.
    void passFailed();
    /// Ends a pass that was stopped.
    void passAbandoned();
    /// Removes everything, after a sign-out.
    void clear();

    /// Saves the choice of a term; 0 selects Automatic. Nothing is fetched.
    void selectTerm(std::int64_t termID);

    [[nodiscard]] const DashboardModel &model() const { return current; }
    [[nodiscard]] const std::vector<TermGroup> &preparedTerms() const { return prepared; }
    [[nodiscard]] const PassProgress &progress() const { return pass; }
    [[nodiscard]] bool lastPassFailed() const { return failed; }
    /// The names of a term's courses that the last pass could not read.
    [[nodiscard]] std::vector<std::string> failedCourses(std::int64_t termID) const;
    /// The saved choice if its term is nearby; otherwise 0.
    [[nodiscard]] std::int64_t chosenTermID() const;
    /// The term to show: the chosen one, else the automatic one if it is nearby, else the newest
    /// nearby one. Absent if no term is nearby.
    [[nodiscard]] std::optional<std::int64_t> shownTermID() const;
    /// The term to show; null until it has been scored. Valid until the model changes.
    [[nodiscard]] const DashboardTerm *shownTerm() const;

  Q_SIGNALS:
    void dashboardModelDidChange();

  private:
    [[nodiscard]] bool isPrepared(std::int64_t termID) const;

    UserDefaults &defaults;
    DashboardModel current;
    std::vector<TermGroup> prepared;
    PassProgress pass;
    bool failed = false;
    std::map<std::int64_t, std::vector<std::string>> failures;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
