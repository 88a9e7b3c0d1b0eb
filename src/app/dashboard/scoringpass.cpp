#include "app/dashboard/scoringpass.h"

#include "app/dashboard/widgetnames.h"
#include "base/largevalue.h"
#include "base/log.h"
#include "canvas/records/canvaserror.h"
#include "net/task.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"widgets"};

/// If no course ends for this long, the next term is started.
constexpr std::chrono::seconds stallLimit{10};

} // namespace

/// The state of one pass.
struct ScoringPass::Run {
    std::int64_t generation = 0;
    std::shared_ptr<CanvasReading> source;
    std::stop_source stop;
    ElapsedTime freshSince{};
    /// In the order of scoring; those before `nextTerm` have been started.
    std::vector<TermGroup> terms;
    std::size_t nextTerm = 0;
    std::size_t endedTerms = 0;
    std::vector<std::int64_t> wholeTerms;
    std::int64_t coursesRead = 0;
    std::int64_t coursesWithoutNetwork = 0;
    std::int64_t coursesFailed = 0;
};

ScoringPass::ScoringPass(
    UserDefaults &defaults, Stores &stores, RosterCache &rosterCache, Dashboard &dashboard,
    DashboardInputs &lastDashboardInputs, CourseSummaries &summaries, PassSinks sinks, Clock now,
    ElapsedClock elapsed)
    : defaults(defaults),
      stores(stores),
      rosterCache(rosterCache),
      dashboard(dashboard),
      lastDashboardInputs(lastDashboardInputs),
      summaries(summaries),
      sinks(sinks),
      now(now),
      elapsed(elapsed) {
    stalled.setSingleShot(true);
    stalled.setInterval(stallLimit);
    connect(&stalled, &QTimer::timeout, this, &ScoringPass::startNextTerm);
}

ScoringPass::~ScoringPass() {
    if (run)
        run->stop.request_stop();
}

bool ScoringPass::isCurrent(const Run &of) const {
    return of.generation == widgetGeneration;
}

void ScoringPass::start(std::shared_ptr<CanvasReading> source, ElapsedTime freshSince) {
    if (run)
        run->stop.request_stop();
    startedAt = now();
    run = std::make_shared<Run>();
    run->generation = ++widgetGeneration;
    run->freshSince = freshSince;
    run->source = std::move(source);
    run->terms = dashboard.preparedTerms();
    std::stable_partition(
        run->terms.begin(), run->terms.end(),
        [shown = dashboard.shownTermID()](const TermGroup &term) { return term.id() == shown; });
    dashboard.beginPass();
    if (run->terms.empty())
        finish();
    else
        startNextTerm();
}

void ScoringPass::stop() {
    ++widgetGeneration;
    stalled.stop();
    if (const auto stopped = std::exchange(run, nullptr)) {
        stopped->stop.request_stop();
        dashboard.passAbandoned();
    }
}

void ScoringPass::startNextTerm() {
    if (!run || run->nextTerm == run->terms.size())
        return;
    stalled.start();
    const TermGroup term = run->terms[run->nextTerm++];
    detach(scoreTerm(run, term), "Scoring a term");
}

QCoro::Task<> ScoringPass::scoreTerm(std::shared_ptr<Run> of, TermGroup term) {
    const QPointer<ScoringPass> self(this);
    std::vector<QCoro::Task<SharedCourse>> courses;
    for (const Course &course : term.courses)
        courses.push_back(scoreOne(of, course, *term.id()));
    std::vector<SharedCourse> scored;
    for (auto &course : courses) {
        if (SharedCourse entry = co_await course)
            scored.push_back(std::move(entry));
    }
    if (!self || !isCurrent(*of))
        co_return;
    if (scored.size() == term.courses.size()) {
        of->wholeTerms.push_back(*term.id());
        publishTerm(term, std::move(scored));
    } else {
        logger.error(fmt::format("Widget term skipped: {} partial", title(term)));
    }
    termEnded(*of);
}

/// Null if the course could not be scored, or the pass was stopped.
QCoro::Task<SharedCourse>
ScoringPass::scoreOne(std::shared_ptr<Run> of, Course course, std::int64_t termID) {
    const QPointer<ScoringPass> self(this);
    const std::int64_t id = course.id;
    const std::string name = displayName(course);
    const SharedCourse nothing;
    SharedCourse entry = rosterCache.find(id);
    const bool isFresh = entry && entry->readAt >= of->freshSince;
    std::optional<CanvasError> failure;
    if (!isFresh) {
        try {
            auto loading = loadCourse(
                of->source, std::move(course), defaults, now,
                {.stop = of->stop.get_token(),
                 .priority = RequestPriority::background,
                 .earlier = entry});
            ScoredCourse scored = co_await loading;
            scored.readAt = elapsed();
            entry = shareLarge(std::move(scored));
        } catch (const Cancelled &) {
            co_return nothing;
        } catch (const CanvasError &error) {
            failure = error;
        } catch (const std::exception &error) {
            failure = CanvasError::network(error.what());
        }
    }
    if (!self || !isCurrent(*of))
        co_return nothing;
    if (stalled.isActive())
        stalled.start();
    if (failure) {
        logger.error(fmt::format("Couldn't score course {}: {}", id, failure->errorDescription()));
        ++of->coursesFailed;
        of->coursesWithoutNetwork += failure->lacksNetwork() ? 1 : 0;
        dashboard.courseFailed(termID, name);
        co_return nothing;
    }
    ++of->coursesRead;
    rosterCache.store(entry);
    // So that little is left to do once the last course of the term was read.
    static_cast<void>(summaries.of(entry, now()));
    dashboard.courseScored(termID);
    Q_EMIT courseDidScore(id);
    co_return entry;
}

void ScoringPass::publishTerm(const TermGroup &term, std::vector<SharedCourse> courses) {
    DashboardTerm cards{.id = *term.id(), .title = title(term), .updatedAt = now()};
    for (SharedCourse &course : courses)
        course = withCurrentThresholds(course, defaults);
    setCourses(cards, courses, summaries, stores, now());
    lastDashboardInputs.insert_or_assign(cards.id, std::move(courses));
    dashboard.termScored(std::move(cards));
}

void ScoringPass::termEnded(Run &of) {
    if (++of.endedTerms == of.terms.size())
        finish();
    else if (of.endedTerms == of.nextTerm)
        startNextTerm();
}

/// Publishes the results to the dashboard, then as a notice, then to the widgets.
void ScoringPass::finish() {
    const std::shared_ptr<Run> ended = std::exchange(run, nullptr);
    stalled.stop();
    const Date fetchedAt = now();
    const bool complete = ended->wholeTerms.size() == ended->terms.size();
    if (complete)
        dashboard.passCompleted(fetchedAt);
    else
        dashboard.passFailed();

    const auto automatic = dashboard.model().automaticTermID;
    const auto isAutomatic = [&](const TermGroup &term) {
        return automatic && term.id() == automatic;
    };
    const bool isNearby = std::ranges::any_of(dashboard.preparedTerms(), isAutomatic);
    const bool isWhole = automatic && std::ranges::count(ended->wholeTerms, *automatic) > 0;
    if (isNearby && !isWhole) {
        logger.error("Widget snapshot skipped: automatic term incomplete");
    } else {
        if (sinks.notices != nullptr)
            sinks.notices->notify(movements(ended->wholeTerms, fetchedAt));
        if (isWhole && feedsWidgets(defaults))
            sinks.widgets.write(snapshot(*automatic, ended->wholeTerms, fetchedAt));
    }
    Q_EMIT passDidEnd(
        {.complete = complete,
         .nothingRead = ended->coursesRead == 0 && ended->coursesFailed > 0,
         .lacksNetwork = ended->coursesRead == 0 &&
             ended->coursesWithoutNetwork == ended->coursesFailed && ended->coursesFailed > 0});
}

/// The students whose level got worse, in the terms that this pass scored completely.
std::vector<CourseMovement>
ScoringPass::movements(const std::vector<std::int64_t> &termIDs, Date now) const {
    std::vector<CourseMovement> movements;
    for (const std::int64_t termID : termIDs) {
        for (const SharedCourse &course : lastDashboardInputs.at(termID)) {
            const std::int64_t id = course->course.id;
            CourseMovement movement{.courseID = id, .courseName = displayName(course->course)};
            for (const RosterChange &change : summaries.of(course, now).movement) {
                if (isWorse(change))
                    movement.worseStudentIDs.push_back(change.studentID);
            }
            movements.push_back(std::move(movement));
        }
    }
    return movements;
}

/// The counts of the terms that this pass scored completely, in the order of the prepared terms.
WidgetSnapshotFile ScoringPass::snapshot(
    std::int64_t automaticTermID, const std::vector<std::int64_t> &termIDs, Date fetchedAt) const {
    WidgetSnapshotFile snapshot{.updatedAt = fetchedAt, .automaticTermID = automaticTermID};
    const bool hidesNames = defaults.value(preferences::widgetsHideCourseNames);
    for (const TermGroup &term : dashboard.preparedTerms()) {
        if (!term.id() || std::ranges::count(termIDs, *term.id()) == 0)
            continue;
        WidgetTermSummary summary{.id = *term.id(), .title = title(term)};
        for (const SharedCourse &course : lastDashboardInputs.at(*term.id())) {
            const LevelCounts levels = levelCounts(course->rows);
            summary.courses.push_back(
                {.id = course->course.id,
                 .name = hidesNames ? std::nullopt : std::optional{displayName(course->course)},
                 .atRisk = levels.atRisk,
                 .concern = levels.concern,
                 .watch = levels.watch,
                 .total = std::int64_t(course->rows.size())});
        }
        snapshot.terms.push_back(std::move(summary));
    }
    return snapshot;
}

} // namespace ellwynd
