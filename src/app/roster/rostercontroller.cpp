#include "app/roster/rostercontroller.h"

#include "app/roster/termroster.h"
#include "app/roster/visit.h"
#include "base/log.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"network"};

} // namespace

RosterController::RosterController(
    const UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
    RosterCache &rosterCache, MovementNotifier *notices, Clock now)
    : defaults(defaults),
      courseList(courseList),
      stores(stores),
      trends(trends),
      rosterCache(rosterCache),
      notices(notices),
      now(now) {
    connect(
        &stores.history, &RosterHistory::historyDidChange, this,
        &RosterController::onHistoryChanged);
    connect(
        &stores.contacts, &ContactLog::contactsDidChange, this,
        &RosterController::onHistoryChanged);
}

void RosterController::setSelection(std::optional<Selection> selection) {
    currentSelection = std::move(selection);
}

std::vector<Course> RosterController::selectedCourses() const {
    if (!currentSelection || std::holds_alternative<DashboardSelection>(*currentSelection))
        return {};
    std::vector<Course> courses = courseList.known();
    std::erase_if(courses, [this](const Course &course) {
        if (const auto *one = std::get_if<CourseSelection>(&*currentSelection))
            return course.id != one->courseID;
        const auto term = course.term ? std::optional{course.term->id} : std::nullopt;
        return term != std::get<TermSelection>(*currentSelection).termID;
    });
    return courses;
}

std::string RosterController::selectionTitle() const {
    const std::vector<Course> courses = selectedCourses();
    if (courses.empty())
        return {};
    return std::holds_alternative<CourseSelection>(*currentSelection)
        ? displayName(courses.front())
        : title(groupByTerm(courses).front());
}

// ---- Loading -----------------------------------------------------------------------------------

QCoro::Task<> RosterController::load(std::shared_ptr<CanvasReading> source) {
    const QPointer<RosterController> self(this);
    const Token token = ++selectionToken;
    if (!source)
        co_return;
    const std::vector<Course> courses = selectedCourses();
    if (courses.empty()) {
        showDashboard();
        co_return;
    }
    showCached(courses);
    const bool cachedShown = rosterView.state == RosterView::State::shown;
    setLoading(true);

    auto fetching = fetch(std::move(source), courses, token);
    Fetched fetched = co_await fetching;
    // The teacher has moved on: a slow load never overwrites what was chosen after it.
    if (!self || token != selectionToken)
        co_return;
    setLoading(false);
    if (fetched.failure)
        showFailure(fetched, cachedShown);
    else
        visit(std::move(fetched.scored));
}

/// The courses side by side. Every one is awaited, also after a failure.
QCoro::Task<RosterController::Fetched> RosterController::fetch(
    std::shared_ptr<CanvasReading> source, std::vector<Course> courses, Token token) {
    const QPointer<RosterController> self(this);
    std::vector<QCoro::Task<ScoredCourse>> loads;
    for (const Course &course : courses)
        loads.push_back(loadCourse(*source, course, defaults, now));
    Fetched fetched;
    for (std::size_t i = 0; i < loads.size(); ++i) {
        try {
            fetched.scored.push_back(co_await loads[i]);
            if (self && token == selectionToken) {
                rosterView.loadedCourses = fetched.scored.size();
                Q_EMIT loadingDidChange();
            }
        } catch (const CanvasError &error) {
            fetched.failure = error;
            if (error.kind() == CanvasError::Kind::unauthorized)
                fetched.unauthorized.push_back(displayName(courses[i]));
        } catch (const std::exception &error) {
            fetched.failure = CanvasError::network(error.what());
        }
    }
    co_return fetched;
}

/// Caches what was fetched; of a single course, works out who moved since the last visit, records
/// today's levels and count, and forgets whom notices have mentioned; then shows it.
void RosterController::visit(std::vector<ScoredCourse> scored) {
    std::vector<const ScoredCourse *> shown;
    for (ScoredCourse &course : scored) {
        const std::int64_t id = course.course.id;
        shown.push_back(&rosterCache.entries.insert_or_assign(id, std::move(course)).first->second);
    }
    std::vector<RosterChange> movement;
    if (std::holds_alternative<CourseSelection>(*currentSelection)) {
        const QScopedValueRollback guard(recordingVisit, true);
        movement = recordVisit(*shown.front(), stores, trends);
        if (notices != nullptr)
            notices->forget(shown.front()->course.id);
    }
    showRoster(shown, std::move(movement));
    Q_EMIT cacheDidChange();
}

// ---- What is shown -----------------------------------------------------------------------------

/// The dashboard takes the roster's place; a load that is under way is dropped.
void RosterController::showDashboard() {
    rosterView = {};
    Q_EMIT rosterDidChange();
    setLoading(false);
}

/// Shows what earlier fetches left of the selection, or that it is loading.
void RosterController::showCached(const std::vector<Course> &courses) {
    std::vector<const ScoredCourse *> cached;
    for (const Course &course : courses) {
        if (const ScoredCourse *entry = rosterCache.find(course.id))
            cached.push_back(entry);
    }
    if (cached.size() == courses.size()) {
        showRoster(cached, movementOf(*cached.front(), stores));
        return;
    }
    rosterView = {
        .state = RosterView::State::loading,
        .title = selectionTitle(),
        .courseCount = courses.size()};
    Q_EMIT rosterDidChange();
}

void RosterController::showFailure(const Fetched &fetched, bool cachedShown) {
    const std::string error = fetched.failure->errorDescription();
    // A token that has run out is rejected for every course.
    const std::string alone = fetched.unauthorized.size() == 1
        ? fmt::format("Canvas may have refused {} alone.", fetched.unauthorized.front())
        : "";
    if (cachedShown) {
        logger.error(fmt::format("Roster freshen failed, keeping cache: {}", error));
        rosterView.staleReason = error + (alone.empty() ? "" : " " + alone);
    } else {
        rosterView = {.state = RosterView::State::failed, .title = selectionTitle()};
        if (!alone.empty())
            rosterView.notes.push_back(alone);
        Q_EMIT errorDidOccur(*fetched.failure);
    }
    Q_EMIT rosterDidChange();
}

void RosterController::showRoster(
    const std::vector<const ScoredCourse *> &courses, std::vector<RosterChange> movement) {
    RosterView view{
        .state = RosterView::State::shown,
        .title = selectionTitle(),
        .courseCount = courses.size(),
        .fetchedAt = (*std::ranges::min_element(courses, {}, &ScoredCourse::fetchedAt))->fetchedAt};
    if (std::holds_alternative<CourseSelection>(*currentSelection)) {
        const ScoredCourse &course = *courses.front();
        view.courseID = course.course.id;
        view.rows = course.rows;
        view.missedWork = course.missedWork;
        view.thresholds = course.thresholds;
        view.movement = std::move(movement);
        view.insight = courseInsight(course, stores, now());
    } else {
        view.rows = termRows(courses);
    }
    view.notes = notesOf(courses);
    view.outreach = outreachOf(view.rows, stores, now());
    rosterView = std::move(view);
    Q_EMIT rosterDidChange();
}

void RosterController::redisplayFromCache() {
    if (rosterView.state != RosterView::State::shown)
        return;
    const std::string stale = rosterView.staleReason;
    showCached(selectedCourses());
    if (!stale.empty()) {
        rosterView.staleReason = stale;
        Q_EMIT rosterDidChange();
    }
}

void RosterController::onHistoryChanged() {
    if (!recordingVisit)
        redisplayFromCache();
}

void RosterController::resetToDisconnected() {
    ++selectionToken;
    currentSelection.reset();
    rosterView = {.state = RosterView::State::notConnected};
    Q_EMIT rosterDidChange();
    setLoading(false);
}

StudentHistory RosterController::studentHistory(const RiskRow &row) const {
    return ellwynd::studentHistory(row, rosterView.movement, stores, now());
}

void RosterController::setLoading(bool loading) {
    loadingRoster = loading;
    Q_EMIT loadingDidChange();
}

} // namespace ellwynd
