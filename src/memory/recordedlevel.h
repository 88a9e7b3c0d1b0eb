// What the history knows of a student's level at some time.
#pragma once

#include "risk/risklevel.h"

namespace ellwynd {

/// Unknown, or recorded: At Risk, Concern, Watch or none.
class RecordedLevel {
  public:
    /// Unknown: nothing was recorded, or a text that this version of the program does not know.
    constexpr RecordedLevel() = default;
    /// Recorded; absent for a student who carried no level.
    constexpr explicit RecordedLevel(std::optional<RiskLevel> level)
        : known(true), recorded(level) {}

    [[nodiscard]] constexpr bool isKnown() const { return known; }
    /// Absent for a student who carried none, and for an unknown one.
    [[nodiscard]] constexpr std::optional<RiskLevel> level() const { return recorded; }

    /// Above zero when `now` is more severe, below when it is less; zero when this is unknown.
    [[nodiscard]] constexpr int worseningTo(std::optional<RiskLevel> now) const {
        return known ? severity(now) - severity(recorded) : 0;
    }

    bool operator==(const RecordedLevel &) const = default;

  private:
    bool known = false;
    std::optional<RiskLevel> recorded;
};

} // namespace ellwynd
