// How students' levels changed after the teacher contacted them.
#pragma once

#include "memory/contactlog.h"
#include "memory/rosterhistory.h"

namespace ellwynd {

/// The levels at a contact and now. Computed when needed, not stored.
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

/// The outcome of the last contact with a row's student; absent if there was none.
[[nodiscard]] std::optional<OutreachOutcome>
lastOutcome(const RiskRow &row, const ContactLog &contacts, const RosterHistory &history, Date now);

/// "Wrote 9 days ago — improved to Watch since"
[[nodiscard]] std::string outreachText(const OutreachOutcome &outcome);

/// Whether the contact was at least a week ago, and the student is still flagged and not better.
[[nodiscard]] bool isAwaitingFollowUp(const OutreachOutcome &outcome);

/// "no change", "worse" or "improved"; "no change" if the level at the contact is unknown.
[[nodiscard]] std::string_view outcomeWord(const OutreachOutcome &outcome);

/// Counts of a course's flagged students.
struct OutreachCounts {
    std::int64_t flagged = 0;
    std::int64_t contacted = 0;
    std::int64_t awaitingFollowUp = 0;

    [[nodiscard]] std::int64_t notYetReached() const { return flagged - contacted; }
    bool operator==(const OutreachCounts &) const = default;
};
[[nodiscard]] OutreachCounts outreachCounts(
    const SharedList<RiskRow> &rows, const ContactLog &contacts, const RosterHistory &history,
    Date now);

/// "3 awaiting follow-up"
[[nodiscard]] std::string awaitingText(std::int64_t count);

/// The counts in one line; another sentence if no student is flagged or contacts are not
/// remembered.
[[nodiscard]] std::string outreachLine(const OutreachCounts &counts, bool contactsAreRemembered);

/// Explains the counts.
inline constexpr std::string_view outreachCaption =
    "Of the flagged students. Awaiting follow-up: written to a week or more ago, no better since.";

} // namespace ellwynd
