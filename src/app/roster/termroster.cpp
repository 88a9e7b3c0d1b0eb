#include "app/roster/termroster.h"

#include <algorithm>

namespace ellwynd {

std::vector<RiskRow> termRows(std::span<const ScoredCourse *const> courses) {
    std::vector<RiskRow> rows;
    for (const ScoredCourse *course : courses) {
        std::ranges::copy_if(course->rows, std::back_inserter(rows), [](const RiskRow &row) {
            return row.level.has_value();
        });
    }
    std::ranges::stable_sort(rows, std::greater{}, &RiskRow::score);
    return rows;
}

} // namespace ellwynd
