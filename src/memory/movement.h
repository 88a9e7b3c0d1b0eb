// The students whose level changed since the teacher's last visit to a course.
#pragma once

#include "memory/rosterhistory.h"

namespace ellwynd {

/// A student's change of level.
struct RosterChange {
    std::int64_t studentID = 0;
    std::int64_t courseID = 0;
    std::string name;
    /// The level of the last entry from an earlier day; unknown without one.
    RecordedLevel previousLevel;
    std::optional<RiskLevel> currentLevel;
    std::optional<Date> previousDate;

    bool operator==(const RosterChange &) const = default;
};

/// In the order in which changes are listed.
enum class MovementKind { worse, newcomer, improved, unchanged };
[[nodiscard]] MovementKind movementKind(const RosterChange &change);

/// Was flagged, and is now flagged more severely.
[[nodiscard]] bool hasSlipped(const RosterChange &change);
/// Was not flagged or not on the roster, and is now flagged.
[[nodiscard]] bool isNewlyFlagged(const RosterChange &change);
/// Has a less severe level than before, or is no longer flagged.
[[nodiscard]] bool hasImproved(const RosterChange &change);
/// The students with an upward arrow: slipped or newly flagged.
[[nodiscard]] inline bool isWorse(const RosterChange &change) {
    return hasSlipped(change) || isNewlyFlagged(change);
}

struct MovementCounts {
    std::int64_t slipped = 0;
    std::int64_t newlyFlagged = 0;
    std::int64_t improved = 0;

    bool operator==(const MovementCounts &) const = default;
};
[[nodiscard]] MovementCounts movementCounts(const std::vector<RosterChange> &changes);

/// Whether the history has an entry of the course from a day before that of `date`.
[[nodiscard]] bool hasEarlierVisit(const RosterHistory &history, std::int64_t courseID, Date date);

/// The students of a scored roster whose level changed since their last entry from an earlier day,
/// worse ones first; none on the first day a course is opened. Entries of the same day are ignored.
[[nodiscard]] std::vector<RosterChange> changes(
    const RosterHistory &history, const SharedList<RiskRow> &rows, std::int64_t courseID,
    Date date);

/// "slipped from Watch to Concern", "newly Concern"
[[nodiscard]] std::string movementText(const RosterChange &change);

/// "Kutran slipped from Watch to Concern"
[[nodiscard]] std::string changeText(const RosterChange &change);

/// "Since last time: 2 slipped · 1 improved", from counts and their words; absent when all are
/// zero.
[[nodiscard]] std::optional<std::string>
sinceLastTime(const std::vector<std::pair<std::int64_t, std::string_view>> &counts);

/// The same line for all changes; absent when there are none.
[[nodiscard]] std::optional<std::string> summaryLine(const std::vector<RosterChange> &changes);

} // namespace ellwynd
