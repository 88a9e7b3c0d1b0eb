#include "app/roster/rostercontroller.h"

#include "app/roster/termroster.h"
#include "app/roster/visit.h"
#include "base/largevalue.h"
#include "base/log.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"network"};

std::string unreadText(const Course &course, const CanvasError &failure) {
    const std::string name = displayName(course);
    std::string text = fmt::format("{} couldn’t be read: {}", name, failure.errorDescription());
    if (failure.kind() == CanvasError::Kind::unauthorized)
        text += fmt::format(" Canvas may have refused access to {} only.", name);
    return text;
}

} // namespace

RosterController::RosterController(
    const UserDefaults &defaults, const CourseList &courseList, Stores &stores, TrendSync &trends,
    RosterCache &rosterCache, MovementNotifier *notices, Clock now, ElapsedClock elapsed)
    : defaults(defaults),
      courseList(courseList),
      stores(stores),
      trends(trends),
      rosterCache(rosterCache),
      notices(notices),
      now(now),
      elapsed(elapsed) {
    connect(
        &stores.history, &RosterHistory::historyDidChange, this,
        &RosterController::onHistoryChanged);
    connect(
        &stores.contacts, &ContactLog::contactsDidChange, this,
        &RosterController::onHistoryChanged);
}

RosterController::~RosterController() {
    stopLoad.request_stop();
}

void RosterController::setSelection(std::optional<Selection> selection) {
    stop();
    currentSelection = std::move(selection);
    showSelection();
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

std::vector<SharedCourse> RosterController::cachedCourses() const {
    std::vector<SharedCourse> cached;
    for (const Course &course : selectedCourses()) {
        if (SharedCourse entry = rosterCache.find(course.id))
            cached.push_back(std::move(entry));
    }
    return cached;
}

std::optional<ElapsedTime> RosterController::cachedAt() const {
    const std::vector<SharedCourse> cached = cachedCourses();
    if (cached.empty() || cached.size() != selectedCourses().size())
        return std::nullopt;
    return (*std::ranges::min_element(cached, {}, &ScoredCourse::readAt))->readAt;
}

// ---- Loading -----------------------------------------------------------------------------------

QCoro::Task<>
RosterController::load(std::shared_ptr<CanvasReading> source, std::function<RosterRead()> kind) {
    const QPointer<RosterController> self(this);
    stop();
    const Token token = ++selectionToken;
    stopLoad = {};
    setLoading(true);
    std::vector<QCoro::Task<Outcome>> reads;
    for (const Course &course : selectedCourses())
        reads.push_back(readCourse(source, course, token));
    std::vector<Outcome> outcomes;
    for (auto &read : reads)
        outcomes.push_back(co_await read);
    // A slow load must not overwrite a later selection.
    if (!self || token != selectionToken)
        co_return;
    setLoading(false);
    const auto isRead = [](const Outcome &outcome) { return outcome.course != nullptr; };
    std::optional<CanvasError> failure;
    if (!outcomes.empty() && std::ranges::none_of(outcomes, isRead)) {
        failure = outcomes.front().failure;
        showFailure(*failure);
    } else {
        show(outcomes, kind());
    }
    if (self)
        Q_EMIT loadDidEnd(failure);
}

QCoro::Task<RosterController::Outcome>
RosterController::readCourse(std::shared_ptr<CanvasReading> source, Course course, Token token) {
    const QPointer<RosterController> self(this);
    Outcome outcome;
    try {
        SharedCourse earlier = rosterCache.find(course.id);
        auto loading = loadCourse(
            std::move(source), std::move(course), defaults, now,
            {.stop = stopLoad.get_token(), .earlier = std::move(earlier)});
        ScoredCourse scored = co_await loading;
        scored.readAt = elapsed();
        outcome.course = shareLarge(std::move(scored));
    } catch (const CanvasError &error) {
        outcome.failure = error;
    } catch (const std::exception &error) {
        outcome.failure = CanvasError::network(error.what());
    }
    if (self && token == selectionToken) {
        ++rosterView.loadedCourses;
        if (outcome.course)
            Q_EMIT courseDidArrive(outcome.course);
        Q_EMIT loadingDidChange();
    }
    co_return outcome;
}

void RosterController::stop() {
    ++selectionToken;
    stopLoad.request_stop();
    if (loadingRoster)
        setLoading(false);
}

/// Caches the courses that were read and, for a single course, records the visit. Courses that
/// could not be read are shown from the cache, with a note.
void RosterController::show(const std::vector<Outcome> &outcomes, RosterRead kind) {
    const std::vector<Course> courses = selectedCourses();
    std::vector<SharedCourse> shown;
    std::vector<SharedCourse> read;
    std::vector<std::string> notes;
    for (std::size_t i = 0; i < outcomes.size(); ++i) {
        SharedCourse course = outcomes[i].course;
        if (course) {
            course = withCurrentThresholds(course, defaults);
            rosterCache.store(course);
            read.push_back(course);
        } else {
            notes.push_back(unreadText(courses[i], *outcomes[i].failure));
            course = rosterCache.find(courses[i].id);
        }
        if (course)
            shown.push_back(std::move(course));
    }
    Q_EMIT coursesDidChange(read);
    if (shown.empty())
        return;
    std::vector<RosterChange> movement;
    if (std::holds_alternative<CourseSelection>(*currentSelection))
        movement = remember(*shown.front(), kind);
    rosterView.staleReason.clear();
    unreadCourses = std::move(notes);
    showRoster(shown, std::move(movement));
}

/// Determines the movement since the last visit, and then records today's levels and count.
std::vector<RosterChange> RosterController::remember(const ScoredCourse &course, RosterRead kind) {
    std::vector<RosterChange> movement = movementOf(course, stores);
    if (kind == RosterRead::background)
        return movement;
    if (kind == RosterRead::visit)
        visitedWith.insert_or_assign(course.course.id, course.thresholds);
    const QScopedValueRollback guard(recordingVisit, true);
    const bool isVisit = kind == RosterRead::visit;
    recordVisit(course, stores, trends, isVisit ? EntriesOfDay::replaced : EntriesOfDay::kept);
    if (notices != nullptr)
        notices->forget(course.course.id);
    return movement;
}

// ---- Display -----------------------------------------------------------------------------------

void RosterController::showSelection() {
    const std::vector<Course> courses = selectedCourses();
    rosterView = {};
    shownCourses.clear();
    unreadCourses.clear();
    if (courses.empty()) {
        if (!currentSelection)
            rosterView.state = RosterView::State::notConnected;
        Q_EMIT rosterDidChange();
        return;
    }
    const std::vector<SharedCourse> cached = cachedCourses();
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

/// Shows the cached rows again, and keeps the notes.
void RosterController::redisplayFromCache() {
    if (rosterView.state != RosterView::State::shown)
        return;
    const std::vector<SharedCourse> cached = cachedCourses();
    if (cached.empty())
        return;
    if (cached != shownCourses)
        return showRoster(cached, movementOf(*cached.front(), stores));
    if (rosterView.courseID)
        rosterView.movement = movementOf(*cached.front(), stores);
    showMemory();
    Q_EMIT rosterDidChange();
}

/// Updates what comes from the history and the contacts, but for the movement.
void RosterController::showMemory() {
    if (rosterView.courseID)
        rosterView.insight = courseInsight(*shownCourses.front(), stores, now());
    rosterView.outreach = outreachOf(rosterView.rows, stores, now());
    rosterView.remembersContacts = stores.contacts.isEnabled();
}

void RosterController::courseDidScore(std::int64_t courseID) {
    const std::vector<Course> courses = selectedCourses();
    if (loadingRoster || std::ranges::find(courses, courseID, &Course::id) == courses.end() ||
        cachedCourses().size() != courses.size())
        return;
    rosterView.staleReason.clear();
    if (courses.size() == 1)
        unreadCourses.clear();
    const std::vector<SharedCourse> cached = cachedCourses();
    showRoster(cached, movementOf(*cached.front(), stores));
}

void RosterController::showFailure(const CanvasError &failure) {
    // An expired token is rejected for every course, a missing permission only for one.
    const std::vector<Course> courses = selectedCourses();
    const bool isAlone = courses.size() == 1 && failure.kind() == CanvasError::Kind::unauthorized;
    const std::string alone = isAlone
        ? fmt::format("Canvas may have refused access to {} only.", displayName(courses.front()))
        : "";
    if (rosterView.state == RosterView::State::shown) {
        logger.error(
            fmt::format("Roster freshen failed, keeping cache: {}", failure.errorDescription()));
        rosterView.staleReason = failure.errorDescription() + (alone.empty() ? "" : " " + alone);
    } else {
        rosterView = {.state = RosterView::State::failed, .title = selectionTitle()};
        if (!alone.empty())
            rosterView.notes.push_back(alone);
    }
    Q_EMIT rosterDidChange();
}

/// Keeps the stale reason and the notes on courses that could not be read.
void RosterController::showRoster(
    const std::vector<SharedCourse> &shared, std::vector<RosterChange> movement) {
    std::vector<const ScoredCourse *> courses;
    for (const SharedCourse &course : shared)
        courses.push_back(course.get());
    RosterView view{
        .state = RosterView::State::shown,
        .title = selectionTitle(),
        .courseCount = courses.size(),
        .loadedCourses = rosterView.loadedCourses,
        .fetchedAt = (*std::ranges::min_element(courses, {}, &ScoredCourse::fetchedAt))->fetchedAt,
        .staleReason = std::move(rosterView.staleReason)};
    if (std::holds_alternative<CourseSelection>(*currentSelection)) {
        const ScoredCourse &course = *courses.front();
        view.courseID = course.course.id;
        view.rows = course.rows;
        view.missedWork = course.missedWork;
        view.thresholds = course.thresholds;
        const auto visited = visitedWith.find(course.course.id);
        view.thresholdsChanged = visited != visitedWith.end() &&
            (visited->second.passingScore != course.thresholds.passingScore ||
             visited->second.inactivityDays != course.thresholds.inactivityDays);
        view.movement = std::move(movement);
    } else {
        view.rows = termRows(courses);
    }
    view.notes = notesOf(courses);
    view.notes.insert(view.notes.end(), unreadCourses.begin(), unreadCourses.end());
    view.courseCodes = courseCodesOf(courses);
    rosterView = std::move(view);
    shownCourses = shared;
    showMemory();
    Q_EMIT rosterDidChange();
}

void RosterController::rescore() {
    bool changed = false;
    for (const SharedCourse &course : cachedCourses()) {
        const SharedCourse current = withCurrentThresholds(course, defaults);
        if (current == course)
            continue;
        changed = true;
        rosterCache.store(current);
    }
    // Others may have scored them.
    if (changed || cachedCourses() != shownCourses)
        redisplayFromCache();
}

void RosterController::onHistoryChanged() {
    if (!recordingVisit)
        redisplayFromCache();
}

void RosterController::resetToDisconnected() {
    visitedWith.clear();
    setSelection(std::nullopt);
}

StudentHistory RosterController::studentHistory(const RiskRow &row) const {
    return ellwynd::studentHistory(row, rosterView.movement, stores, now());
}

void RosterController::setLoading(bool loading) {
    loadingRoster = loading;
    Q_EMIT loadingDidChange();
}

} // namespace ellwynd
