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

namespace ellwynd {

/// Shows the roster of one course or of a whole term, from the cache at once and then as Canvas has
/// it. A result whose selection has passed is dropped. Lives on the main thread.
class RosterController : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object, also the tasks that it has started.
    /// @param notices null where no notices are posted.
    RosterController(
        const UserDefaults &defaults, const CourseList &courseList, Stores &stores,
        TrendSync &trends, RosterCache &rosterCache, MovementNotifier *notices, Clock now);

    [[nodiscard]] const std::optional<Selection> &selection() const { return currentSelection; }
    /// Absent when the program is not connected. Nothing is shown or fetched by it.
    void setSelection(std::optional<Selection> selection);
    /// The courses of the selection; none for the dashboard.
    [[nodiscard]] std::vector<Course> selectedCourses() const;

    /// Shows what the cache has of the selection, then what `source` has, which counts as a visit
    /// for a course. Replaces a load under way; a null source only ends that one.
    [[nodiscard]] QCoro::Task<> load(std::shared_ptr<CanvasReading> source);
    /// Shows the roster on screen again, from the cache; the note about stale rows is kept.
    void redisplayFromCache();
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
    /// The cache has new entries.
    void cacheDidChange();
    /// A load failed without rows to keep on screen.
    void errorDidOccur(const ellwynd::CanvasError &error);

  private:
    /// Identity of a roster request; a newer request has a larger one.
    using Token = std::uint64_t;

    /// What a load of several courses brought.
    struct Fetched {
        std::vector<ScoredCourse> scored;
        /// The last failure.
        std::optional<CanvasError> failure;
        /// The names of the courses for which Canvas rejected the token.
        std::vector<std::string> unauthorized;
    };

    [[nodiscard]] QCoro::Task<Fetched>
    fetch(std::shared_ptr<CanvasReading> source, std::vector<Course> courses, Token token);
    void visit(std::vector<ScoredCourse> scored);
    void showDashboard();
    void showCached(const std::vector<Course> &courses);
    void showFailure(const Fetched &fetched, bool cachedShown);
    void showRoster(
        const std::vector<const ScoredCourse *> &courses, std::vector<RosterChange> movement);
    void setLoading(bool loading);
    [[nodiscard]] std::string selectionTitle() const;

    const UserDefaults &defaults;
    const CourseList &courseList;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    MovementNotifier *notices;
    Clock now;
    std::optional<Selection> currentSelection;
    Token selectionToken = 0;
    bool loadingRoster = false;
    RosterView rosterView;
    /// Set while a visit is recorded, whose roster is shown right after.
    bool recordingVisit = false;
};

} // namespace ellwynd
