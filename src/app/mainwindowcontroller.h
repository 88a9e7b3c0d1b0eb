// The façade that the windows use: refreshing, selecting, and what is on screen.
#pragma once

#include "app/courses/connector.h"
#include "app/courses/courselist.h"
#include "app/dashboard/passscheduler.h"
#include "app/roster/rosteractions.h"
#include "app/roster/rostercontroller.h"

#include <QObject>

namespace ellwynd {

/// Puts the course list, the roster on screen and the scoring passes in order: a refresh reads the
/// list, then the roster, then starts a pass. Lives on the main thread.
class MainWindowController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive the controller, also the tasks that it has started.
    MainWindowController(
        UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
        PassSinks sinks, Clock now = systemNow);
    ~MainWindowController() override;

    /// Everything: the course list, the roster on screen, then a scoring pass. A request while one
    /// is running runs once more after that.
    void refresh();
    /// The program came to the front, or the computer woke up: freshens what is on screen, then
    /// scores the other courses, unless that was done within the last minutes.
    void refreshIfStale();
    /// Schedules the half-hour scoring pass.
    void startTimer();
    /// Only what is on screen.
    void refreshRoster();
    void select(const Selection &selection);
    /// Opens a course by id: at once when the course list is in, otherwise as soon as it is. An id
    /// that the list does not hold opens nothing.
    void showCourse(std::int64_t courseID);

    [[nodiscard]] const std::optional<Selection> &selection() const {
        return rosterController.selection();
    }
    [[nodiscard]] const CourseList &courses() const { return courseList; }
    [[nodiscard]] const RosterView &roster() const { return rosterController.view(); }
    [[nodiscard]] Dashboard &dashboard() { return passScheduler.dashboard(); }
    /// What can be done with the roster on screen.
    [[nodiscard]] RosterActions &actions() { return rosterActions; }
    /// The line below the sidebar.
    [[nodiscard]] const std::string &status() const { return statusText; }
    [[nodiscard]] bool isLoading() const { return isRefreshing || rosterController.isLoading(); }
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
    QCoro::Task<> fetchCourseList(std::shared_ptr<CanvasReading> from);
    QCoro::Task<> refreshSelectionThenScoreAll(std::shared_ptr<CanvasReading> from);
    void refreshDidEnd();
    void reselect();
    void resetToDisconnected();
    void showKeychainUnavailable(const KeychainError &error);
    void rescoreAll();
    void setStatus(std::string text);

    UserDefaults &defaults;
    const Connector &connector;
    Clock now;
    WidgetSnapshotWriter &widgets;
    /// What the last refresh connected to; null while not connected.
    std::shared_ptr<CanvasReading> source;
    bool isRefreshing = false;
    bool refreshQueued = false;
    /// To be opened as soon as the course list is in.
    std::optional<std::int64_t> pendingCourseID;
    RosterCache rosterCache;
    CourseList courseList;
    RosterController rosterController;
    PassScheduler passScheduler;
    RosterActions rosterActions;
    std::string statusText;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
