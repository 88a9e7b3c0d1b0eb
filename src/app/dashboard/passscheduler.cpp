#include "app/dashboard/passscheduler.h"

#include "app/courses/nearbyterms.h"
#include "base/log.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"widgets"};

/// A coarse timer keeps this within a twentieth, well inside the five minutes that it may be off.
constexpr std::chrono::seconds passInterval{1800};

} // namespace

PassScheduler::PassScheduler(
    UserDefaults &defaults, const Connector &connector, const CourseList &courseList,
    Stores &stores, TrendSync &trends, RosterCache &rosterCache, PassSinks sinks, Clock now)
    : connector(connector),
      courseList(courseList),
      stores(stores),
      trends(trends),
      rosterCache(rosterCache),
      now(now),
      dashboardModel(defaults),
      pass(defaults, stores, trends, rosterCache, dashboardModel, sinks, now) {
    connect(&pass, &ScoringPass::courseDidScore, this, &PassScheduler::courseDidScore);
    connect(&pass, &ScoringPass::passDidEnd, this, &PassScheduler::passDidEnd);
    connect(
        &stores.history, &RosterHistory::historyDidChange, this, &PassScheduler::rebuildDashboard);
    connect(
        &stores.contacts, &ContactLog::contactsDidChange, this, &PassScheduler::rebuildDashboard);
    connect(&trends, &TrendSync::trendCountsDidSync, this, &PassScheduler::rebuildDashboard);
    widgetRefreshTimer.setTimerType(Qt::CoarseTimer);
    widgetRefreshTimer.setInterval(passInterval);
    connect(&widgetRefreshTimer, &QTimer::timeout, this, &PassScheduler::timerFired);
}

void PassScheduler::startTimer() {
    widgetRefreshTimer.start();
}

void PassScheduler::prepareTerms() {
    const Date today = now();
    dashboardModel.prepareTerms(
        nearbyTerms(courseList.latest(), today), automaticTerm(courseList.latest(), today));
}

void PassScheduler::start(std::shared_ptr<CanvasReading> source) {
    pass.start(std::move(source));
}

void PassScheduler::timerFired() {
    if (courseList.isEmpty())
        return;
    try {
        if (const auto source = connector.open()) {
            Q_EMIT connectionDidOpen(source);
            prepareTerms();
            start(source);
        }
    } catch (const KeychainError &error) {
        logger.error(fmt::format("Skipping widget refresh, Keychain unreadable: {}", error.what()));
    }
}

void PassScheduler::resetToDisconnected() {
    pass.abandon();
    dashboardModel.clear();
}

void PassScheduler::rebuildDashboard() {
    const DashboardModel before = dashboardModel.model();
    for (const DashboardTerm &term : before.terms) {
        DashboardTerm rebuilt = term;
        for (DashboardCourseCard &card : rebuilt.cards) {
            if (const ScoredCourse *course = rosterCache.find(card.courseID))
                card = dashboardCard(*course, stores, trends, now());
        }
        if (rebuilt != term)
            dashboardModel.termScored(std::move(rebuilt), before.updatedAt);
    }
}

} // namespace ellwynd
