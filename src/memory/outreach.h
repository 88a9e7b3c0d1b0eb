// What became of the students the teacher wrote to.
#pragma once

#include "memory/contactlog.h"
#include "memory/rosterhistory.h"

namespace ellwynd {

/// What happened after a contact; worked out when it is asked for, never stored.
struct OutreachOutcome {
    Date contactedAt;
    /// The level at the time of the contact.
    RecordedLevel levelThen;
    std::optional<RiskLevel> levelNow;
    /// Calendar days from the contact's day to today; never negative.
    std::int64_t daysSince = 0;

    bool operator==(const OutreachOutcome &) const = default;
};

[[nodiscard]] OutreachOutcome
outcome(const ContactRecord &record, const RiskRow &row, const RosterHistory &history, Date now);

/// The outcome of the last contact with a row's student; absent for one never contacted.
[[nodiscard]] std::optional<OutreachOutcome>
lastOutcome(const RiskRow &row, const ContactLog &contacts, const RosterHistory &history, Date now);

/// "Wrote 9 days ago — improved to Watch since"
[[nodiscard]] std::string outreachText(const OutreachOutcome &outcome);

/// Written to a week or more ago, still flagged and no better since.
[[nodiscard]] bool isAwaitingFollowUp(const OutreachOutcome &outcome);

/// "no change", "worse" or "improved", the first also where the level then is unknown.
[[nodiscard]] std::string_view outcomeWord(const OutreachOutcome &outcome);

/// Of a course's flagged students.
struct OutreachCounts {
    std::int64_t flagged = 0;
    std::int64_t contacted = 0;
    std::int64_t awaitingFollowUp = 0;

    [[nodiscard]] std::int64_t notYetReached() const { return flagged - contacted; }
    bool operator==(const OutreachCounts &) const = default;
};
[[nodiscard]] OutreachCounts outreachCounts(
    const std::vector<RiskRow> &rows, const ContactLog &contacts, const RosterHistory &history,
    Date now);

/// "3 awaiting follow-up"
[[nodiscard]] std::string awaitingText(std::int64_t count);

/// The counts in a line, or the sentence in their place: no student is flagged, or
/// contacts are not remembered.
[[nodiscard]] std::string outreachLine(const OutreachCounts &counts, bool contactsAreRemembered);

/// What the counts are counts of.
inline constexpr std::string_view outreachCaption =
    "Of the flagged students. Awaiting follow-up: written to a week or more ago, no better since.";

} // namespace ellwynd
