// Changes of the contacts that can be undone.
#pragma once

#include "base/date.h"
#include "risk/riskrow.h"

#include <optional>
#include <set>
#include <vector>

namespace ellwynd {

/// A contact with a student of a course. No name or text is stored.
struct ContactRecord {
    std::int64_t courseID = 0;
    std::int64_t studentID = 0;
    /// When the message was copied.
    Date contactedAt;

    bool operator==(const ContactRecord &) const = default;
};

/// At most one per student and course, in the order of the first contact.
using ContactRecords = std::vector<ContactRecord>;

/// The records that a change added, replaced or removed.
struct ContactChange {
    struct Entry {
        /// The index of `before`.
        std::size_t index = 0;
        /// Absent for a student without a record.
        std::optional<ContactRecord> before;
        /// Absent for a record that was removed.
        std::optional<ContactRecord> after;
    };
    /// At most one per student and course. Removed records are in the order of their index.
    std::vector<Entry> entries;

    /// Adds a change that was made after this one, so that reverting this change reverts both.
    void append(const ContactChange &later);
    /// Replaces, removes and appends the records of the entries.
    void apply(ContactRecords &records) const;
    /// Restores the earlier records; removed ones at their index, unless there is a newer one.
    void revert(ContactRecords &records) const;
    /// The entries whose students still have the records that the change gave them.
    [[nodiscard]] ContactChange unchangedIn(const ContactRecords &records) const;
};

/// Contacts with these students at `date`, the earlier of which are replaced.
[[nodiscard]] ContactChange recordingOf(
    const ContactRecords &records, std::int64_t courseID,
    const std::vector<std::int64_t> &studentIDs, Date date);
/// The removal of the records of these students, if they have any.
[[nodiscard]] ContactChange
removalOf(const ContactRecords &records, const std::set<StudentKey> &students);
/// The removal of all records.
[[nodiscard]] ContactChange removalOfAll(const ContactRecords &records);

} // namespace ellwynd
