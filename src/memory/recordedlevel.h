// A student's level in the history, which may be unknown.
#pragma once

#include "risk/risklevel.h"

namespace ellwynd {

/// Unknown, or recorded: At Risk, Concern, Watch or none.
class RecordedLevel {
  public:
    /// Unknown: nothing was recorded, or a level that this version of the program does not know.
    constexpr RecordedLevel() = default;
    /// Recorded; absent for a student without a level.
    constexpr explicit RecordedLevel(std::optional<RiskLevel> recorded)
        : known(true), recorded(recorded) {}

    [[nodiscard]] constexpr bool isKnown() const { return known; }
    /// Absent for no level, and for an unknown one.
    [[nodiscard]] constexpr std::optional<RiskLevel> level() const { return recorded; }

    /// Above zero if `now` is more severe, below zero if it is less severe; zero if this is
    /// unknown.
    [[nodiscard]] constexpr int worseningTo(std::optional<RiskLevel> now) const {
        return known ? severity(now) - severity(recorded) : 0;
    }

    bool operator==(const RecordedLevel &) const = default;

  private:
    bool known = false;
    std::optional<RiskLevel> recorded;
};

} // namespace ellwynd
