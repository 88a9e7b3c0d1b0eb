#include "app/mainwindowcontroller.h"

#include "app/courses/nearbyterms.h"
#include "app/roster/termroster.h"
#include "base/log.h"
#include "canvas/sample/samplecanvasclient.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"network"};
constexpr Log widgetLog{"widgets"};

/// A coarse timer keeps this within a twentieth, well inside the five minutes that it may be off.
constexpr std::chrono::seconds passInterval{1800};
/// Coming to the front again and again fetches nothing more often than this.
constexpr std::chrono::minutes freshEnough{5};

} // namespace

MainWindowController::MainWindowController(
    UserDefaults &preferenceStore, const Connector &connections, Stores &memory,
    TrendSync &trendSync, PassOutlets results, Clock clock)
    : defaults(preferenceStore),
      connector(connections),
      stores(memory),
      trends(trendSync),
      now(clock),
      dashboardModel(preferenceStore),
      outlets(results),
      pass(preferenceStore, memory, trendSync, rosterCache, dashboardModel, results, clock),
      rosterActions(rosterView, preferenceStore, memory, clock),
      observing(preferenceStore.observe([this](std::string_view key) { preferenceChanged(key); })) {
    connect(
        &stores.history, &RosterHistory::historyDidChange, this,
        &MainWindowController::showWhatIsRemembered);
    connect(
        &stores.contacts, &ContactLog::contactsDidChange, this,
        &MainWindowController::showWhatIsRemembered);
    connect(&trends, &TrendSync::trendCountsDidSync, this, &MainWindowController::rebuildDashboard);
    connect(&pass, &ScoringPass::courseDidScore, this, &MainWindowController::coursesDidChange);
    connect(&pass, &ScoringPass::passDidEnd, this, &MainWindowController::passDidEnd);
    widgetRefreshTimer.setTimerType(Qt::CoarseTimer);
    widgetRefreshTimer.setInterval(passInterval);
    connect(&widgetRefreshTimer, &QTimer::timeout, this, &MainWindowController::timerFired);
}

MainWindowController::~MainWindowController() = default;

// ---- The course list ---------------------------------------------------------------------------

void MainWindowController::refresh() {
    if (isRefreshing) {
        refreshQueued = true;
        return;
    }
    try {
        source = connector.open();
    } catch (const KeychainError &error) {
        showKeychainUnavailable(error);
        return;
    }
    if (!source) {
        becomeNotConnected();
        return;
    }
    isRefreshing = true;
    setStatus("Loading courses…");
    fetchCourseList(source);
}

QCoro::Task<> MainWindowController::fetchCourseList(std::shared_ptr<CanvasReading> from) {
    const QPointer<MainWindowController> self(this);
    std::optional<CanvasError> failure;
    std::vector<Course> courses;
    try {
        courses = co_await from->fetchCourses();
    } catch (const CanvasError &error) {
        failure = error;
    } catch (const std::exception &error) {
        failure = CanvasError::network(error.what());
    }
    if (!self)
        co_return;
    if (failure) {
        const bool rejected = failure->which() == CanvasError::Case::unauthorized;
        setStatus(rejected ? "Canvas rejected the token" : "Couldn’t load");
        Q_EMIT errorDidOccur(*failure);
    } else {
        latestCourses = std::move(courses);
        const std::size_t count = latestCourses.size();
        setStatus(fmt::format(
            "{}{} course{}", defaults.value(preferences::sampleData) ? "Sample college · " : "",
            count, count == 1 ? "" : "s"));
        const Date today = now();
        dashboardModel.prepareTerms(
            nearbyTerms(latestCourses, today), automaticTerm(latestCourses, today));
        Q_EMIT coursesDidChange();
        reselect();
        freshenThenPass(std::move(from));
    }
    refreshEnded();
}

/// What is on screen first, so that its requests are not behind those of every other course.
QCoro::Task<> MainWindowController::freshenThenPass(std::shared_ptr<CanvasReading> from) {
    const QPointer<MainWindowController> self(this);
    const std::vector<Course> courses = selectedCourses();
    ++selectionToken;
    if (courses.empty()) {
        showDashboard();
    } else {
        showCached(courses);
        co_await fetchRoster(from, courses);
    }
    if (self && source == from)
        pass.start(std::move(from));
}

void MainWindowController::startTimer() {
    widgetRefreshTimer.start();
}

void MainWindowController::timerFired() {
    if (latestCourses.empty())
        return;
    try {
        if (auto connection = connector.open()) {
            source = std::move(connection);
            const Date today = now();
            dashboardModel.prepareTerms(
                nearbyTerms(latestCourses, today), automaticTerm(latestCourses, today));
            pass.start(source);
        }
    } catch (const KeychainError &error) {
        widgetLog.error(
            fmt::format("Skipping widget refresh, Keychain unreadable: {}", error.what()));
    }
}

void MainWindowController::cameBack() {
    const bool passIsFresh = pass.lastPassAt() && now() - *pass.lastPassAt() < freshEnough;
    if (source && !latestCourses.empty() && !isRefreshing && !passIsFresh)
        freshenThenPass(source);
}

/// The course that was waited for, else what was selected if it is still there, else the dashboard.
void MainWindowController::reselect() {
    const auto pending = std::exchange(pendingCourseID, std::nullopt);
    if (pending && std::ranges::count(knownCourses(), *pending, &Course::id) > 0)
        currentSelection = CourseSelection{*pending};
    if (selectedCourses().empty())
        currentSelection = DashboardSelection{};
}

void MainWindowController::showCourse(std::int64_t courseID) {
    if (latestCourses.empty())
        pendingCourseID = courseID;
    else if (currentSelection == Selection(CourseSelection{courseID}))
        refreshRoster();
    else if (std::ranges::count(knownCourses(), courseID, &Course::id) > 0)
        select(CourseSelection{courseID});
}

void MainWindowController::refreshEnded() {
    isRefreshing = false;
    Q_EMIT loadingDidChange();
    if (std::exchange(refreshQueued, false))
        refresh();
}

/// What is on screen stays there: an unreadable Keychain is not a sign-out.
void MainWindowController::showKeychainUnavailable(const KeychainError &error) {
    logger.error(fmt::format("Keychain unreadable: {}", error.what()));
    setStatus("Keychain unavailable");
}

void MainWindowController::becomeNotConnected() {
    currentSelection.reset();
    latestCourses.clear();
    rosterCache.entries.clear();
    pass.abandon();
    dashboardModel.clear();
    outlets.widgets.clear();
    ++selectionToken;
    loadingRoster = false;
    rosterView = {.state = RosterView::State::notConnected};
    setStatus("Not connected");
    Q_EMIT coursesDidChange();
    Q_EMIT rosterDidChange();
}

std::vector<Course> MainWindowController::knownCourses() const {
    std::vector<Course> courses = latestCourses;
    if (defaults.value(preferences::sampleData) && !courses.empty())
        std::ranges::copy(SampleCanvasClient::olderCourses(now()), std::back_inserter(courses));
    return courses;
}

std::vector<TermGroup> MainWindowController::sidebarTerms() const {
    std::vector<TermGroup> terms = groupByTerm(knownCourses());
    const auto limit = std::size_t(defaults.value(preferences::sidebarTermLimit));
    if (limit > 0 && terms.size() > limit) {
        // The courses without a term are no term, and are always listed.
        const bool others = !terms.back().term;
        terms.erase(terms.begin() + std::ptrdiff_t(limit), terms.end() - (others ? 1 : 0));
    }
    return terms;
}

std::optional<std::int64_t> MainWindowController::flaggedStudents(std::int64_t courseID) const {
    const ScoredCourse *course = rosterCache.find(courseID);
    return course != nullptr ? std::optional{flaggedCount(course->rows)} : std::nullopt;
}

// ---- Rosters -----------------------------------------------------------------------------------

void MainWindowController::select(const Selection &selection) {
    if (currentSelection == selection)
        return;
    currentSelection = selection;
    loadSelection();
}

void MainWindowController::refreshRoster() {
    loadSelection();
}

void MainWindowController::loadSelection() {
    ++selectionToken;
    const std::vector<Course> courses = selectedCourses();
    if (!source)
        return;
    if (courses.empty()) {
        showDashboard();
        return;
    }
    showCached(courses);
    fetchRoster(source, courses);
}

std::vector<Course> MainWindowController::selectedCourses() const {
    std::vector<Course> courses = knownCourses();
    if (!currentSelection || std::holds_alternative<DashboardSelection>(*currentSelection))
        return {};
    std::erase_if(courses, [this](const Course &course) {
        if (const auto *one = std::get_if<CourseSelection>(&*currentSelection))
            return course.id != one->courseID;
        const auto term = course.term ? std::optional{course.term->id} : std::nullopt;
        return term != std::get<TermSelection>(*currentSelection).termID;
    });
    return courses;
}

std::string MainWindowController::selectionTitle() const {
    const std::vector<Course> courses = selectedCourses();
    if (courses.empty())
        return {};
    return std::holds_alternative<CourseSelection>(*currentSelection)
        ? displayName(courses.front())
        : title(groupByTerm(courses).front());
}

/// The dashboard stands in the roster's place; a load that is under way is dropped.
void MainWindowController::showDashboard() {
    loadingRoster = false;
    rosterView = {};
    Q_EMIT rosterDidChange();
    Q_EMIT loadingDidChange();
}

/// Shows what earlier fetches left of the selection, or that it is loading.
void MainWindowController::showCached(const std::vector<Course> &courses) {
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

QCoro::Task<> MainWindowController::fetchRoster(
    std::shared_ptr<CanvasReading> from, std::vector<Course> courses) {
    const QPointer<MainWindowController> self(this);
    const Token token = selectionToken;
    const bool cachedShown = rosterView.state == RosterView::State::shown;
    loadingRoster = true;
    Q_EMIT loadingDidChange();

    std::vector<QCoro::Task<ScoredCourse>> loads;
    for (const Course &course : courses)
        loads.push_back(loadCourse(*from, course, defaults, now));
    std::vector<ScoredCourse> scored;
    std::optional<CanvasError> failure;
    for (auto &load : loads) {
        try {
            scored.push_back(co_await load);
            if (self && token == selectionToken) {
                rosterView.loadedCourses = scored.size();
                Q_EMIT loadingDidChange();
            }
        } catch (const CanvasError &error) {
            failure = error;
        } catch (const std::exception &error) {
            failure = CanvasError::network(error.what());
        }
    }
    // The teacher has moved on: a slow load never overwrites what was chosen after it.
    if (!self || token != selectionToken)
        co_return;
    loadingRoster = false;
    Q_EMIT loadingDidChange();
    if (failure) {
        showFailure(*failure, cachedShown);
        co_return;
    }
    std::vector<const ScoredCourse *> shown;
    for (ScoredCourse &course : scored) {
        const std::int64_t id = course.course.id;
        shown.push_back(
            &(rosterCache.entries.insert_or_assign(id, std::move(course)).first->second));
    }
    std::vector<RosterChange> movement;
    if (std::holds_alternative<CourseSelection>(*currentSelection)) {
        const QScopedValueRollback guard(recordingVisit, true);
        movement = recordVisit(*shown.front(), stores, trends);
        if (outlets.notices != nullptr)
            outlets.notices->forget(shown.front()->course.id);
    }
    showRoster(shown, std::move(movement));
    Q_EMIT coursesDidChange();
}

void MainWindowController::showFailure(const CanvasError &error, bool cachedShown) {
    if (cachedShown) {
        logger.error(
            fmt::format("Roster freshen failed, keeping cache: {}", error.errorDescription()));
        rosterView.staleReason = error.errorDescription();
    } else {
        rosterView = {.state = RosterView::State::failed, .title = selectionTitle()};
        Q_EMIT errorDidOccur(error);
    }
    Q_EMIT rosterDidChange();
}

void MainWindowController::showRoster(
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
    view.outreach = outreachOf(view.rows, stores, now());
    rosterView = std::move(view);
    Q_EMIT rosterDidChange();
}

// ---- Preferences -------------------------------------------------------------------------------

void MainWindowController::preferenceChanged(std::string_view key) {
    if (key == preferences::sidebarTermLimit.name)
        Q_EMIT coursesDidChange();
    const bool threshold = key == preferences::defaultPassingScore.name ||
        key == preferences::defaultInactivityDays.name || key.starts_with(courseSettings::prefix);
    if (threshold)
        rescoreAll();
}

/// Scores what is in memory again. Nothing is fetched, so live figures do not change.
void MainWindowController::rescoreAll() {
    bool changed = false;
    for (auto &[id, course] : rosterCache.entries) {
        const CourseThresholds thresholds = courseThresholds(defaults, id);
        if (thresholds != course.thresholds) {
            rescore(course, thresholds, course.fetchedAt);
            changed = true;
        }
    }
    if (!changed)
        return;
    showAgain();
    rebuildDashboard();
    Q_EMIT coursesDidChange();
}

/// Makes the cards that stand there anew from what is in memory.
void MainWindowController::rebuildDashboard() {
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

/// Shows the roster on screen anew from the cache; the note about stale rows stays.
void MainWindowController::showAgain() {
    if (rosterView.state != RosterView::State::shown)
        return;
    const std::string stale = rosterView.staleReason;
    showCached(selectedCourses());
    if (!stale.empty()) {
        rosterView.staleReason = stale;
        Q_EMIT rosterDidChange();
    }
}

// ---- What is remembered ------------------------------------------------------------------------

StudentPast MainWindowController::past(const RiskRow &row) const {
    return studentPast(row, rosterView.movement, stores, now());
}

void MainWindowController::showWhatIsRemembered() {
    if (!recordingVisit)
        showAgain();
    rebuildDashboard();
}

void MainWindowController::setStatus(std::string text) {
    statusText = std::move(text);
    Q_EMIT statusDidChange();
}

} // namespace ellwynd
