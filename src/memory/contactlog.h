// When the teacher last contacted each student.
#pragma once

#include "base/sharedstore.h"
#include "memory/contactchange.h"
#include "preferences/userdefaults.h"

#include <QObject>

#include <unordered_map>

namespace ellwynd {

/// The last contact with each student of each course. Stored in one file, "ContactLog.json", which
/// is rewritten after each change and may be shared with other processes. Used on the main thread.
///
/// While the preference "RememberContacts" is off, nothing is read or recorded; switching the saved
/// value off deletes all records.
///
/// Every change is returned and can be undone, for as long as the caller keeps it.
class ContactLog : public QObject {
    Q_OBJECT

  public:
    /// Reads the file. Contacts older than 365 days and those of the sample college's courses are
    /// removed from it, as are numbers out of range. A file that cannot be read counts as empty;
    /// it is replaced by the next save, unless it is unavailable.
    /// @param directory the file's folder; absent for a log in memory alone.
    ContactLog(
        UserDefaults &defaults, std::optional<std::filesystem::path> directory,
        Clock clock = systemNow);
    ~ContactLog() override;

    [[nodiscard]] const ContactRecords &records() const { return store.contents(); }
    [[nodiscard]] std::optional<ContactRecord>
    lastContact(std::int64_t courseID, std::int64_t studentID) const;
    /// Differs from earlier values once the contacts with the students of a course have changed.
    [[nodiscard]] std::uint64_t revision(std::int64_t courseID) const;

    ContactChange noteContact(std::int64_t courseID, std::int64_t studentID, Date date);
    /// Records contacts with several students of a course, in one write of the file.
    ContactChange
    noteContacts(std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date);
    /// Removes the records of these students, in one write of the file.
    ContactChange removeContacts(const std::set<StudentKey> &students);
    /// Replaces the records by sample data; only for a log without a directory.
    void fill(ContactRecords records);
    /// Removes all records, the file, and the copies of it that were set aside.
    ContactChange deleteAll();

    /// Restores the earlier records of those students whose record has not changed since.
    /// @return the number of students whose record has changed; all of them while contacts are not
    ///         remembered.
    std::size_t undo(const ContactChange &change);

    [[nodiscard]] bool isEnabled() const;
    /// Whether all changes are on the disk; true for a log in memory alone.
    [[nodiscard]] bool isSaved() const { return store.isSaved(); }
    /// Tries to save changes that could not be saved.
    void saveUnsaved();

  Q_SIGNALS:
    void contactsDidChange();

  private:
    UserDefaults &defaults;
    SharedStore<ContactRecords> store;
    /// The records by course and student; updated on first use after a change.
    struct CourseContacts {
        /// In the order of the students' ids.
        ContactRecords records;
        std::uint64_t revision = 0;
    };
    [[nodiscard]] const CourseContacts &course(std::int64_t courseID) const;
    mutable std::unordered_map<std::int64_t, CourseContacts> courses;
    mutable std::optional<std::uint64_t> coursesRevision;
    std::shared_ptr<void> observing;
};

/// The line in the privacy settings: "1 student recorded." or "Nothing recorded."
[[nodiscard]] std::string contactsStatus(const ContactLog &log);

/// "5 contacts in 2 courses"; empty if nothing is recorded.
[[nodiscard]] std::string contactsContents(const ContactLog &log);

} // namespace ellwynd
