// The program's memory of its own verdicts.
#pragma once

#include "base/sharedstore.h"
#include "memory/rostersnapshot.h"
#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>

#include <unordered_map>

namespace ellwynd {

/// One entry per student, course and calendar day that the teacher opened the course on. Kept in
/// one file, "RosterHistory.json", rewritten whole after each change; a window and a command line
/// may share it. Lives on the main thread.
///
/// Follows "RememberRosterHistory": while it is off nothing is recorded, and switching it off
/// forgets everything.
class RosterHistory : public QObject {
    Q_OBJECT

  public:
    /// Reads the file at once: entries older than 365 days and those of the sample college's
    /// courses are dropped from it, and a file that cannot be read is set aside.
    /// @param directory where the file lives; absent for a history in memory alone.
    RosterHistory(
        UserDefaults &defaults, std::optional<std::filesystem::path> directory,
        Clock clock = systemNow);
    ~RosterHistory() override;

    /// In the order in which they were recorded.
    [[nodiscard]] const std::vector<RosterSnapshot> &entries() const { return store.contents(); }
    /// The student's entries in that course, in that order; empty for a student that it does not
    /// know.
    [[nodiscard]] std::vector<const RosterSnapshot *>
    entries(std::int64_t courseID, std::int64_t studentID) const;

    /// Whether the course has an entry for the day of `date`.
    [[nodiscard]] bool hasEntries(std::int64_t courseID, Date date) const;

    /// Records a course's scored roster for the day of `date`, in place of what was recorded for
    /// that day before. An empty roster records nothing.
    void record(const std::vector<RiskRow> &rows, std::int64_t courseID, Date date);
    /// Takes invented entries over; only for a history without a directory.
    void fill(std::vector<RosterSnapshot> entries);
    void deleteAll();

    [[nodiscard]] bool isEnabled() const;
    /// Calendar days with at least one entry, whatever the course.
    [[nodiscard]] std::int64_t dayCount() const;

  Q_SIGNALS:
    void historyDidChange();

  private:
    struct StudentKeyHash {
        std::size_t operator()(const StudentKey &key) const;
    };

    UserDefaults &defaults;
    SharedStore<std::vector<RosterSnapshot>> store;
    /// Positions in the entries by student; made when it is first asked for after a change.
    mutable std::unordered_map<StudentKey, std::vector<std::uint32_t>, StudentKeyHash> positions;
    mutable std::optional<std::uint64_t> positionsRevision;
    std::shared_ptr<void> observing;
};

/// Its line in the privacy settings: "12 days recorded." or "Nothing recorded."
[[nodiscard]] std::string historyStatus(const RosterHistory &history);

} // namespace ellwynd
