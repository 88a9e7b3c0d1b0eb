#include "app/explain/thresholdeffect.h"

#include "app/courses/courselabel.h"
#include "base/text.h"
#include "risk/reasons.h"

#include <fmt/format.h>

#include <algorithm>
#include <unordered_map>

namespace ellwynd {

namespace {

std::int64_t flaggedIn(const ScoredCourse &course) {
    return std::ranges::count_if(
        course.rows, [](const RiskRow &row) { return row.level.has_value(); });
}

/// "Theo, Iris and 3 more".
std::string namesText(const std::vector<std::string> &names, std::size_t most) {
    // One more name is as short as saying so.
    if (names.size() <= most + 1)
        return join(names, ", ");
    return fmt::format(
        "{} and {} more",
        join(std::vector<std::string>(names.begin(), names.begin() + std::ptrdiff_t(most)), ", "),
        names.size() - most);
}

} // namespace

ThresholdEffect thresholdEffect(const ScoredCourse &before, const ScoredCourse &after) {
    std::unordered_map<std::int64_t, std::optional<RiskLevel>> levels;
    for (const RiskRow &row : after.rows)
        levels.emplace(row.id, row.level);
    ThresholdEffect effect{
        .flaggedBefore = flaggedIn(before), .flaggedAfter = flaggedIn(after), .changes = {}};
    for (const RiskRow &row : before.rows) {
        const std::optional<RiskLevel> level = levels.at(row.id);
        if (level != row.level)
            effect.changes.push_back(
                {.student = keyOf(row), .name = row.name, .from = row.level, .to = level});
    }
    return effect;
}

ThresholdEffect thresholdEffect(const RosterCache &before, const RosterCache &after) {
    ThresholdEffect all;
    for (const auto &[id, course] : before.entries) {
        const SharedCourse scored = after.find(id);
        if (!scored || scored->records != course->records)
            continue;
        ThresholdEffect effect = thresholdEffect(*course, *scored);
        all.flaggedBefore += effect.flaggedBefore;
        all.flaggedAfter += effect.flaggedAfter;
        std::ranges::move(effect.changes, std::back_inserter(all.changes));
    }
    return all;
}

std::string effectLine(
    const ThresholdEffect &effect, const CourseThresholds &before, const CourseThresholds &after) {
    std::vector<std::string> at;
    if (before.passingScore != after.passingScore)
        at.push_back(fmt::format("{:g} %", after.passingScore));
    if (before.inactivityDays != after.inactivityDays)
        at.push_back(plural(after.inactivityDays, "day"));
    std::string line = at.empty() ? std::string() : "At " + join(at, " and ") + ": ";
    line += std::to_string(effect.flaggedAfter) + " flagged";
    return effect.flaggedAfter == effect.flaggedBefore
        ? line + ", as before."
        : line + fmt::format(" instead of {}.", effect.flaggedBefore);
}

std::string effectDetails(const ThresholdEffect &effect, std::size_t maxNames) {
    std::vector<std::string> sentences;
    const auto add = [&](std::string_view title, std::optional<RiskLevel> level) {
        std::vector<std::string> names;
        for (const ThresholdEffect::Change &change : effect.changes) {
            if (change.to == level)
                names.push_back(collapsed(change.name));
        }
        if (!names.empty())
            sentences.push_back(fmt::format("{}: {}.", title, namesText(names, maxNames)));
    };
    for (const RiskLevel level : allRiskLevels)
        add("Now " + std::string(levelName(level)), level);
    add("No longer flagged", std::nullopt);
    return join(sentences, " ");
}

} // namespace ellwynd
