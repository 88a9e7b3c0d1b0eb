// The roster on screen: what is selected, where it comes from, and what a visit leaves behind.
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

/// How a roster came to be read, which decides what is recorded of it.
enum class RosterRead {
    /// The teacher opened the course or refreshed it: everything is recorded.
    visit,
    /// A read of the program's own while the window is in front: levels are recorded only for a day
    /// that has none.
    freshen,
    /// One behind the teacher's back: nothing is recorded.
    background,
};

/// Shows the roster of one course or of a whole term, from the cache at once and then as Canvas has
/// it. A result whose selection has passed is dropped. Lives on the main thread.
class RosterController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object, also the tasks that it has started.
    /// @param notices null where no notices are posted.
    RosterController(
        const UserDefaults &defaults, const CourseList &courseList, Stores &stores,
        TrendSync &trends, RosterCache &rosterCache, MovementNotifier *notices, Clock now,
        ElapsedClock elapsed = elapsedNow);
    ~RosterController() override;

    [[nodiscard]] const std::optional<Selection> &selection() const { return currentSelection; }
    /// Shows what the cache has of the selection, or that it is loading. Reads nothing.
    /// @param selection absent when the program is not connected.
    void setSelection(std::optional<Selection> selection);
    /// The courses of the selection; none for the dashboard.
    [[nodiscard]] std::vector<Course> selectedCourses() const;
    /// When the cache last read all of the selection; absent when it lacks a course.
    [[nodiscard]] std::optional<ElapsedTime> cachedAt() const;

    /// Reads the selection from `source`; replaces a load under way. `loadDidEnd` follows unless
    /// the load is stopped or replaced.
    /// @param kind is asked when the records are in.
    [[nodiscard]] QCoro::Task<>
    load(std::shared_ptr<CanvasReading> source, std::function<RosterRead()> kind);
    /// Stops the requests of the load under way; what is on screen stays there.
    void stop();

    /// A pass has read a course: shows it where it is on screen.
    void courseDidScore(std::int64_t courseID);
    /// Scores the roster on screen with the thresholds as they are now.
    void rescore();
    /// What is remembered of the students on screen has changed.
    void onHistoryChanged();
    /// Signed out: drops the load under way and what is on screen.
    void resetToDisconnected();

    [[nodiscard]] const RosterView &view() const { return rosterView; }
    [[nodiscard]] bool isLoading() const { return loadingRoster; }
    /// What is remembered of a student on screen.
    [[nodiscard]] StudentHistory studentHistory(const RiskRow &row) const;

  Q_SIGNALS:
    void rosterDidChange();
    /// A load began, progressed or ended; the view tells how far it is.
    void loadingDidChange();
    /// A course was read or scored again.
    void courseDidChange(ellwynd::SharedCourse course);
    /// @param failure of the first course that could not be read, when none could.
    void loadDidEnd(const std::optional<ellwynd::CanvasError> &failure);

  private:
    /// Identity of a roster request; a newer request has a larger one.
    using Token = std::uint64_t;
    /// What became of one course.
    struct Outcome {
        SharedCourse course;
        std::optional<CanvasError> failure;
    };

    [[nodiscard]] QCoro::Task<Outcome>
    readCourse(std::shared_ptr<CanvasReading> source, Course course, Token token);
    void show(const std::vector<Outcome> &outcomes, RosterRead kind);
    [[nodiscard]] std::vector<RosterChange> remember(const ScoredCourse &course, RosterRead kind);
    void showSelection();
    void redisplayFromCache();
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
    /// Why courses of the roster on screen could not be read.
    std::vector<std::string> unreadCourses;
    /// Set while a visit is recorded, whose roster is shown right after.
    bool recordingVisit = false;
};

} // namespace ellwynd
