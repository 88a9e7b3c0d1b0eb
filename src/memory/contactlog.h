// When the teacher last contacted each student.
#pragma once

#include "base/date.h"
#include "base/sharedstore.h"
#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>

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

/// The records that a change added, replaced or removed, for undoing it.
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
};

/// The removal of all of these records.
[[nodiscard]] ContactChange removalOf(const std::vector<ContactRecord> &records);

/// The last contact with each student of each course. Stored in one file, "ContactLog.json", which
/// is rewritten after each change and may be shared with other processes. Used on the main thread.
///
/// While the preference "RememberContacts" is off, nothing is read or recorded; switching it off
/// deletes all records.
///
/// Every change is returned and can be undone, for as long as the caller keeps it.
class ContactLog : public QObject {
    Q_OBJECT

  public:
    /// Reads the file. Contacts older than 365 days and those of the sample college's courses are
    /// removed from it. A file that cannot be read counts as empty.
    /// @param directory the file's folder; absent for a log in memory alone.
    ContactLog(
        UserDefaults &defaults, std::optional<std::filesystem::path> directory,
        Clock clock = systemNow);
    ~ContactLog() override;

    /// At most one per student and course, in the order of the first contact.
    [[nodiscard]] const std::vector<ContactRecord> &records() const { return store.contents(); }
    [[nodiscard]] std::optional<ContactRecord>
    lastContact(std::int64_t courseID, std::int64_t studentID) const;

    ContactChange noteContact(std::int64_t courseID, std::int64_t studentID, Date date);
    /// Records contacts with several students of a course, in one write of the file.
    ContactChange
    noteContacts(std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date);
    /// Removes the records of these students, in one write of the file.
    ContactChange removeContacts(const std::set<StudentKey> &students);
    /// Replaces the records by sample data; only for a log without a directory.
    void fill(std::vector<ContactRecord> records);
    /// Removes all records, and the file.
    ContactChange deleteAll();

    /// Restores the earlier records of those students whose record has not changed since.
    /// @return the number of students whose record has changed; all of them while contacts are not
    ///         remembered.
    std::size_t undo(const ContactChange &change);

    [[nodiscard]] bool isEnabled() const;

  Q_SIGNALS:
    void contactsDidChange();

  private:
    UserDefaults &defaults;
    SharedStore<std::vector<ContactRecord>> store;
    std::shared_ptr<void> observing;
};

/// The line in the privacy settings: "1 student recorded." or "Nothing recorded."
[[nodiscard]] std::string contactsStatus(const ContactLog &log);

/// "5 contacts in 2 courses"; empty if nothing is recorded.
[[nodiscard]] std::string contactsContents(const ContactLog &log);

} // namespace ellwynd
