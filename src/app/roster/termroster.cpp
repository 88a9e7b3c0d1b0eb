#include "app/roster/termroster.h"

#include <algorithm>

namespace ellwynd {

SharedList<RiskRow> termRows(std::span<const ScoredCourse *const> courses) {
    std::vector<const RiskRow *> flagged;
    for (const ScoredCourse *course : courses) {
        for (const RiskRow &row : course->rows) {
            if (row.level)
                flagged.push_back(&row);
        }
    }
    std::ranges::stable_sort(flagged, std::greater{}, &RiskRow::score);
    std::vector<RiskRow> rows;
    rows.reserve(flagged.size());
    for (const RiskRow *row : flagged)
        rows.push_back(*row);
    return SharedList<RiskRow>::large(std::move(rows));
}

} // namespace ellwynd
