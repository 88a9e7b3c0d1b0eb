#include "app/dashboard/passcontroller.h"

#include "app/courses/nearbyterms.h"

#include <algorithm>

namespace ellwynd {

PassController::PassController(
    UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
    RosterCache &rosterCache, PassSinks sinks, Clock now, ElapsedClock elapsed)
    : defaults(defaults),
      courseList(courseList),
      stores(stores),
      trends(trends),
      rosterCache(rosterCache),
      now(now),
      dashboardModel(defaults),
      pass(
          defaults, stores, trends, rosterCache, dashboardModel, lastDashboardInputs, sinks, now,
          elapsed) {
    connect(&pass, &ScoringPass::courseDidScore, this, &PassController::courseDidScore);
    connect(&pass, &ScoringPass::passDidEnd, this, &PassController::passDidEnd);
    connect(
        &stores.history, &RosterHistory::historyDidChange, this, &PassController::rebuildDashboard);
    connect(
        &stores.contacts, &ContactLog::contactsDidChange, this, &PassController::rebuildDashboard);
    connect(&trends, &TrendSync::trendCountsDidSync, this, &PassController::rebuildDashboard);
}

void PassController::prepareTerms() {
    const Date today = now();
    dashboardModel.prepareTerms(
        nearbyTerms(courseList.latest(), today), automaticTerm(courseList.latest(), today));
}

void PassController::start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince) {
    prepareTerms();
    pass.start(std::move(source), freshSince);
}

void PassController::stop() {
    pass.stop();
}

void PassController::resetToDisconnected() {
    pass.stop();
    lastDashboardInputs.clear();
    dashboardModel.clear();
}

void PassController::courseDidChange(const SharedCourse &course) {
    for (auto &[termID, courses] : lastDashboardInputs) {
        const auto same = std::ranges::find_if(courses, [&](const SharedCourse &each) {
            return each->course.id == course->course.id;
        });
        if (same != courses.end()) {
            *same = course;
            rebuildTerm(termID);
        }
    }
}

void PassController::rescore() {
    for (auto &[termID, courses] : lastDashboardInputs) {
        for (SharedCourse &course : courses) {
            const SharedCourse cached = rosterCache.find(course->course.id);
            const bool isSame = cached && cached->records == course->records;
            course = withCurrentThresholds(isSame ? cached : course, defaults);
        }
    }
    rebuildDashboard();
}

void PassController::rebuildDashboard() {
    for (const auto &[termID, courses] : lastDashboardInputs)
        rebuildTerm(termID);
}

void PassController::rebuildTerm(std::int64_t termID) {
    const std::vector<DashboardTerm> &terms = dashboardModel.model().terms;
    const auto shown = std::ranges::find(terms, termID, &DashboardTerm::id);
    if (shown == terms.end())
        return;
    DashboardTerm rebuilt = *shown;
    setCourses(rebuilt, lastDashboardInputs.at(termID), stores, trends, now());
    if (rebuilt != *shown)
        dashboardModel.termScored(std::move(rebuilt));
}

} // namespace ellwynd
