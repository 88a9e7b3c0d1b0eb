#include "app/dashboard/scoringpass.h"

#include "base/log.h"
#include "canvas/records/canvaserror.h"
#include "memory/movement.h"
#include "net/task.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"widgets"};

} // namespace

/// What a pass has gathered so far.
struct ScoringPass::Results {
    std::int64_t generation = 0;
    std::vector<WidgetTermSummary> terms;
    std::vector<CourseMovement> movements;
    bool anyTermFailed = false;
};

ScoringPass::ScoringPass(
    UserDefaults &defaults, Stores &stores, TrendSync &trends, RosterCache &rosterCache,
    Dashboard &dashboard, PassSinks sinks, Clock now)
    : defaults(defaults),
      stores(stores),
      trends(trends),
      rosterCache(rosterCache),
      dashboard(dashboard),
      sinks(sinks),
      now(now) {}

ScoringPass::~ScoringPass() = default;

void ScoringPass::start(std::shared_ptr<CanvasReading> source) {
    startedAt = now();
    ++widgetGeneration;
    std::vector<TermGroup> terms = dashboard.preparedTerms();
    std::ranges::stable_partition(terms, [shown = dashboard.shownTermID()](const TermGroup &term) {
        return term.id() == shown;
    });
    dashboard.beginPass();
    detach(run(std::move(source), std::move(terms)), "The scoring pass");
}

void ScoringPass::abandon() {
    ++widgetGeneration;
    if (dashboard.progress().running)
        dashboard.passAbandoned();
}

QCoro::Task<>
ScoringPass::run(std::shared_ptr<CanvasReading> source, std::vector<TermGroup> terms) {
    const QPointer<ScoringPass> self(this);
    const std::int64_t generation = widgetGeneration;
    std::string failure;
    try {
        auto scoring = scoreTerms(std::move(source), std::move(terms));
        co_await scoring;
    } catch (const std::exception &error) {
        failure = error.what();
    }
    if (!self || failure.empty() || generation != widgetGeneration)
        co_return;
    logger.error(fmt::format("The scoring pass ended early: {}", failure));
    dashboard.passFailed();
    Q_EMIT passDidEnd(false);
}

QCoro::Task<>
ScoringPass::scoreTerms(std::shared_ptr<CanvasReading> source, std::vector<TermGroup> terms) {
    const QPointer<ScoringPass> self(this);
    Results results{.generation = widgetGeneration};
    for (const TermGroup &term : terms) {
        std::vector<QCoro::Task<bool>> courses;
        for (const Course &course : term.courses)
            courses.push_back(scoreOne(source, course, *term.id(), results.generation));
        bool whole = true;
        for (auto &course : courses) {
            const bool scored = co_await course;
            whole = whole && scored;
            if (!self || results.generation != widgetGeneration)
                co_return;
        }
        if (whole) {
            publishTerm(term, results);
        } else {
            results.anyTermFailed = true;
            logger.error(fmt::format("Widget term skipped: {} partial", title(term)));
        }
    }
    finish(results);
}

/// Whether the course was scored.
QCoro::Task<bool> ScoringPass::scoreOne(
    std::shared_ptr<CanvasReading> source, Course course, std::int64_t termID,
    std::int64_t generation) {
    const QPointer<ScoringPass> self(this);
    const std::int64_t id = course.id;
    try {
        ScoredCourse scored = co_await loadCourse(*source, std::move(course), defaults, now);
        if (!self || generation != widgetGeneration)
            co_return false;
        rosterCache.entries.insert_or_assign(id, std::move(scored));
    } catch (const CanvasError &error) {
        if (self && generation == widgetGeneration) {
            logger.error(fmt::format("Couldn't score course {}: {}", id, error.errorDescription()));
        }
        co_return false;
    } catch (const std::exception &error) {
        if (self && generation == widgetGeneration)
            logger.error(fmt::format("Couldn't score course {}: {}", id, error.what()));
        co_return false;
    }
    dashboard.courseScored(termID);
    Q_EMIT courseDidScore(id);
    co_return true;
}

void ScoringPass::publishTerm(const TermGroup &term, Results &results) {
    DashboardTerm cards{.id = *term.id(), .title = title(term)};
    WidgetTermSummary summary{.id = cards.id, .title = cards.title};
    for (const Course &course : term.courses) {
        const ScoredCourse &scored = *rosterCache.find(course.id);
        DashboardCourseCard card = dashboardCard(scored, stores, trends, now());
        summary.courses.push_back(
            {.id = card.courseID,
             .name = card.name,
             .atRisk = card.levels.atRisk,
             .concern = card.levels.concern,
             .watch = card.levels.watch,
             .total = card.total});
        CourseMovement movement{.courseID = card.courseID, .courseName = card.name};
        for (const RosterChange &change : changes(stores.history, scored.rows, course.id, now())) {
            if (isWorse(change))
                movement.worseStudentIDs.push_back(change.studentID);
        }
        results.movements.push_back(std::move(movement));
        cards.cards.push_back(std::move(card));
    }
    results.terms.push_back(std::move(summary));
    dashboard.termScored(std::move(cards), now());
}

bool ScoringPass::feedsWidgets() const {
    return !defaults.value(preferences::sampleData) || defaults.value(preferences::sampleWidgets);
}

/// The dashboard first, then the notice, then the widgets.
void ScoringPass::finish(Results &results) {
    const Date fetchedAt = now();
    if (results.anyTermFailed)
        dashboard.passFailed();
    else
        dashboard.passCompleted(fetchedAt);

    const auto automatic = dashboard.model().automaticTermID;
    const bool isNearby = automatic &&
        std::ranges::any_of(dashboard.preparedTerms(),
                            [&](const TermGroup &term) { return term.id() == *automatic; });
    const bool isComplete = automatic &&
        std::ranges::any_of(results.terms,
                            [&](const WidgetTermSummary &term) { return term.id == *automatic; });
    if (isNearby && !isComplete) {
        logger.error("Widget snapshot skipped: automatic term incomplete");
    } else {
        if (sinks.notices != nullptr)
            sinks.notices->notify(results.movements);
        if (isComplete && feedsWidgets()) {
            // The terms in one order, whichever was scored first.
            std::ranges::sort(results.terms, {}, [this](const WidgetTermSummary &term) {
                return std::ranges::find(
                           dashboard.preparedTerms(), std::optional{term.id}, &TermGroup::id) -
                    dashboard.preparedTerms().begin();
            });
            if (defaults.value(preferences::widgetsHideCourseNames)) {
                for (WidgetTermSummary &term : results.terms) {
                    for (WidgetCourseSummary &course : term.courses)
                        course.name.reset();
                }
            }
            sinks.widgets.write(
                {.updatedAt = fetchedAt,
                 .automaticTermID = *automatic,
                 .terms = std::move(results.terms)});
        }
    }
    Q_EMIT passDidEnd(!results.anyTermFailed);
}

} // namespace ellwynd
