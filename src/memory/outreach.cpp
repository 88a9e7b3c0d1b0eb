#include "memory/outreach.h"

#include "base/calendar.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

/// The last level recorded up to the contact, else the first one after it; none of those recorded
/// later than today.
RecordedLevel levelAt(const ContactRecord &contact, const HistoryVisits &visits, Date now) {
    const HistoryVisit *then = nullptr;
    RecordedLevel level;
    const auto use = [&](const HistoryVisit &visit) {
        const Date date = visit.recordedAt();
        if (date > now && date >= calendar::startOfNextDay(now))
            return;
        if (const auto entries = visit.find(contact.studentID); !entries.empty()) {
            then = &visit;
            level = visit.level(entries.front());
        }
    };
    // Visits are stored in the order of their dates, unless the clock was set back. So the first
    // one that is looked at usually decides. Of visits at the same time the first stored one
    // counts.
    for (auto each = visits.rbegin(); each != visits.rend(); ++each) {
        const auto &visit = *each;
        const bool isOlder = then != nullptr && visit->recordedAt() < then->recordedAt();
        if (visit->recordedAt() <= contact.contactedAt && !isOlder)
            use(*visit);
    }
    if (then != nullptr)
        return level;
    for (const auto &visit : visits) {
        const bool isNewer = then != nullptr && visit->recordedAt() >= then->recordedAt();
        if (visit->recordedAt() > contact.contactedAt && !isNewer)
            use(*visit);
    }
    return level;
}

/// Above zero if the level is worse than at the contact; zero if that one is unknown.
int difference(const OutreachOutcome &outcome) {
    return outcome.levelThen.worseningTo(outcome.levelNow);
}

std::string clause(const OutreachOutcome &outcome) {
    const std::string_view now = levelName(outcome.levelNow);
    if (!outcome.levelNow)
        return outcome.levelThen.level() ? "no longer flagged since" : "not flagged";
    const int worse = difference(outcome);
    return worse > 0 ? fmt::format("slipped to {} since", now)
        : worse < 0  ? fmt::format("improved to {} since", now)
                     : fmt::format("still {}", now);
}

} // namespace

OutreachOutcome
outcome(const ContactRecord &record, const RiskRow &row, const RosterHistory &history, Date now) {
    return {
        .contactedAt = record.contactedAt,
        .levelThen = levelAt(record, history.visits(record.courseID), now),
        .levelNow = row.level,
        .daysSince = std::max<std::int64_t>(0, calendar::daysBetween(record.contactedAt, now))};
}

std::optional<OutreachOutcome> lastOutcome(
    const RiskRow &row, const ContactLog &contacts, const RosterHistory &history, Date now) {
    const auto record = contacts.lastContact(row.courseID, row.id);
    return record ? std::optional{outcome(*record, row, history, now)} : std::nullopt;
}

std::string outreachText(const OutreachOutcome &outcome) {
    const std::int64_t days = outcome.daysSince;
    const std::string wrote = days == 0 ? "Wrote today"
        : days == 1                     ? "Wrote yesterday"
                                        : fmt::format("Wrote {} days ago", days);
    return wrote + " — " + clause(outcome);
}

bool isAwaitingFollowUp(const OutreachOutcome &outcome) {
    constexpr std::int64_t days = 7;
    return outcome.daysSince >= days && outcome.levelNow && difference(outcome) >= 0;
}

std::string_view outcomeWord(const OutreachOutcome &outcome) {
    const int worse = difference(outcome);
    return worse > 0 ? "worse" : worse < 0 ? "improved" : "no change";
}

OutreachCounts outreachCounts(
    const SharedList<RiskRow> &rows, const ContactLog &contacts, const RosterHistory &history,
    Date now) {
    OutreachCounts counts;
    for (const RiskRow &row : rows) {
        if (!row.level)
            continue;
        ++counts.flagged;
        if (const auto since = lastOutcome(row, contacts, history, now)) {
            ++counts.contacted;
            counts.awaitingFollowUp += isAwaitingFollowUp(*since) ? 1 : 0;
        }
    }
    return counts;
}

std::string awaitingText(std::int64_t count) {
    return fmt::format("{} awaiting follow-up", count);
}

std::string outreachLine(const OutreachCounts &counts, bool contactsAreRemembered) {
    if (!contactsAreRemembered)
        return "Contact marks are turned off in Settings.";
    if (counts.flagged == 0)
        return "No students flagged — nothing to reach out about.";
    return fmt::format(
        "{} contacted · {} · {} not yet reached", counts.contacted,
        awaitingText(counts.awaitingFollowUp), counts.notYetReached());
}

} // namespace ellwynd
