#include "memory/outreach.h"

#include "base/calendar.h"

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

/// The last level recorded up to the contact, else the first one after it; none of those recorded
/// later than today.
RecordedLevel levelAt(const std::vector<StudentVisit> &entries, Date contactedAt, Date now) {
    const StudentVisit *before = nullptr;
    const StudentVisit *after = nullptr;
    for (const StudentVisit &entry : entries) {
        if (entry.recordedAt > now && entry.recordedAt >= calendar::startOfNextDay(now))
            continue;
        if (entry.recordedAt <= contactedAt) {
            if (before == nullptr || entry.recordedAt > before->recordedAt)
                before = &entry;
        } else if (after == nullptr || entry.recordedAt < after->recordedAt) {
            after = &entry;
        }
    }
    const StudentVisit *then = before != nullptr ? before : after;
    return then != nullptr ? then->level : RecordedLevel();
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
        .levelThen =
            levelAt(history.entries(record.courseID, record.studentID), record.contactedAt, now),
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
