// The pass that scores every nearby term.
#pragma once

#include "app/dashboard/dashboardmodel.h"
#include "app/roster/rostercache.h"
#include "canvas/canvasreading.h"
#include "outputs/notices/movementnotifier.h"
#include "outputs/snapshot/snapshotfiles.h"

namespace ellwynd {

/// Where the results of a pass go, besides the dashboard.
struct PassSinks {
    WidgetSnapshotWriter &widgets;
    /// Null for a pass that posts no notice.
    MovementNotifier *notices = nullptr;
};

/// Fetches and scores the courses of the nearby terms a term at a time, the dashboard's own first;
/// the courses of a term go side by side, within the requests that Canvas is asked at once. A later
/// pass takes the place of an earlier one, of which nothing more is published.
class ScoringPass : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive the pass, also the tasks that it has started.
    ScoringPass(
        UserDefaults &defaults, Stores &stores, TrendSync &trends, RosterCache &rosterCache,
        Dashboard &dashboard, PassSinks sinks, Clock now);
    ~ScoringPass() override;

    /// Begins a pass over the dashboard's prepared terms.
    void start(std::shared_ptr<CanvasReading> source);
    /// A pass that is under way publishes nothing more.
    void abandon();

    /// When the last pass began; absent before the first.
    [[nodiscard]] std::optional<Date> lastPassAt() const { return startedAt; }

  Q_SIGNALS:
    /// A course's entry in the cache is new.
    void courseDidScore(std::int64_t courseID);
    /// A pass came to its end with every term scored, or with some that could not be.
    void passDidEnd(bool complete);

  private:
    struct Results;

    QCoro::Task<> run(std::shared_ptr<CanvasReading> source, std::vector<TermGroup> terms);
    QCoro::Task<> scoreTerms(std::shared_ptr<CanvasReading> source, std::vector<TermGroup> terms);
    QCoro::Task<bool> scoreOne(
        std::shared_ptr<CanvasReading> source, Course course, std::int64_t termID,
        std::int64_t generation);
    void publishTerm(const TermGroup &term, Results &results);
    void finish(Results &results);
    [[nodiscard]] bool feedsWidgets() const;

    UserDefaults &defaults;
    Stores &stores;
    TrendSync &trends;
    RosterCache &rosterCache;
    Dashboard &dashboard;
    PassSinks sinks;
    Clock now;
    /// Identity of the current pass.
    std::int64_t widgetGeneration = 0;
    std::optional<Date> startedAt;
};

} // namespace ellwynd
