// When the teacher last contacted each student.
#pragma once

#include "base/date.h"
#include "base/sharedstore.h"
#include "preferences/userdefaults.h"

#include <QObject>

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

/// The last contact with each student of each course. Stored in one file, "ContactLog.json", which
/// is rewritten after each change and may be shared with other processes. Used on the main thread.
///
/// While the preference "RememberContacts" is off, nothing is read or recorded; switching the saved
/// value off deletes all records.
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

    /// At most one per student and course, in the order of the first contact.
    [[nodiscard]] const std::vector<ContactRecord> &records() const { return store.contents(); }
    [[nodiscard]] std::optional<ContactRecord>
    lastContact(std::int64_t courseID, std::int64_t studentID) const;

    void noteContact(std::int64_t courseID, std::int64_t studentID, Date date);
    /// Records contacts with several students of a course, in one write of the file.
    void
    noteContacts(std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date);
    /// Replaces the records by sample data; only for a log without a directory.
    void fill(std::vector<ContactRecord> records);
    /// Also deletes the copies of the file that were set aside.
    void deleteAll();

    [[nodiscard]] bool isEnabled() const;
    /// Whether all changes are on the disk; true for a log in memory alone.
    [[nodiscard]] bool isSaved() const { return store.isSaved(); }
    /// Tries to save changes that could not be saved.
    void saveUnsaved();

  Q_SIGNALS:
    void contactsDidChange();

  private:
    UserDefaults &defaults;
    SharedStore<std::vector<ContactRecord>> store;
    std::shared_ptr<void> observing;
};

/// The line in the privacy settings: "1 student recorded." or "Nothing recorded."
[[nodiscard]] std::string contactsStatus(const ContactLog &log);

} // namespace ellwynd
