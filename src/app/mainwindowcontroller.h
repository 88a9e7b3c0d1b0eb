// The façade that the windows use: refreshing, selecting, and what is on screen.
#pragma once

#include "app/courses/connector.h"
#include "app/courses/courselist.h"
#include "app/dashboard/passcontroller.h"
#include "app/refresh/refreshscheduler.h"
#include "app/roster/rosteractions.h"
#include "app/roster/rostercontroller.h"

#include <QObject>

namespace ellwynd {

/// Turns what the teacher and the desktop do into events of the scheduler, and carries out the
/// reads that it starts: the connection, the course list, the roster on screen and the scoring
/// passes. Lives on the main thread.
class MainWindowController : public QObject, private RefreshJobs {
    Q_OBJECT

  public:
    /// The arguments must outlive the controller, also the tasks that it has started.
    MainWindowController(
        UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
        PassSinks sinks, Clock now = systemNow, ElapsedClock elapsed = elapsedNow);
    ~MainWindowController() override;

    /// Everything: the course list, the roster on screen, then a scoring pass. A request while one
    /// is running runs once more after that.
    void refresh();
    /// Only what is on screen.
    void refreshRoster();
    /// The address or the token was saved, or the teacher signed out.
    void connectionDidChange();
    void select(const Selection &selection);
    /// Opens a course by id: at once when the course list is in, otherwise as soon as it is. An id
    /// that the list does not hold opens nothing.
    void showCourse(std::int64_t courseID);

    /// The window came to the front, or left it.
    void setActive(bool active);
    void computerDidWake();
    void networkDidReturn();
    /// Schedules the half-hour scoring pass.
    void startTimer();

    [[nodiscard]] const std::optional<Selection> &selection() const {
        return rosterController.selection();
    }
    [[nodiscard]] const CourseList &courses() const { return courseList; }
    [[nodiscard]] const RosterView &roster() const { return rosterController.view(); }
    [[nodiscard]] Dashboard &dashboard() { return passController.dashboard(); }
    /// What can be done with the roster on screen.
    [[nodiscard]] RosterActions &actions() { return rosterActions; }
    /// The line below the sidebar.
    [[nodiscard]] const std::string &status() const { return statusText; }
    [[nodiscard]] bool isLoading() const {
        return scheduler.isRefreshing() || scheduler.state().roster.wanted ||
            rosterController.isLoading();
    }
    /// Flagged students of a course already scored.
    [[nodiscard]] std::optional<std::int64_t> flaggedStudents(std::int64_t courseID) const;
    /// What is remembered of a student of the roster on screen.
    [[nodiscard]] StudentHistory studentHistory(const RiskRow &row) const {
        return rosterController.studentHistory(row);
    }

  Q_SIGNALS:
    /// The course list, or the number of flagged students of one of its courses.
    void coursesDidChange();
    void rosterDidChange();
    /// A load began, progressed or ended; `roster` tells how far it is.
    void loadingDidChange();
    /// The scoring pass of a refresh or of the timer ended.
    void passDidEnd(bool complete);
    void statusDidChange();
    /// An error to show, as message and advice.
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
    void timerFired();
    void addressDidChange();
    void clearEverything();
    void checkDay();
    void rescoreAll();
    void rescoreNext();
    void setSelection(const Selection &selection);
    [[nodiscard]] RosterRead rosterReadKind() const;
    void showError(const CanvasError &error, refresh::Initiative initiative);
    void readDidSucceed();
    void setStatus(std::string text, bool isFailure = false);

    UserDefaults &defaults;
    const Connector &connector;
    Clock now;
    WidgetSnapshotWriter &widgets;
    RefreshScheduler scheduler;
    /// Null while not connected.
    std::shared_ptr<CanvasReading> source;
    std::string address;
    std::stop_source stopConnecting;
    std::stop_source stopListRead;
    bool isActive = false;
    /// To be opened as soon as the course list is in.
    std::optional<std::int64_t> pendingCourseID;
    RosterCache rosterCache;
    CourseList courseList;
    RosterController rosterController;
    PassController passController;
    RosterActions rosterActions;
    QTimer widgetRefreshTimer;
    /// Courses in the cache still to be scored with other thresholds, in slices.
    std::vector<std::int64_t> rescoreQueue;
    QTimer rescoreTimer;
    std::string statusText;
    bool statusIsFailure = false;
    /// An error was shown that the program came upon by itself; the next is only shown after a read
    /// has succeeded.
    bool alerted = false;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
