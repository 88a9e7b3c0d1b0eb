#include "app/dashboard/dashboardmodel.h"

#include "base/calendar.h"
#include "memory/dailylevels.h"
#include "memory/movement.h"
#include "memory/outreach.h"

#include <algorithm>

namespace ellwynd {

namespace {

std::vector<std::int64_t> flaggedTrend(
    const ScoredCourse &course, const Stores &stores, const TrendSync &trends, Date readAt) {
    DailyCounts counts = trends.remoteCounts(course.course.id, readAt);
    const std::string oldest = calendar::dayKey(calendar::daysBefore(readAt, trendDays));
    const std::string today = calendar::dayKey(readAt);
    const auto students = std::int64_t(course.rows.size());
    // A count that this roster cannot have is another program's, or damaged.
    std::erase_if(counts, [&](const auto &day) {
        return day.first < oldest || day.first >= today || day.second < 0 || day.second > students;
    });
    for (const DailyLevels &day : lastTwoWeeks(stores.history, course.course.id, readAt))
        counts.insert_or_assign(calendar::dayKey(day.day), day.counts.flagged());
    std::vector<std::int64_t> trend;
    for (const auto &[day, count] : counts)
        trend.push_back(count);
    trend.push_back(levelCounts(course.rows).flagged());
    return trend;
}

} // namespace

DashboardCourseCard dashboardCard(
    const ScoredCourse &course, const std::vector<RosterChange> &movement,
    const std::vector<DashboardStudent> &flagged, const Stores &stores, const TrendSync &trends) {
    const MovementCounts counts = movementCounts(movement);
    DashboardCourseCard card{
        .courseID = course.course.id,
        .name = displayName(course.course),
        .label = courseLabel(course.course),
        .levels = levelCounts(course.rows),
        .total = std::int64_t(course.rows.size()),
        .slipped = counts.slipped,
        .newlyFlagged = counts.newlyFlagged,
        .improved = counts.improved,
        .awaitingFollowUp = std::ranges::count_if(
            flagged,
            [](const auto &student) { return belongs(student, DashboardChip::awaitingFollowUp); }),
        .trend = flaggedTrend(course, stores, trends, course.fetchedAt)};
    if (!course.missedWork.empty()) {
        const MissedAssignment &first = course.missedWork.front();
        card.mostMissed =
            MostMissed{first.name, std::int64_t(first.studentIDs.size()), first.isClassWide};
    }
    return card;
}

Dashboard::Dashboard(UserDefaults &defaults)
    : defaults(defaults), observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::dashboardTermID.name)
              Q_EMIT dashboardModelDidChange();
      })) {}

void Dashboard::prepareTerms(std::vector<TermGroup> nearby, const std::optional<Term> &automatic) {
    prepared = std::move(nearby);
    current.automaticTermID = automatic ? std::optional{automatic->id} : std::nullopt;
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::beginPass() {
    failed = false;
    failures.clear();
    pass = {.running = true};
    for (const TermGroup &term : prepared) {
        pass.remaining[*term.id()] = std::int64_t(term.courses.size());
        pass.total += std::int64_t(term.courses.size());
    }
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::courseScored(std::int64_t termID) {
    ++pass.done;
    --pass.remaining[termID];
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::courseFailed(std::int64_t termID, const std::string &courseName) {
    failures[termID].push_back(courseName);
    courseScored(termID);
}

std::vector<std::string> Dashboard::failedCourses(std::int64_t termID) const {
    const auto found = failures.find(termID);
    return found != failures.end() ? found->second : std::vector<std::string>();
}

void Dashboard::termScored(DashboardTerm term) {
    if (current.terms.empty())
        current.updatedAt = term.updatedAt;
    const auto known = std::ranges::find(current.terms, term.id, &DashboardTerm::id);
    if (known != current.terms.end())
        *known = std::move(term);
    else
        current.terms.push_back(std::move(term));
    // Sort in the order of the prepared terms; terms that are no longer among them come last.
    std::ranges::stable_sort(current.terms, {}, [this](const DashboardTerm &each) {
        return std::ranges::find(prepared, std::optional{each.id}, &TermGroup::id) -
            prepared.begin();
    });
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::passCompleted(Date fetchedAt) {
    pass = {};
    current.updatedAt = fetchedAt;
    std::erase_if(
        current.terms, [this](const DashboardTerm &term) { return !isPrepared(term.id); });
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::passFailed() {
    pass = {};
    failed = true;
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::passAbandoned() {
    pass = {};
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::clear() {
    current = {};
    prepared.clear();
    pass = {};
    failed = false;
    failures.clear();
    Q_EMIT dashboardModelDidChange();
}

void Dashboard::selectTerm(std::int64_t termID) {
    defaults.set(preferences::dashboardTermID, termID);
}

bool Dashboard::isPrepared(std::int64_t termID) const {
    return std::ranges::any_of(
        prepared, [termID](const TermGroup &term) { return term.id() == termID; });
}

std::int64_t Dashboard::chosenTermID() const {
    const std::int64_t stored = defaults.value(preferences::dashboardTermID);
    return isPrepared(stored) ? stored : 0;
}

std::optional<std::int64_t> Dashboard::shownTermID() const {
    if (const std::int64_t chosen = chosenTermID(); chosen != 0)
        return chosen;
    if (current.automaticTermID && isPrepared(*current.automaticTermID))
        return current.automaticTermID;
    return prepared.empty() ? std::nullopt : prepared.front().id();
}

const DashboardTerm *Dashboard::shownTerm() const {
    const auto shown = shownTermID();
    const auto found = std::ranges::find_if(
        current.terms, [&](const DashboardTerm &term) { return shown && term.id == *shown; });
    return found != current.terms.end() ? &*found : nullptr;
}

} // namespace ellwynd
