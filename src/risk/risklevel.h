// How much attention a student needs.
#pragma once

#include <array>
#include <optional>
#include <string_view>

namespace ellwynd {

/// In falling severity, which is also the sort order. Most students have no level, which is an
/// absent `std::optional<RiskLevel>`.
enum class RiskLevel { atRisk, concern, watch };

inline constexpr std::array allRiskLevels{RiskLevel::atRisk, RiskLevel::concern, RiskLevel::watch};

/// "At Risk", "Concern" or "Watch".
[[nodiscard]] constexpr std::string_view levelName(RiskLevel level) {
    switch (level) {
    case RiskLevel::atRisk:
        return "At Risk";
    case RiskLevel::concern:
        return "Concern";
    case RiskLevel::watch:
        break;
    }
    return "Watch";
}

/// The level's name, and "OK" for no level.
[[nodiscard]] constexpr std::string_view levelName(std::optional<RiskLevel> level) {
    return level ? levelName(*level) : "OK";
}

/// At Risk 3, Concern 2, Watch 1, no level 0: for comparing levels of different days.
[[nodiscard]] constexpr int severity(std::optional<RiskLevel> level) {
    return level ? 3 - static_cast<int>(*level) : 0;
}

} // namespace ellwynd
