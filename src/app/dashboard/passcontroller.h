// The scoring passes and the dashboard that they make.
#pragma once

#include "app/courses/courselist.h"
#include "app/dashboard/scoringpass.h"

namespace ellwynd {

/// Runs a scoring pass when it is told to, and makes the dashboard's cards again, without a fetch,
/// when thresholds, memories or shared counts change. Lives on the main thread.
class PassController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object, also the tasks that it has started.
    PassController(
        UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
        RosterCache &rosterCache, PassSinks sinks, Clock now, ElapsedClock elapsed = elapsedNow);

    /// Tells the dashboard which terms are near, from the course list and today's date.
    void prepareTerms();
    /// Starts a pass over the terms that are near today; it replaces one that is under way. Courses
    /// that were read at `freshSince` or later are not read again.
    void start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince = ElapsedTime::max());
    /// Stops the requests of a pass that is under way, which publishes nothing more.
    void stop();
    /// Signed out: stops the pass and forgets the cards.
    void resetToDisconnected();

    /// A roster on screen was read or scored again: its card follows.
    void courseDidChange(const SharedCourse &course);
    /// Scores the cards' courses with the thresholds as they are now, or takes them from the cache
    /// where that was done.
    void rescore();
    /// Makes the cards again from what they were last made from.
    void rebuildDashboard();

    [[nodiscard]] Dashboard &dashboard() { return dashboardModel; }
    /// When the last pass began; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return pass.lastPassAt(); }

  Q_SIGNALS:
    /// A course's entry in the cache is new.
    void courseDidScore(std::int64_t courseID);
    void passDidEnd(ellwynd::PassResult result);

  private:
    void rebuildTerm(std::int64_t termID);

    UserDefaults &defaults;
    const CourseList &courseList;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    Clock now;
    Dashboard dashboardModel;
    DashboardInputs lastDashboardInputs;
    ScoringPass pass;
};

} // namespace ellwynd
