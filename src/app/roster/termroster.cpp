#include "app/roster/termroster.h"

#include <algorithm>

namespace ellwynd {

SharedList<RiskRow> termRows(std::span<const ScoredCourse *const> courses) {
    std::vector<const RiskRow *> flagged;
    std::vector<SharedList<RiskRow>> owners;
    for (const ScoredCourse *course : courses) {
        owners.push_back(course->rows);
        for (const RiskRow &row : course->rows) {
            if (row.level)
                flagged.push_back(&row);
        }
    }
    std::ranges::stable_sort(flagged, std::greater{}, &RiskRow::score);
    return SharedList<RiskRow>::ofElements(std::move(flagged), std::move(owners));
}

} // namespace ellwynd
