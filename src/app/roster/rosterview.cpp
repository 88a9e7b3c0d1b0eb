#include "app/roster/rosterview.h"

#include <algorithm>

namespace ellwynd {

std::map<StudentKey, OutreachOutcome>
outreachOf(const std::vector<RiskRow> &rows, const Stores &stores, Date now) {
    std::map<StudentKey, OutreachOutcome> outcomes;
    for (const RiskRow &row : rows) {
        if (const auto outcome = lastOutcome(row, stores.contacts, stores.history, now))
            outcomes.emplace(keyOf(row), *outcome);
    }
    return outcomes;
}

std::string rememberedLine(const RosterView &roster) {
    std::string line = summaryLine(roster.movement).value_or("");
    const auto awaiting = std::ranges::count_if(
        roster.outreach, [](const auto &entry) { return isAwaitingFollowUp(entry.second); });
    if (awaiting > 0)
        line += (line.empty() ? "" : " · ") + awaitingText(awaiting);
    return line;
}

} // namespace ellwynd
