// When the nearby terms are scored, and the dashboard that the passes make.
#pragma once

#include "app/courses/connector.h"
#include "app/courses/courselist.h"
#include "app/dashboard/scoringpass.h"

#include <QTimer>

namespace ellwynd {

/// Runs a scoring pass when it is asked to and every half-hour, and makes the dashboard's cards
/// again, without a fetch, when thresholds, memories or shared counts change. Lives on the main
/// thread.
class PassScheduler : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object, also the tasks that it has started.
    PassScheduler(
        UserDefaults &defaults, const Connector &connector, const CourseList &courseList,
        Stores &stores, TrendSync &trends, RosterCache &rosterCache, PassSinks sinks, Clock now);

    /// Schedules the half-hour pass.
    void startTimer();
    /// Tells the dashboard which terms are near, from the course list and today's date.
    void prepareTerms();
    /// Starts a pass over the prepared terms; it replaces one that is under way.
    void start(std::shared_ptr<CanvasReading> source);
    /// Signed out: ends the pass and forgets the cards.
    void resetToDisconnected();
    /// Makes the cards again from what is in memory.
    void rebuildDashboard();

    [[nodiscard]] Dashboard &dashboard() { return dashboardModel; }
    /// When the last pass began; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return pass.lastPassAt(); }

  Q_SIGNALS:
    /// A course's entry in the cache is new.
    void courseDidScore(std::int64_t courseID);
    /// A pass ended, with every term scored or with some that could not be.
    void passDidEnd(bool complete);
    /// The timer opened a connection of its own.
    void connectionDidOpen(std::shared_ptr<ellwynd::CanvasReading> source);

  private:
    void timerFired();

    const Connector &connector;
    const CourseList &courseList;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    Clock now;
    Dashboard dashboardModel;
    ScoringPass pass;
    QTimer widgetRefreshTimer;
};

} // namespace ellwynd
