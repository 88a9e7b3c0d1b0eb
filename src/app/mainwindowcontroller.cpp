#include "app/mainwindowcontroller.h"

#include "base/log.h"
#include "net/task.h"
#include "risk/levelcounts.h"

#include <QPointer>

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"network"};

/// Coming to the front again and again fetches nothing more often than this.
constexpr std::chrono::minutes freshEnough{5};

bool isThreshold(std::string_view key) {
    return key == preferences::defaultPassingScore.name ||
        key == preferences::defaultInactivityDays.name || key.starts_with(courseSettings::prefix);
}

} // namespace

MainWindowController::MainWindowController(
    UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
    PassSinks sinks, Clock now)
    : defaults(defaults),
      connector(connector),
      now(now),
      widgets(sinks.widgets),
      courseList(defaults, now),
      rosterController(defaults, courseList, stores, trends, rosterCache, sinks.notices, now),
      passScheduler(defaults, connector, courseList, stores, trends, rosterCache, sinks, now),
      rosterActions(rosterController.view(), defaults, stores, now),
      observing(defaults.observe([this](std::string_view key) {
          if (isThreshold(key))
              rescoreAll();
      })) {
    using Self = MainWindowController;
    connect(&courseList, &CourseList::coursesDidChange, this, &Self::coursesDidChange);
    connect(&rosterController, &RosterController::rosterDidChange, this, &Self::rosterDidChange);
    connect(&rosterController, &RosterController::loadingDidChange, this, &Self::loadingDidChange);
    connect(&rosterController, &RosterController::cacheDidChange, this, &Self::coursesDidChange);
    connect(&rosterController, &RosterController::errorDidOccur, this, &Self::errorDidOccur);
    connect(&passScheduler, &PassScheduler::courseDidScore, this, &Self::coursesDidChange);
    connect(&passScheduler, &PassScheduler::passDidEnd, this, &Self::passDidEnd);
    connect(&passScheduler, &PassScheduler::connectionDidOpen, this, [this](auto opened) {
        source = std::move(opened);
    });
}

MainWindowController::~MainWindowController() = default;

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
        resetToDisconnected();
        return;
    }
    isRefreshing = true;
    setStatus("Loading courses…");
    detach(fetchCourseList(source), "Reading the course list");
}

QCoro::Task<> MainWindowController::fetchCourseList(std::shared_ptr<CanvasReading> from) {
    const QPointer<MainWindowController> self(this);
    std::optional<CanvasError> failure;
    ListRead<Course> fetched;
    try {
        fetched = co_await from->fetchCourses();
    } catch (const CanvasError &error) {
        failure = error;
    } catch (const std::exception &error) {
        failure = CanvasError::network(error.what());
    }
    if (!self)
        co_return;
    if (failure) {
        const bool rejected = failure->kind() == CanvasError::Kind::unauthorized;
        setStatus(rejected ? "Canvas rejected the token" : "Couldn’t load");
        Q_EMIT errorDidOccur(*failure);
    } else {
        courseList.set(std::move(fetched.records), fetched.cutShort);
        setStatus(courseList.statusText());
        passScheduler.prepareTerms();
        reselect();
        detach(refreshSelectionThenScoreAll(std::move(from)), "Scoring the courses");
    }
    refreshDidEnd();
}

/// What is on screen first, so that its requests are not behind those of every other course.
QCoro::Task<>
MainWindowController::refreshSelectionThenScoreAll(std::shared_ptr<CanvasReading> from) {
    const QPointer<MainWindowController> self(this);
    auto loading = rosterController.load(from);
    co_await loading;
    if (self && source == from)
        passScheduler.start(std::move(from));
}

void MainWindowController::startTimer() {
    passScheduler.startTimer();
}

void MainWindowController::refreshIfStale() {
    const auto lastPassAt = passScheduler.lastPassAt();
    const bool passIsFresh = lastPassAt && now() - *lastPassAt < freshEnough;
    if (source && !courseList.isEmpty() && !isRefreshing && !passIsFresh)
        detach(refreshSelectionThenScoreAll(source), "Scoring the courses");
}

/// The course that was waited for, else what was selected if it is still there, else the dashboard.
void MainWindowController::reselect() {
    const auto pending = std::exchange(pendingCourseID, std::nullopt);
    if (pending && courseList.contains(*pending))
        rosterController.setSelection(CourseSelection{*pending});
    if (rosterController.selectedCourses().empty())
        rosterController.setSelection(DashboardSelection{});
}

void MainWindowController::showCourse(std::int64_t courseID) {
    if (courseList.isEmpty())
        pendingCourseID = courseID;
    else if (selection() == Selection(CourseSelection{courseID}))
        refreshRoster();
    else if (courseList.contains(courseID))
        select(CourseSelection{courseID});
}

void MainWindowController::select(const Selection &selection) {
    if (rosterController.selection() == selection)
        return;
    rosterController.setSelection(selection);
    refreshRoster();
}

void MainWindowController::refreshRoster() {
    detach(rosterController.load(source), "Loading the roster");
}

void MainWindowController::refreshDidEnd() {
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

void MainWindowController::resetToDisconnected() {
    rosterCache.entries.clear();
    passScheduler.resetToDisconnected();
    widgets.clear();
    rosterController.resetToDisconnected();
    setStatus("Not connected");
    courseList.set({});
}

std::optional<std::int64_t> MainWindowController::flaggedStudents(std::int64_t courseID) const {
    const ScoredCourse *course = rosterCache.find(courseID);
    return course != nullptr ? std::optional{levelCounts(course->rows).flagged()} : std::nullopt;
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
    rosterController.redisplayFromCache();
    passScheduler.rebuildDashboard();
    Q_EMIT coursesDidChange();
}

void MainWindowController::setStatus(std::string text) {
    statusText = std::move(text);
    Q_EMIT statusDidChange();
}

} // namespace ellwynd
