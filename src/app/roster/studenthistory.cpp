#include "app/roster/studenthistory.h"

#include <algorithm>

namespace ellwynd {

StudentPast studentPast(
    const RiskRow &row, const std::vector<RosterChange> &movement, const Stores &stores, Date now) {
    StudentPast past{
        .trend = termTrend(stores.history, row.courseID, row.id),
        .outreach = lastOutcome(row, stores.contacts, stores.history, now)};
    const auto change = std::ranges::find_if(movement, [&](const RosterChange &candidate) {
        return candidate.studentID == row.id && candidate.courseID == row.courseID;
    });
    if (change != movement.end())
        past.change = *change;
    return past;
}

} // namespace ellwynd
