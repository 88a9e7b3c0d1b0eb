#include "memory/historyvisit.h"

#include <algorithm>
#include <array>
#include <numeric>

namespace ellwynd {

namespace {

/// The levels that this version knows, by the number that stands for them.
constexpr std::array<std::optional<RiskLevel>, allRiskLevels.size() + 1> knownLevels = [] {
    std::array<std::optional<RiskLevel>, allRiskLevels.size() + 1> levels;
    std::ranges::copy(allRiskLevels, levels.begin());
    return levels;
}();

} // namespace

HistoryVisit::HistoryVisit(std::span<const RosterSnapshot> entries)
    : course(entries.front().courseID),
      instant(entries.front().recordedAt),
      byStudent(entries.size()) {
    this->entries.reserve(entries.size());
    for (const RosterSnapshot &entry : entries) {
        const auto known =
            std::ranges::find(knownLevels, entry.level, [](std::optional<RiskLevel> level) {
                return levelName(level);
            });
        std::size_t level = std::size_t(known - knownLevels.begin());
        if (known == knownLevels.end()) {
            const auto other = std::ranges::find(otherLevels, entry.level);
            level += std::size_t(other - otherLevels.begin());
            if (other == otherLevels.end())
                otherLevels.push_back(entry.level);
        }
        this->entries.push_back({entry.studentID, entry.missingCount, std::uint32_t(level)});
    }
    otherLevels.shrink_to_fit();
    std::iota(byStudent.begin(), byStudent.end(), 0U);
    std::ranges::stable_sort(byStudent, {}, [this](std::uint32_t i) { return studentID(i); });
}

RecordedLevel HistoryVisit::level(std::size_t index) const {
    const std::size_t level = entries[index].level;
    return level < knownLevels.size() ? RecordedLevel(knownLevels[level]) : RecordedLevel();
}

std::string_view HistoryVisit::levelText(std::size_t index) const {
    const std::size_t level = entries[index].level;
    return level < knownLevels.size() ? levelName(knownLevels[level])
                                      : otherLevels[level - knownLevels.size()];
}

RosterSnapshot HistoryVisit::snapshot(std::size_t index) const {
    return {
        .courseID = course,
        .studentID = studentID(index),
        .recordedAt = instant,
        .level = std::string(levelText(index)),
        .missingCount = missingCount(index)};
}

std::span<const std::uint32_t> HistoryVisit::find(std::int64_t studentID) const {
    // Not equal_range, whose result clang 14 rejects with this standard library.
    const auto student = [this](std::uint32_t i) { return this->studentID(i); };
    const auto first = std::ranges::lower_bound(byStudent, studentID, {}, student);
    const auto last = std::ranges::upper_bound(first, byStudent.end(), studentID, {}, student);
    return {first, last};
}

HistoryVisits visitsOf(std::span<const RosterSnapshot> entries) {
    HistoryVisits visits;
    while (!entries.empty()) {
        const auto end = std::ranges::find_if_not(entries, [&](const RosterSnapshot &entry) {
            return entry.courseID == entries.front().courseID &&
                entry.recordedAt == entries.front().recordedAt;
        });
        const auto size = std::size_t(end - entries.begin());
        visits.push_back(std::make_shared<const HistoryVisit>(entries.first(size)));
        entries = entries.subspan(size);
    }
    return visits;
}

std::vector<RosterSnapshot> snapshotsOf(const HistoryVisits &visits) {
    std::vector<RosterSnapshot> snapshots;
    for (const auto &visit : visits) {
        for (std::size_t i = 0; i < visit->size(); ++i)
            snapshots.push_back(visit->snapshot(i));
    }
    return snapshots;
}

} // namespace ellwynd
