// What the dashboard knows: one card per course of every nearby term.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "canvas/records/termgroups.h"
#include "memory/trendsync.h"
#include "risk/levelcounts.h"

#include <QObject>

#include <map>
#include <span>

namespace ellwynd {

/// The assignment that most of a class is missing.
struct MostMissed {
    std::string title;
    /// Students missing it.
    std::int64_t count = 0;

    bool operator==(const MostMissed &) const = default;
};

/// Where one class stands.
struct DashboardCourseCard {
    std::int64_t courseID = 0;
    std::string name;
    LevelCounts levels;
    /// All students that were scored.
    std::int64_t total = 0;
    // Students who moved since the last visit.
    std::int64_t slipped = 0;
    std::int64_t newlyFlagged = 0;
    std::int64_t improved = 0;
    std::int64_t awaitingFollowUp = 0;
    /// Flagged students per recorded day of the last two weeks, oldest first; the last is today.
    std::vector<std::int64_t> trend;
    std::optional<MostMissed> mostMissed;

    [[nodiscard]] std::int64_t flagged() const { return levels.flagged(); }
    bool operator==(const DashboardCourseCard &) const = default;
};

struct DashboardTerm {
    std::int64_t id = 0;
    std::string title;
    /// When the pass that made the cards read the term.
    Date updatedAt;
    std::vector<DashboardCourseCard> cards;
    /// Students with a level in any of the courses, each counted once.
    std::int64_t flaggedStudents = 0;

    bool operator==(const DashboardTerm &) const = default;
};

/// The result of scoring passes.
struct DashboardModel {
    /// When the last complete pass ended; before the first, when its first term was scored.
    Date updatedAt;
    /// What "Automatic" stands for; absent when no term has started.
    std::optional<std::int64_t> automaticTermID;
    /// Every nearby term that was scored whole, newest start first.
    std::vector<DashboardTerm> terms;

    bool operator==(const DashboardModel &) const = default;
};

/// A course's card. Days that this machine did not record are filled from the shared counts; days
/// that neither knows carry no value.
[[nodiscard]] DashboardCourseCard
dashboardCard(const ScoredCourse &course, const Stores &stores, const TrendSync &trends, Date now);

/// Sets the cards and figures of a term from its courses.
void setCourses(
    DashboardTerm &term, std::span<const SharedCourse> courses, const Stores &stores,
    const TrendSync &trends, Date now);

/// How far a pass is.
struct PassProgress {
    bool running = false;
    std::int64_t done = 0;
    std::int64_t total = 0;
    /// Courses still to score, by term; those that failed are done as well.
    std::map<std::int64_t, std::int64_t> remaining;

    bool operator==(const PassProgress &) const = default;
};

/// The model with what is known before and while it is made. Follows "DashboardTermID". Lives on
/// the main thread.
class Dashboard : public QObject {
    Q_OBJECT

  public:
    explicit Dashboard(UserDefaults &defaults);

    /// The nearby terms, as soon as the course list is in.
    void prepareTerms(std::vector<TermGroup> nearby, const std::optional<Term> &automatic);
    void beginPass();
    void courseScored(std::int64_t termID);
    void courseFailed(std::int64_t termID, const std::string &courseName);
    /// Adds or replaces a term that was scored whole.
    void termScored(DashboardTerm term);
    /// A pass whose every term was scored; terms that are no longer nearby go.
    void passCompleted(Date fetchedAt);
    void passFailed();
    /// A pass that publishes nothing.
    void passAbandoned();
    /// Signed out: nothing is known any more.
    void clear();

    /// Stores the choice; 0 is Automatic. Nothing is fetched.
    void selectTerm(std::int64_t termID);

    [[nodiscard]] const DashboardModel &model() const { return current; }
    [[nodiscard]] const std::vector<TermGroup> &preparedTerms() const { return prepared; }
    [[nodiscard]] const PassProgress &progress() const { return pass; }
    [[nodiscard]] bool lastPassFailed() const { return failed; }
    /// The courses of a term that the last pass could not read, by name.
    [[nodiscard]] std::vector<std::string> failedCourses(std::int64_t termID) const;
    /// The stored choice where its term is prepared, else 0.
    [[nodiscard]] std::int64_t chosenTermID() const;
    /// The term to show: the chosen one, else the automatic one, else the newest prepared.
    [[nodiscard]] std::optional<std::int64_t> shownTermID() const;
    /// Null while the term is not in the model.
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
