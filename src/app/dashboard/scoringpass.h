// The pass that scores every nearby term.
#pragma once

#include "app/dashboard/dashboardmodel.h"
#include "app/roster/rostercache.h"
#include "canvas/canvasreading.h"
#include "outputs/notices/movementnotifier.h"
#include "outputs/snapshot/snapshotfiles.h"

#include <QTimer>

namespace ellwynd {

/// Where the results of a pass go, besides the dashboard.
struct PassSinks {
    WidgetSnapshotWriter &widgets;
    /// Null for a pass that posts no notice.
    MovementNotifier *notices = nullptr;
};

/// How a pass ended.
struct PassResult {
    /// Every course of every term was scored.
    bool complete = false;
    /// Not one course could be read.
    bool nothingRead = false;
    /// That was for want of a network.
    bool lacksNetwork = false;
};

/// What the dashboard's cards were last made from, by term. A running pass adds a term when it is
/// whole.
using DashboardInputs = std::map<std::int64_t, std::vector<SharedCourse>>;

/// Reads and scores the courses of the nearby terms a term at a time, the dashboard's own first;
/// the courses of a term go side by side, within the requests that Canvas is asked at once. A term
/// that makes no progress no longer holds up the next one. A later pass replaces an earlier one, of
/// which nothing more is published.
class ScoringPass : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive the pass, also the tasks that it has started.
    ScoringPass(
        UserDefaults &defaults, Stores &stores, TrendSync &trends, RosterCache &rosterCache,
        Dashboard &dashboard, DashboardInputs &lastDashboardInputs, PassSinks sinks, Clock now,
        ElapsedClock elapsed);
    ~ScoringPass() override;

    /// Begins a pass over the dashboard's prepared terms. Courses that were read at `freshSince` or
    /// later are not read again.
    void start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince = ElapsedTime::max());
    /// Stops the requests of a pass that is under way, which publishes nothing more.
    void stop();

    /// When the last pass began; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return startedAt; }

  Q_SIGNALS:
    /// A course's entry in the cache is new.
    void courseDidScore(std::int64_t courseID);
    void passDidEnd(ellwynd::PassResult result);

  private:
    struct Run;

    void startNextTerm();
    QCoro::Task<> scoreTerm(std::shared_ptr<Run> of, TermGroup term);
    QCoro::Task<SharedCourse> scoreOne(std::shared_ptr<Run> of, Course course, std::int64_t termID);
    void publishTerm(const TermGroup &term, std::vector<SharedCourse> courses);
    void termEnded(Run &of);
    void finish();
    [[nodiscard]] std::vector<CourseMovement>
    movements(const std::vector<std::int64_t> &termIDs) const;
    [[nodiscard]] WidgetSnapshotFile snapshot(
        std::int64_t automaticTermID, const std::vector<std::int64_t> &termIDs,
        Date fetchedAt) const;
    [[nodiscard]] bool isCurrent(const Run &of) const;
    [[nodiscard]] bool feedsWidgets() const;

    UserDefaults &defaults;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    Dashboard &dashboard;
    DashboardInputs &lastDashboardInputs;
    PassSinks sinks;
    Clock now;
    ElapsedClock elapsed;
    /// Identity of the current pass.
    std::int64_t widgetGeneration = 0;
    std::optional<Date> startedAt;
    /// Null while no pass is under way.
    std::shared_ptr<Run> run;
    /// Restarted by every course that comes in.
    QTimer stalled;
};

} // namespace ellwynd
