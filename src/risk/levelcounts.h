// How many students are at each level.
#pragma once

#include "risk/riskrow.h"

#include <algorithm>
#include <cstdint>

namespace ellwynd {

struct LevelCounts {
    std::int64_t atRisk = 0;
    std::int64_t concern = 0;
    std::int64_t watch = 0;

    /// Counts one student; does nothing for a student without a level.
    void add(std::optional<RiskLevel> level) {
        if (level)
            ++(this->*memberOf(*level));
    }

    [[nodiscard]] std::int64_t operator[](RiskLevel level) const { return this->*memberOf(level); }
    /// The sum of all three.
    [[nodiscard]] std::int64_t flagged() const { return atRisk + concern + watch; }
    /// The most severe level that any student has; absent if nobody is flagged.
    [[nodiscard]] std::optional<RiskLevel> worst() const {
        for (const RiskLevel level : allRiskLevels) {
            if ((*this)[level] > 0)
                return level;
        }
        return std::nullopt;
    }
    [[nodiscard]] std::int64_t max() const { return std::max({atRisk, concern, watch}); }

    bool operator==(const LevelCounts &) const = default;

  private:
    [[nodiscard]] static std::int64_t LevelCounts::*memberOf(RiskLevel level) {
        switch (level) {
        case RiskLevel::atRisk:
            return &LevelCounts::atRisk;
        case RiskLevel::concern:
            return &LevelCounts::concern;
        case RiskLevel::watch:
            break;
        }
        return &LevelCounts::watch;
    }
};

[[nodiscard]] inline LevelCounts levelCounts(const SharedList<RiskRow> &rows) {
    LevelCounts counts;
    for (const RiskRow &row : rows)
        counts.add(row.level);
    return counts;
}

} // namespace ellwynd
