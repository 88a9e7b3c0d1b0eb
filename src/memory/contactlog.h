// Whom the teacher wrote to, and when.
#pragma once

#include "base/date.h"
#include "base/sharedstore.h"
#include "preferences/userdefaults.h"

#include <QObject>

#include <vector>

namespace ellwynd {

/// One student of one course: ids and a date, no name and no text.
struct ContactRecord {
    std::int64_t courseID = 0;
    std::int64_t studentID = 0;
    /// When the message was copied.
    Date contactedAt;

    bool operator==(const ContactRecord &) const = default;
};

/// The last contact with each student of each course. Kept in one file, "ContactLog.json",
/// rewritten whole after each change; a window and a command line may share it. Lives on the main
/// thread.
///
/// Follows "RememberContacts": while it is off nothing is read or noted, and switching it off
/// forgets everything.
class ContactLog : public QObject {
    Q_OBJECT

  public:
    /// Reads the file at once; contacts older than 365 days and those of the sample college's
    /// courses are dropped from it. A file that cannot be read counts as empty.
    /// @param directory where the file lives; absent for a log in memory alone.
    ContactLog(
        UserDefaults &defaults, std::optional<std::filesystem::path> directory,
        Clock clock = systemNow);
    ~ContactLog() override;

    /// At most one per student and course, in the order of the first contact.
    [[nodiscard]] const std::vector<ContactRecord> &records() const { return store.contents(); }
    [[nodiscard]] std::optional<ContactRecord>
    lastContact(std::int64_t courseID, std::int64_t studentID) const;

    void noteContact(std::int64_t courseID, std::int64_t studentID, Date date);
    /// The same for several students of a course, in one change of the file.
    void
    noteContacts(std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date);
    /// Takes invented records over; only for a log without a directory.
    void fill(std::vector<ContactRecord> records);
    void deleteAll();

    [[nodiscard]] bool isEnabled() const;

  Q_SIGNALS:
    void contactsDidChange();

  private:
    UserDefaults &defaults;
    SharedStore<std::vector<ContactRecord>> store;
    std::shared_ptr<void> observing;
};

/// Its line in the privacy settings: "1 student recorded." or "Nothing recorded."
[[nodiscard]] std::string contactsStatus(const ContactLog &log);

} // namespace ellwynd
