// A scoring pass over every nearby term.
#pragma once

#include "app/dashboard/coursesummary.h"
#include "app/roster/rostercache.h"
#include "canvas/canvasreading.h"
#include "outputs/notices/movementnotifier.h"
#include "outputs/snapshot/snapshotfiles.h"

#include <QTimer>

namespace ellwynd {

/// Where the results of a pass go, besides the dashboard.
struct PassSinks {
    WidgetSnapshotWriter &widgets;
    /// Null if no notices are posted.
    MovementNotifier *notices = nullptr;
};

/// How a pass ended.
struct PassResult {
    /// Every course of every term was scored.
    bool complete = false;
    /// There were courses, but none could be read.
    bool nothingRead = false;
    /// No course could be read, each time because there was no network.
    bool lacksNetwork = false;
};

/// The scored courses that the dashboard's cards were last made from, by term. A running pass
/// replaces those of a term when all of its courses have been scored.
using DashboardInputs = std::map<std::int64_t, std::vector<SharedCourse>>;

/// Reads and scores the courses of the nearby terms, one term at a time, beginning with the term
/// that the dashboard shows. The courses of a term are read concurrently, within the limit for
/// requests in flight. If a term makes no progress for a while, the next one is started beside it.
/// A new pass replaces a running one, which publishes nothing more. Used on the main thread.
class ScoringPass : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object and the tasks that it has started.
    ScoringPass(
        UserDefaults &defaults, Stores &stores, RosterCache &rosterCache, Dashboard &dashboard,
        DashboardInputs &lastDashboardInputs, CourseSummaries &summaries, PassSinks sinks,
        Clock now, ElapsedClock elapsed);
    ~ScoringPass() override;

    /// Starts a pass over the dashboard's prepared terms. Courses read at `freshSince` or later are
    /// taken from the cache; by default all are read.
    void start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince = ElapsedTime::max());
    /// Stops the running pass and its requests. It publishes nothing more.
    void stop();

    /// When the last pass started; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return startedAt; }

  Q_SIGNALS:
    /// The pass stored a course in the cache.
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
    movements(const std::vector<std::int64_t> &termIDs, Date now) const;
    [[nodiscard]] WidgetSnapshotFile snapshot(
        std::int64_t automaticTermID, const std::vector<std::int64_t> &termIDs,
        Date fetchedAt) const;
    [[nodiscard]] bool isCurrent(const Run &of) const;

    UserDefaults &defaults;
    Stores &stores;
    RosterCache &rosterCache;
    Dashboard &dashboard;
    DashboardInputs &lastDashboardInputs;
    CourseSummaries &summaries;
    PassSinks sinks;
    Clock now;
    ElapsedClock elapsed;
    /// Identifies the current pass.
    std::int64_t widgetGeneration = 0;
    std::optional<Date> startedAt;
    /// Null while no pass is running.
    std::shared_ptr<Run> run;
    /// Starts the next term when no course has ended for a while.
    QTimer stalled;
};

} // namespace ellwynd
