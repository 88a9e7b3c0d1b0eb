// The recorded history of one student in one course.
#pragma once

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

    bool operator==(const StudentHistory &) const = default;
};

/// "Now At Risk. Recorded today: Concern."
/// @param recorded the level recorded today.
[[nodiscard]] std::string
levelDiffersText(std::optional<RiskLevel> now, std::optional<RiskLevel> recorded);

/// @param movement the movement of the student's course.
[[nodiscard]] StudentHistory studentHistory(
    const RiskRow &row, const std::vector<RosterChange> &movement, const Stores &stores, Date now);

} // namespace ellwynd
