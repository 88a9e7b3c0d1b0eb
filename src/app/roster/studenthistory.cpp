#include "app/roster/studenthistory.h"

#include <algorithm>

namespace ellwynd {

StudentHistory studentHistory(
    const RiskRow &row, const std::vector<RosterChange> &movement, const Stores &stores, Date now) {
    StudentHistory history{
        .trend = termTrend(stores.history, row.courseID, row.id, now),
        .outreach = lastOutcome(row, stores.contacts, stores.history, now)};
    const auto change = std::ranges::find_if(movement, [&](const RosterChange &candidate) {
        return candidate.studentID == row.id && candidate.courseID == row.courseID;
    });
    if (change != movement.end())
        history.change = *change;
    return history;
}

} // namespace ellwynd
