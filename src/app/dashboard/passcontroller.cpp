#include "app/dashboard/passcontroller.h"

#include "app/courses/nearbyterms.h"

#include <algorithm>
#include <utility>

namespace ellwynd {

PassController::PassController(
    UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
    RosterCache &rosterCache, PassSinks sinks, Clock now, ElapsedClock elapsed)
    : defaults(defaults),
      courseList(courseList),
      stores(stores),
      rosterCache(rosterCache),
      now(now),
      dashboardModel(defaults),
      summaries(stores, trends),
      pass(
          defaults, stores, rosterCache, dashboardModel, lastDashboardInputs, summaries, sinks, now,
          elapsed) {
    connect(&pass, &ScoringPass::courseDidScore, this, &PassController::courseDidScore);
    connect(&pass, &ScoringPass::passDidEnd, this, &PassController::forgetOldSummaries);
    connect(&pass, &ScoringPass::passDidEnd, this, &PassController::passDidEnd);
    connect(&stores.history, &RosterHistory::historyDidChange, this, &PassController::rebuildSoon);
    connect(&trends, &TrendSync::trendCountsDidSync, this, &PassController::rebuildSoon);
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
    forgetOldSummaries();
    dashboardModel.clear();
}

void PassController::coursesDidChange(const std::vector<SharedCourse> &courses) {
    std::map<std::int64_t, SharedCourse> changed;
    for (const SharedCourse &course : courses)
        changed.emplace(course->course.id, course);
    for (auto &[termID, shown] : lastDashboardInputs) {
        bool isChanged = false;
        for (SharedCourse &each : shown) {
            if (const auto found = changed.find(each->course.id); found != changed.end()) {
                each = found->second;
                isChanged = true;
            }
        }
        if (isChanged)
            termDidChange(termID);
    }
    forgetOldSummaries();
}

void PassController::prepareCard(const SharedCourse &course) {
    const bool isShown = std::ranges::any_of(lastDashboardInputs, [&](const auto &term) {
        return std::ranges::any_of(term.second, [&](const SharedCourse &each) {
            return each->course.id == course->course.id;
        });
    });
    if (isShown)
        static_cast<void>(summaries.of(course, now()));
}

void PassController::rescore() {
    for (auto &[termID, courses] : lastDashboardInputs) {
        for (SharedCourse &course : courses) {
            const SharedCourse cached = rosterCache.find(course->course.id);
            const bool isSame = cached && cached->records == course->records;
            course = withCurrentThresholds(isSame ? cached : course, defaults);
        }
    }
    rebuildSoon();
    forgetOldSummaries();
}

void PassController::rebuildDashboard() {
    for (const auto &[termID, courses] : lastDashboardInputs)
        rebuildTerm(termID);
}

void PassController::rebuildSoon() {
    for (const auto &[termID, courses] : lastDashboardInputs)
        termDidChange(termID);
}

void PassController::termDidChange(std::int64_t termID) {
    if (changedTerms.empty())
        QMetaObject::invokeMethod(
            this,
            [this] {
                for (const std::int64_t changed : std::exchange(changedTerms, {}))
                    rebuildTerm(changed);
            },
            Qt::QueuedConnection);
    changedTerms.insert(termID);
}

void PassController::rebuildTerm(std::int64_t termID) {
    const std::vector<DashboardTerm> &terms = dashboardModel.model().terms;
    const auto shown = std::ranges::find(terms, termID, &DashboardTerm::id);
    const auto inputs = lastDashboardInputs.find(termID);
    if (shown == terms.end() || inputs == lastDashboardInputs.end())
        return;
    DashboardTerm rebuilt = *shown;
    setCourses(rebuilt, inputs->second, summaries, stores, now());
    if (rebuilt != *shown)
        dashboardModel.termScored(std::move(rebuilt));
}

void PassController::forgetOldSummaries() {
    std::vector<SharedCourse> shown;
    for (const auto &[termID, courses] : lastDashboardInputs)
        shown.insert(shown.end(), courses.begin(), courses.end());
    summaries.keep(shown);
}

} // namespace ellwynd
