#include "app/mainwindowcontroller.h"

#include "base/calendar.h"
#include "base/log.h"
#include "net/origin.h"
#include "net/task.h"
#include "risk/coursethresholds.h"
#include "risk/levelcounts.h"

#include <QPointer>

#include <fmt/format.h>

namespace ellwynd {

namespace {

using refresh::Event;
using refresh::Initiative;

constexpr Log logger{"network"};
constexpr Log widgetLog{"widgets"};

/// A coarse timer is accurate to 5%, which is 90 seconds here; five minutes are acceptable.
constexpr std::chrono::seconds passInterval{1800};
/// An arrow key held down in the sidebar changes the selection faster than this.
constexpr std::chrono::milliseconds selectionSettle{150};

} // namespace

MainWindowController::MainWindowController(
    UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
    PassSinks sinks, Clock now, ElapsedClock elapsed)
    : defaults(defaults),
      connector(connector),
      now(now),
      elapsed(elapsed),
      widgets(sinks.widgets),
      notices(sinks.notices),
      scheduler(*this, elapsed),
      address(defaults.value(preferences::canvasBaseURL)),
      courseList(defaults, now),
      rosterController(
          defaults, courseList, stores, trends, rosterCache, sinks.notices, now, elapsed),
      passController(defaults, courseList, stores, trends, rosterCache, sinks, now, elapsed),
      widgetNames(defaults, courseList, widgets),
      rosterActions(rosterController.view(), defaults, stores, undo, now),
      unsavedChanges(stores, defaults),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::canvasBaseURL.name)
              addressDidChange();
          else if (key == preferences::sampleData.name)
              undo.clear();
          else if (isThresholdKey(key))
              rescoreAll();
      })) {
    using Self = MainWindowController;
    connect(&scheduler, &RefreshScheduler::stateDidChange, this, &Self::loadingDidChange);
    connect(&courseList, &CourseList::coursesDidChange, this, &Self::coursesDidChange);
    connect(&rosterController, &RosterController::rosterDidChange, this, &Self::rosterDidChange);
    connect(&rosterController, &RosterController::loadingDidChange, this, &Self::loadingDidChange);
    connect(&rosterController, &RosterController::loadDidEnd, this, &Self::rosterDidLoad);
    connect(
        &rosterController, &RosterController::coursesDidChange, this,
        [this](const std::vector<SharedCourse> &courses) {
            passController.coursesDidChange(courses);
            Q_EMIT coursesDidChange();
        });
    connect(&passController, &PassController::courseDidScore, this, [this](std::int64_t courseID) {
        rosterController.courseDidScore(courseID);
        if (const auto cachedAt = rosterController.cachedAt())
            scheduler.send({.kind = Event::Kind::rosterCached, .cachedAt = cachedAt});
        Q_EMIT coursesDidChange();
    });
    connect(&stores.contacts, &ContactLog::contactsDidChange, this, [this] {
        // The dashboard's list does not wait: the next key applies to the next student.
        if (selection() == Selection(DashboardSelection{}))
            passController.rebuildDashboard();
        else
            passController.rebuildSoon();
    });
    connect(&passController, &PassController::passDidEnd, this, &Self::passEnded);
    connect(&unsavedChanges, &UnsavedChanges::noteDidChange, this, &Self::statusDidChange);
    widgetRefreshTimer.setTimerType(Qt::CoarseTimer);
    widgetRefreshTimer.setInterval(passInterval);
    connect(&widgetRefreshTimer, &QTimer::timeout, this, &Self::timerFired);
    connect(
        &rescoring, &CacheRescoring::courseDidRescore, &passController,
        &PassController::prepareCard);
    connect(
        &rosterController, &RosterController::courseDidArrive, &passController,
        &PassController::prepareCard);
    connect(&rescoring, &CacheRescoring::rescoringDidEnd, this, [this] {
        rosterController.rescore();
        passController.rescore();
        Q_EMIT rescoringDidEnd();
        Q_EMIT coursesDidChange();
    });
    clearWidgetsOfOtherAddress();
}

MainWindowController::~MainWindowController() {
    stopConnecting.request_stop();
    stopListRead.request_stop();
}

// ---- Events ------------------------------------------------------------------------------------

void MainWindowController::refresh() {
    scheduler.send(Event::Kind::refreshRequested);
}

void MainWindowController::refreshRoster() {
    scheduler.send(Event::Kind::rosterRequested);
}

void MainWindowController::connectionDidChange() {
    undo.clear();
    // The change of the address has begun to read the connection, after the token was saved.
    if (!addressJustChanged)
        reconnect();
}

void MainWindowController::reconnect() {
    // What is being read may be what was saved before.
    if (scheduler.state().connection.running)
        openConnection(Initiative::teacher);
    refresh();
}

void MainWindowController::setActive(bool active) {
    isActive = active;
    if (!active)
        return;
    checkDay();
    scheduler.send(Event::Kind::activated);
}

void MainWindowController::computerDidWake() {
    checkDay();
    scheduler.send(Event::Kind::woke);
}

void MainWindowController::networkDidReturn() {
    scheduler.send(Event::Kind::networkReachable);
}

void MainWindowController::startTimer() {
    widgetRefreshTimer.start();
}

void MainWindowController::timerFired() {
    checkDay();
    scheduler.send(Event::Kind::timerFired);
}

/// A pass that started on another day used the terms and trends of that day.
void MainWindowController::checkDay() {
    const auto begun = passController.lastPassAt();
    if (begun && calendar::startOfDay(*begun) != calendar::startOfDay(now()))
        scheduler.send(Event::Kind::dayChanged);
}

/// Called whether this process, another process or another machine saved the address. A change of
/// the origin signs out of the previous one.
void MainWindowController::addressDidChange() {
    const std::string before = std::exchange(address, defaults.value(preferences::canvasBaseURL));
    undo.clear();
    addressJustChanged = true;
    QMetaObject::invokeMethod(
        this, [this] { addressJustChanged = false; }, Qt::QueuedConnection);
    if (haveSameOrigin(before, address))
        return reconnect();
    if (!before.empty())
        clearEverything();
    clearWidgetsOfOtherAddress();
    scheduler.send(Event::Kind::connectionChanged);
}

/// The address may also have changed while the program was not running, or just before it was
/// killed.
void MainWindowController::clearWidgetsOfOtherAddress() {
    const std::string shown = defaults.value(preferences::widgetsAddress);
    if (shown == address || defaults.value(preferences::sampleData))
        return;
    if (!shown.empty() && !haveSameOrigin(shown, address))
        widgets.clear();
    defaults.set(preferences::widgetsAddress, address);
}

void MainWindowController::select(const Selection &selection) {
    if (rosterController.selection() != selection)
        setSelection(selection);
}

void MainWindowController::setSelection(const Selection &selection) {
    rosterController.setSelection(selection);
    // The sample college makes no requests, so there is nothing to save by waiting.
    const bool isSample = defaults.value(preferences::sampleData);
    scheduler.send(
        {.kind = Event::Kind::selectionChanged,
         .rosterSelected = !rosterController.selectedCourses().empty(),
         .cachedAt = rosterController.cachedAt(),
         .settle = isSample ? ElapsedTime{} : ElapsedTime(selectionSettle)});
}

void MainWindowController::showCourse(std::int64_t courseID) {
    if (courseList.isEmpty())
        pendingCourseID = courseID;
    else if (selection() == Selection(CourseSelection{courseID}))
        refreshRoster();
    else if (courseList.contains(courseID))
        setSelection(CourseSelection{courseID});
}

// ---- The connection ----------------------------------------------------------------------------

void MainWindowController::openConnection(Initiative initiative) {
    stopConnecting.request_stop();
    stopConnecting = {};
    if (courseList.isEmpty() && initiative == Initiative::teacher)
        setStatus("Loading courses…");
    detach(readConnection(initiative, stopConnecting.get_token()), "Opening the connection");
}

QCoro::Task<> MainWindowController::readConnection(Initiative initiative, std::stop_token stop) {
    const QPointer<MainWindowController> self(this);
    const bool isTeachers = initiative == Initiative::teacher;
    std::shared_ptr<CanvasReading> opened;
    std::optional<KeychainError> failure;
    try {
        auto opening =
            connector.open(isTeachers ? UnlockPrompt::allowed : UnlockPrompt::never, stop);
        opened = co_await opening;
    } catch (const KeychainError &error) {
        failure = error;
    } catch (const Cancelled &) {
        throw;
    } catch (const std::exception &error) {
        failure = KeychainError(KeychainError::failed, error.what());
    }
    if (!self || stop.stop_requested())
        co_return;
    if (failure) {
        connectionDidFail(*failure, initiative);
    } else if (opened) {
        source = std::move(opened);
        scheduler.send(Event::Kind::connectionOpened);
    } else {
        if (source)
            undo.clear();
        clearEverything();
        setStatus("Not connected");
        scheduler.send(Event::Kind::connectionMissing);
    }
}

void MainWindowController::connectionDidFail(const KeychainError &error, Initiative initiative) {
    // The teacher asked for it while it was read without a prompt.
    if (initiative == Initiative::program &&
        scheduler.state().connection.running == Initiative::teacher)
        return openConnection(Initiative::teacher);
    if (initiative == Initiative::teacher) {
        logger.error(fmt::format("Keychain unreadable: {}", error.what()));
        setStatus("Keychain unavailable", true);
    } else {
        widgetLog.error(
            fmt::format("Skipping widget refresh, Keychain unreadable: {}", error.what()));
    }
    scheduler.send(Event::Kind::connectionFailed);
}

/// Discards all data of the connection at once, without returning to the event loop.
void MainWindowController::clearEverything() {
    stopList();
    source.reset();
    rosterCache.entries.clear();
    rescoring.stop();
    passController.resetToDisconnected();
    widgets.clear();
    if (notices != nullptr)
        notices->forgetAll();
    rosterController.resetToDisconnected();
    courseList.set({});
    alerted = false;
}

// ---- The course list ---------------------------------------------------------------------------

void MainWindowController::readList() {
    stopListRead = {};
    setStatus("Loading courses…");
    detach(fetchCourseList(source, stopListRead.get_token()), "Reading the course list");
}

void MainWindowController::stopList() {
    stopListRead.request_stop();
}

QCoro::Task<>
MainWindowController::fetchCourseList(std::shared_ptr<CanvasReading> from, std::stop_token stop) {
    const QPointer<MainWindowController> self(this);
    std::optional<CanvasError> failure;
    ListRead<Course> fetched;
    try {
        const auto reads = from->scoped(stop, RequestPriority::foreground);
        fetched = co_await reads->fetchCourses();
    } catch (const CanvasError &error) {
        failure = error;
    } catch (const std::exception &error) {
        failure = CanvasError::network(error.what());
    }
    if (!self || stop.stop_requested())
        co_return;
    if (failure)
        listDidFail(*failure);
    else
        listDidArrive(std::move(fetched));
}

void MainWindowController::listDidFail(const CanvasError &error) {
    const bool rejected = error.kind() == CanvasError::Kind::unauthorized;
    setStatus(rejected ? "Canvas rejected the token" : "Couldn’t load", true);
    showError(error, scheduler.state().list.running.value_or(Initiative::program));
    scheduler.send({.kind = Event::Kind::listFailed, .lacksNetwork = error.lacksNetwork()});
}

/// Selects the pending course if the list contains it; otherwise keeps the selection if its courses
/// still exist, or else selects the dashboard.
void MainWindowController::listDidArrive(ListRead<Course> fetched) {
    courseList.set(std::move(fetched.records), fetched.cutShort);
    setStatus(courseList.statusText());
    alerted = false;
    passController.prepareTerms();
    const auto pending = std::exchange(pendingCourseID, std::nullopt);
    if (pending && courseList.contains(*pending))
        select(CourseSelection{*pending});
    else if (rosterController.selectedCourses().empty())
        setSelection(DashboardSelection{});
    else if (!scheduler.state().rosterSelected)
        setSelection(*rosterController.selection());
    scheduler.send(Event::Kind::listRead);
}

// ---- The roster on screen ----------------------------------------------------------------------

void MainWindowController::readRoster() {
    detach(
        rosterController.load(source, [this] { return rosterReadKind(); }), "Loading the roster");
}

void MainWindowController::stopRoster() {
    rosterController.stop();
}

RosterRead MainWindowController::rosterReadKind() const {
    if (scheduler.state().roster.running == Initiative::teacher)
        return RosterRead::visit;
    return isActive ? RosterRead::freshen : RosterRead::background;
}

void MainWindowController::rosterDidLoad(const std::optional<CanvasError> &failure) {
    const Initiative initiative = scheduler.state().roster.running.value_or(Initiative::program);
    if (!failure) {
        readDidSucceed();
        scheduler.send(Event::Kind::rosterRead);
        return;
    }
    if (roster().state != RosterView::State::shown)
        showError(*failure, initiative);
    scheduler.send({.kind = Event::Kind::rosterFailed, .lacksNetwork = failure->lacksNetwork()});
}

// ---- Scoring passes ----------------------------------------------------------------------------

void MainWindowController::startPass() {
    passController.start(source, scheduler.state().passFreshSince);
}

void MainWindowController::stopPass() {
    passController.stop();
}

void MainWindowController::passEnded(const PassResult &result) {
    unsavedChanges.saveAgain();
    if (result.nothingRead)
        setStatus("None of your courses could be read", true);
    else
        readDidSucceed();
    scheduler.send(
        {.kind = Event::Kind::passEnded,
         .lacksNetwork = result.lacksNetwork,
         .complete = result.complete});
    Q_EMIT passDidEnd(result.complete);
}

std::optional<LevelCounts> MainWindowController::levels(std::int64_t courseID) const {
    const SharedCourse course = rosterCache.find(courseID);
    return course ? std::optional{levelCounts(course->rows)} : std::nullopt;
}

// ---- Thresholds --------------------------------------------------------------------------------

/// Rescores the course on screen immediately, and all other cached courses in slices. Nothing is
/// fetched.
void MainWindowController::rescoreAll() {
    const ElapsedTime begun = elapsed();
    if (rosterController.selectedCourses().size() == 1)
        rosterController.rescore();
    rescoring.start(begun);
}

// ---- Status and errors -------------------------------------------------------------------------

/// Failures of reads that the teacher requested are always shown; those of automatic reads only
/// once, and only while there is nothing to show.
void MainWindowController::showError(const CanvasError &error, Initiative initiative) {
    const bool isEmpty = courseList.isEmpty() || roster().state == RosterView::State::failed;
    if (initiative == Initiative::program && (alerted || !isEmpty))
        return;
    alerted = true;
    Q_EMIT errorDidOccur(error);
}

/// Replaces a failure in the status line.
void MainWindowController::readDidSucceed() {
    alerted = false;
    if (statusIsFailure && !courseList.isEmpty())
        setStatus(courseList.statusText());
}

void MainWindowController::setStatus(std::string text, bool isFailure) {
    statusText = std::move(text);
    statusIsFailure = isFailure;
    Q_EMIT statusDidChange();
}

} // namespace ellwynd
