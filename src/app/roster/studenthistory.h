// The recorded history of one student in one course.
#pragma once

#include "app/explain/othercourses.h"
#include "app/shell/stores.h"
#include "memory/movement.h"
#include "memory/outreach.h"
#include "memory/termtrend.h"

namespace ellwynd {

struct StudentHistory {
    /// Absent if the student's level has not changed since the last visit.
    std::optional<RosterChange> change;
    /// Absent with fewer than two recorded days.
    std::optional<TermTrend> trend;
    /// Absent if the student was never contacted.
    std::optional<OutreachOutcome> outreach;
    /// Set if today's recorded level, the last of the trend, is no longer the student's level.
    bool levelDiffers = false;
    /// Set for a student who was not on the roster a week ago, while others were.
    bool isNew = false;
    /// The other courses in memory in which the student is flagged.
    std::vector<OtherCourse> otherCourses{};

    bool operator==(const StudentHistory &) const = default;
};

/// "Now At Risk. Recorded today: Concern."
/// @param recorded the level recorded today.
[[nodiscard]] std::string
levelDiffersText(std::optional<RiskLevel> now, std::optional<RiskLevel> recorded);

/// "New in this course: not on the roster a week ago."
inline constexpr std::string_view newStudentText =
    "New in this course: not on the roster a week ago.";

/// @param movement the movement of the student's course.
[[nodiscard]] StudentHistory studentHistory(
    const RiskRow &row, const std::vector<RosterChange> &movement, const Stores &stores, Date now);

} // namespace ellwynd
