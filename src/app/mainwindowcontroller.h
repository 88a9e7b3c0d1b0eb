// The façade that the windows use: refresh, selection, and the state to show.
#pragma once

#include "app/courses/connector.h"
#include "app/courses/courselist.h"
#include "app/dashboard/passcontroller.h"
#include "app/dashboard/widgetnames.h"
#include "app/explain/othercourses.h"
#include "app/refresh/refreshscheduler.h"
#include "app/roster/cacherescoring.h"
#include "app/roster/rosteractions.h"
#include "app/roster/rostercontroller.h"
#include "app/shell/unsavedchanges.h"
#include "app/undo/undostack.h"

#include <QObject>

namespace ellwynd {

/// Sends the actions of the teacher and the desktop to the scheduler as events, and performs the
/// reads that it starts: the connection, the course list, the roster on screen and the scoring
/// passes. Used on the main thread.
class MainWindowController : public QObject, private RefreshJobs {
    Q_OBJECT

  public:
    /// The arguments must outlive this object and the tasks that it has started.
    MainWindowController(
        UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
        PassSinks sinks, Clock now = systemNow, ElapsedClock elapsed = elapsedNow);
    ~MainWindowController() override;

    /// Reads everything again: the course list, the roster on screen, then a scoring pass. Any
    /// number of calls during a refresh cause one more after it.
    void refresh();
    /// Reads only the roster on screen again; everything while not connected.
    void refreshRoster();
    /// The address or the token was saved, or the teacher signed out.
    void connectionDidChange();
    void select(const Selection &selection);
    /// Opens a course by id, if necessary after the course list has arrived. Does nothing if the
    /// list does not contain the id.
    void showCourse(std::int64_t courseID);

    /// Called when the program becomes active or inactive.
    void setActive(bool active);
    void computerDidWake();
    void networkDidReturn();
    /// Starts the timer for a scoring pass every half hour.
    void startTimer();
    /// Half an hour has passed; called by the timer.
    void timerFired();
    /// Does what has become due by the clock of elapsed time; called by a timer of its own.
    void checkDeadline() { scheduler.send(refresh::Event::Kind::deadline); }

    [[nodiscard]] const std::optional<Selection> &selection() const {
        return rosterController.selection();
    }
    [[nodiscard]] const CourseList &courses() const { return courseList; }
    /// Every course that was scored since the connection, with its current thresholds.
    [[nodiscard]] const RosterCache &loadedRosters() const { return rosterCache; }
    [[nodiscard]] const RosterView &roster() const { return rosterController.view(); }
    [[nodiscard]] Dashboard &dashboard() { return passController.dashboard(); }
    /// The actions on the roster on screen.
    [[nodiscard]] RosterActions &actions() { return rosterActions; }
    /// The teacher's changes that can be undone. It is cleared when the connection changes, since
    /// they may be about another account's students.
    [[nodiscard]] UndoStack &undoStack() { return undo; }
    /// The status below the sidebar, with a second line for what could not be saved.
    [[nodiscard]] std::string status() const { return unsavedChanges.addedTo(statusText); }
    [[nodiscard]] bool isLoading() const {
        return scheduler.isRefreshing() || scheduler.state().roster.wanted ||
            rosterController.isLoading();
    }
    /// How many students are at each level; absent for a course that has not been scored.
    [[nodiscard]] std::optional<LevelCounts> levels(std::int64_t courseID) const;
    /// What is remembered about a student of the roster on screen, and the other courses in memory
    /// in which the student is flagged.
    [[nodiscard]] StudentHistory studentHistory(const RiskRow &row) const {
        StudentHistory history = rosterController.studentHistory(row);
        history.otherCourses = otherCourses(row, rosterCache);
        return history;
    }

  Q_SIGNALS:
    /// All courses in memory were scored again with changed thresholds.
    void rescoringDidEnd();
    /// The course list changed, or the number of flagged students of one of its courses.
    void coursesDidChange();
    void rosterDidChange();
    /// A load started, progressed or ended; see `roster().loadedCourses`.
    void loadingDidChange();
    /// A scoring pass ended.
    /// @param complete whether every course of the nearby terms was scored.
    void passDidEnd(bool complete);
    void statusDidChange();
    /// An error that must be shown, with advice.
    void errorDidOccur(const ellwynd::CanvasError &error);

  private:
    void openConnection(refresh::Initiative initiative) override;
    void readList() override;
    void readRoster() override;
    void startPass() override;
    void stopList() override;
    void stopRoster() override;
    void stopPass() override;

    QCoro::Task<> readConnection(refresh::Initiative initiative, std::stop_token stop);
    void connectionDidFail(const KeychainError &error, refresh::Initiative initiative);
    QCoro::Task<> fetchCourseList(std::shared_ptr<CanvasReading> from, std::stop_token stop);
    void listDidArrive(ListRead<Course> fetched);
    void listDidFail(const CanvasError &error);
    void rosterDidLoad(const std::optional<CanvasError> &failure);
    void passEnded(const PassResult &result);
    void addressDidChange();
    void clearWidgetsOfOtherAddress();
    void reconnect();
    void clearEverything();
    void checkDay();
    void rescoreAll();
    void setSelection(const Selection &selection);
    [[nodiscard]] RosterRead rosterReadKind() const;
    void showError(const CanvasError &error, refresh::Initiative initiative);
    void readDidSucceed();
    void setStatus(std::string text, bool isFailure = false);

    UserDefaults &defaults;
    const Connector &connector;
    Clock now;
    ElapsedClock elapsed;
    WidgetSnapshotWriter &widgets;
    /// Null if no notices are posted.
    MovementNotifier *notices;
    RefreshScheduler scheduler;
    /// Null while not connected.
    std::shared_ptr<CanvasReading> source;
    std::string address;
    /// Set until the event loop runs again.
    bool addressJustChanged = false;
    std::stop_source stopConnecting;
    std::stop_source stopListRead;
    bool isActive = false;
    /// To be opened when the course list arrives.
    std::optional<std::int64_t> pendingCourseID;
    RosterCache rosterCache;
    CourseList courseList;
    RosterController rosterController;
    PassController passController;
    WidgetNames widgetNames;
    UndoStack undo;
    RosterActions rosterActions;
    QTimer widgetRefreshTimer;
    CacheRescoring rescoring{rosterCache, defaults, elapsed};
    UnsavedChanges unsavedChanges;
    std::string statusText;
    bool statusIsFailure = false;
    /// Whether an error was shown since the last successful read. Failures of automatic reads are
    /// then not shown.
    bool alerted = false;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
