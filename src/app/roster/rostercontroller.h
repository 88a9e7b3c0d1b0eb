// Loads, caches and shows the selected roster, and records visits.
#pragma once

#include "app/courses/courselist.h"
#include "app/courses/courseselection.h"
#include "app/roster/rostercache.h"
#include "app/roster/rosterview.h"
#include "app/roster/studenthistory.h"
#include "canvas/canvasreading.h"
#include "canvas/records/canvaserror.h"
#include "memory/trendsync.h"
#include "outputs/notices/movementnotifier.h"

#include <QObject>

#include <stop_token>

namespace ellwynd {

/// Why a roster was read, which determines what is recorded.
enum class RosterRead {
    /// The teacher opened or refreshed the course: everything is recorded.
    visit,
    /// An automatic read while the program is active: as a visit, but levels are recorded only if
    /// the day has none.
    freshen,
    /// An automatic read while the program is inactive: nothing is recorded.
    background,
};

/// Shows the roster of a course or of a whole term, at first from the cache and then as read from
/// Canvas. Results of a previous selection are dropped. Used on the main thread.
class RosterController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object and the tasks that it has started.
    /// @param notices null if no notices are posted.
    RosterController(
        const UserDefaults &defaults, const CourseList &courseList, Stores &stores,
        TrendSync &trends, RosterCache &rosterCache, MovementNotifier *notices, Clock now,
        ElapsedClock elapsed = elapsedNow);
    ~RosterController() override;

    [[nodiscard]] const std::optional<Selection> &selection() const { return currentSelection; }
    /// Shows the selection from the cache, or as loading if the cache lacks a course of it. Stops a
    /// running load and reads nothing.
    /// @param selection absent if the program is not connected.
    void setSelection(std::optional<Selection> selection);
    /// The courses of the selection in the course list; none for the dashboard.
    [[nodiscard]] std::vector<Course> selectedCourses() const;
    /// When the selection's oldest cached course was read; absent if the cache lacks one.
    [[nodiscard]] std::optional<ElapsedTime> cachedAt() const;

    /// Reads the selection from `source`, and replaces a running load. Emits `loadDidEnd` unless it
    /// is stopped or replaced itself.
    /// @param kind called when the records have arrived.
    [[nodiscard]] QCoro::Task<>
    load(std::shared_ptr<CanvasReading> source, std::function<RosterRead()> kind);
    /// Stops the running load and its requests. The roster on screen is kept.
    void stop();

    /// Shows a course that a pass has scored, if it is on screen.
    void courseDidScore(std::int64_t courseID);
    /// Rescores the roster on screen with the current thresholds, and shows the scores of the
    /// cache.
    void rescore();
    /// Updates the roster on screen after a change of the history or the contacts.
    void onHistoryChanged();
    /// Stops the running load and removes the selection and the roster, after a sign-out.
    void resetToDisconnected();

    [[nodiscard]] const RosterView &view() const { return rosterView; }
    [[nodiscard]] bool isLoading() const { return loadingRoster; }
    /// The recorded history of a student on screen.
    [[nodiscard]] StudentHistory studentHistory(const RiskRow &row) const;

  Q_SIGNALS:
    void rosterDidChange();
    /// A load started, progressed or ended; see `RosterView::loadedCourses`.
    void loadingDidChange();
    /// A load has read one of its courses, which is not shown before the others have arrived.
    void courseDidArrive(const ellwynd::SharedCourse &course);
    /// A load has read these courses.
    void coursesDidChange(const std::vector<ellwynd::SharedCourse> &courses);
    /// @param failure that of the first course if no course could be read; otherwise absent.
    void loadDidEnd(const std::optional<ellwynd::CanvasError> &failure);

  private:
    /// Identifies a load or a selection; newer ones have larger values.
    using Token = std::uint64_t;
    /// The result of reading one course.
    struct Outcome {
        /// Null on failure.
        SharedCourse course;
        std::optional<CanvasError> failure;
    };

    [[nodiscard]] QCoro::Task<Outcome>
    readCourse(std::shared_ptr<CanvasReading> source, Course course, Token token);
    void show(const std::vector<Outcome> &outcomes, RosterRead kind);
    [[nodiscard]] std::vector<RosterChange> remember(const ScoredCourse &course, RosterRead kind);
    void showSelection();
    void redisplayFromCache();
    void showMemory();
    void showFailure(const CanvasError &failure);
    void showRoster(const std::vector<SharedCourse> &shared, std::vector<RosterChange> movement);
    void setLoading(bool loading);
    [[nodiscard]] std::vector<SharedCourse> cachedCourses() const;
    [[nodiscard]] std::string selectionTitle() const;

    const UserDefaults &defaults;
    const CourseList &courseList;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    MovementNotifier *notices;
    Clock now;
    ElapsedClock elapsed;
    std::optional<Selection> currentSelection;
    Token selectionToken = 0;
    std::stop_source stopLoad;
    bool loadingRoster = false;
    RosterView rosterView;
    /// Those that the view was made from.
    std::vector<SharedCourse> shownCourses;
    /// One note for each course of the roster on screen that could not be read.
    std::vector<std::string> unreadCourses;
    /// The thresholds at the last visit of this run, by course.
    std::map<std::int64_t, CourseThresholds> visitedWith;
    /// Set while a visit is recorded, so that its changes do not redisplay the roster.
    bool recordingVisit = false;
};

} // namespace ellwynd
