// Scoring passes, and the dashboard made from their results.
#pragma once

#include "app/courses/courselist.h"
#include "app/dashboard/scoringpass.h"

#include <set>

namespace ellwynd {

/// Runs scoring passes on request, and rebuilds the dashboard's cards without fetching when
/// thresholds, the history, contacts or shared counts change. Used on the main thread.
class PassController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object and the tasks that it has started.
    PassController(
        UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
        RosterCache &rosterCache, PassSinks sinks, Clock now, ElapsedClock elapsed = elapsedNow);

    /// Sets the dashboard's nearby terms from the course list and today's date.
    void prepareTerms();
    /// Starts a pass over the terms that are nearby today, and stops a running one. Courses read at
    /// `freshSince` or later are taken from the cache; by default all are read.
    void start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince = ElapsedTime::max());
    /// Stops the running pass and its requests. It publishes nothing more.
    void stop();
    /// Stops the pass and removes the cards, after a sign-out.
    void resetToDisconnected();

    /// Updates the cards of courses that were read outside a pass.
    void coursesDidChange(const std::vector<SharedCourse> &courses);
    /// Prepares the card of a course that was read or scored again, ahead of `coursesDidChange` and
    /// `rescore`.
    void prepareCard(const SharedCourse &course);
    /// Scores the cards' courses with the current thresholds, unless the cache already holds them
    /// rescored.
    void rescore();
    /// Rebuilds the cards from the same scored courses.
    void rebuildDashboard();
    /// The same when control is back in the event loop, so that several changes, such as a visit
    /// and its levels, are one.
    void rebuildSoon();

    [[nodiscard]] Dashboard &dashboard() { return dashboardModel; }
    /// When the last pass started; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return pass.lastPassAt(); }

  Q_SIGNALS:
    /// A pass stored a course in the cache.
    void courseDidScore(std::int64_t courseID);
    void passDidEnd(ellwynd::PassResult result);

  private:
    void termDidChange(std::int64_t termID);
    void rebuildTerm(std::int64_t termID);
    void forgetOldSummaries();

    UserDefaults &defaults;
    const CourseList &courseList;
    Stores &stores;
    RosterCache &rosterCache;
    Clock now;
    Dashboard dashboardModel;
    DashboardInputs lastDashboardInputs;
    /// Those that are rebuilt soon.
    std::set<std::int64_t> changedTerms;
    CourseSummaries summaries;
    ScoringPass pass;
};

} // namespace ellwynd
