// The driver of the program: what is fetched, when, and what is done with it.
#pragma once

#include "app/courses/connector.h"
#include "app/courses/courseselection.h"
#include "app/dashboard/dashboardmodel.h"
#include "app/dashboard/scoringpass.h"
#include "app/roster/rosteractions.h"
#include "app/roster/rostercache.h"
#include "app/roster/studenthistory.h"
#include "app/roster/visit.h"
#include "canvas/records/canvaserror.h"
#include "canvas/records/termgroups.h"

#include <QObject>
#include <QTimer>

namespace ellwynd {

/// Fetches the course list and rosters, keeps what was scored, and announces what the views show.
/// All of it lives on the main thread. A result whose selection has passed is dropped.
class MainWindowController : public QObject {
    Q_OBJECT

  public:
    /// What is handed over outlives the controller.
    MainWindowController(
        UserDefaults &defaults, const Connector &connector, Stores &stores, TrendSync &trends,
        PassOutlets outlets, Clock clock = systemNow);
    ~MainWindowController() override;

    /// Everything: the course list, the roster on screen, then a scoring pass. Asked for while one
    /// is running, it runs once more after that.
    void refresh();
    /// The program came to the front, or the computer woke up: freshens what is on screen, then
    /// scores the other courses, unless that was done within the last minutes.
    void cameBack();
    /// Schedules the half-hour scoring pass.
    void startTimer();
    /// Only what is on screen.
    void refreshRoster();
    void select(const Selection &selection);
    /// Opens a course by id: at once when the course list is in, otherwise as soon as it is. An id
    /// that the list does not hold opens nothing.
    void showCourse(std::int64_t courseID);

    [[nodiscard]] const std::optional<Selection> &selection() const { return currentSelection; }
    /// The course list; in the sample college with the courses of its older terms.
    [[nodiscard]] std::vector<Course> knownCourses() const;
    /// The sidebar's terms, newest first, as many as the teacher wants listed.
    [[nodiscard]] std::vector<TermGroup> sidebarTerms() const;
    /// The line below the sidebar.
    [[nodiscard]] const std::string &status() const { return statusText; }
    [[nodiscard]] const RosterView &roster() const { return rosterView; }
    [[nodiscard]] Dashboard &dashboard() { return dashboardModel; }
    [[nodiscard]] bool isLoading() const { return isRefreshing || loadingRoster; }
    /// Flagged students of a course already scored.
    [[nodiscard]] std::optional<std::int64_t> flaggedStudents(std::int64_t courseID) const;

    /// What is remembered of a student of the roster on screen.
    [[nodiscard]] StudentPast past(const RiskRow &row) const;

    /// What can be done with the roster on screen.
    [[nodiscard]] RosterActions &actions() { return rosterActions; }

  Q_SIGNALS:
    void coursesDidChange();
    void rosterDidChange();
    /// A load began, came further or ended; `roster` tells how far it is.
    void loadingDidChange();
    /// The scoring pass of a refresh or of the timer came to its end.
    void passDidEnd(bool complete);
    void statusDidChange();
    /// An error to show, as message and advice.
    void errorDidOccur(const ellwynd::CanvasError &error);

  private:
    /// Identity of a roster request; a newer request has a larger one.
    using Token = std::uint64_t;

    QCoro::Task<> fetchCourseList(std::shared_ptr<CanvasReading> source);
    QCoro::Task<> freshenThenPass(std::shared_ptr<CanvasReading> source);
    void timerFired();
    QCoro::Task<> fetchRoster(std::shared_ptr<CanvasReading> source, std::vector<Course> courses);
    void refreshEnded();
    void reselect();
    void loadSelection();
    void showDashboard();
    void rebuildDashboard();
    void showCached(const std::vector<Course> &courses);
    void showAgain();
    void showFailure(const CanvasError &error, bool cachedShown);
    void showRoster(
        const std::vector<const ScoredCourse *> &courses, std::vector<RosterChange> movement);
    void showWhatIsRemembered();
    void becomeNotConnected();
    void showKeychainUnavailable(const KeychainError &error);
    void preferenceChanged(std::string_view key);
    void rescoreAll();
    void setStatus(std::string text);
    [[nodiscard]] std::vector<Course> selectedCourses() const;
    [[nodiscard]] std::string selectionTitle() const;

    UserDefaults &defaults;
    const Connector &connector;
    Stores &stores;
    TrendSync &trends;
    Clock now;
    /// What the last refresh connected to; null while not connected.
    std::shared_ptr<CanvasReading> source;
    bool isRefreshing = false;
    bool refreshQueued = false;
    bool loadingRoster = false;
    std::optional<Selection> currentSelection;
    std::vector<Course> latestCourses;
    /// To be opened as soon as the course list is in.
    std::optional<std::int64_t> pendingCourseID;
    Token selectionToken = 0;
    RosterCache rosterCache;
    Dashboard dashboardModel;
    PassOutlets outlets;
    ScoringPass pass;
    QTimer widgetRefreshTimer;
    RosterView rosterView;
    RosterActions rosterActions;
    /// Set while a visit is recorded, whose roster is shown right after.
    bool recordingVisit = false;
    std::string statusText;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
