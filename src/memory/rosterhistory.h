// The history of students' levels.
#pragma once

#include "base/sharedstore.h"
#include "memory/historyvisit.h"
#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>

#include <unordered_map>

namespace ellwynd {

/// A student's level at a visit.
struct StudentVisit {
    Date recordedAt;
    RecordedLevel level;
};

/// What happens to a course's entries of a day that is recorded again.
enum class EntriesOfDay { replaced, kept };

/// One entry for each student, course and calendar day on which the teacher opened the course.
/// Stored in one file, "RosterHistory.json", which is rewritten after each change and may be shared
/// with other processes. Used on the main thread.
///
/// While the preference "RememberRosterHistory" is off, nothing is recorded; switching the saved
/// value off deletes all entries.
class RosterHistory : public QObject {
    Q_OBJECT

  public:
    /// Reads the file. Entries older than 365 days and those of the sample college's courses are
    /// removed from it. A file that cannot be read is set aside, unless it is unavailable; a copy
    /// that was set aside is removed after 365 days.
    /// @param directory the file's folder; absent for a history in memory alone.
    /// @param startWork starts each read and save of the file in the background, the first from
    ///        this constructor; `historyDidChange` is emitted when the file has been read. If null,
    ///        the file is read and saved before the call that needs it returns.
    RosterHistory(
        UserDefaults &defaults, std::optional<std::filesystem::path> directory,
        Clock clock = systemNow, StartWork startWork = nullptr);
    ~RosterHistory() override;

    /// All visits, in the order in which they were recorded.
    [[nodiscard]] const HistoryVisits &visits() const { return store.contents(); }
    /// Those to a course, in that order. Valid until the next change.
    [[nodiscard]] const HistoryVisits &visits(std::int64_t courseID) const;
    /// Differs from earlier values once the visits to the course have changed.
    [[nodiscard]] std::uint64_t revision(std::int64_t courseID) const;
    /// A copy of all entries.
    [[nodiscard]] std::vector<RosterSnapshot> entries() const { return snapshotsOf(visits()); }
    /// The student's levels in that course, in the order of recording; empty if there are none.
    [[nodiscard]] std::vector<StudentVisit>
    entries(std::int64_t courseID, std::int64_t studentID) const;

    /// Records a course's scored roster for the day of `date`, in place of the course's entries of
    /// that day. If those are kept and there are any, nothing is recorded. An empty roster is
    /// ignored.
    /// @param earlier what happens to those entries.
    void record(
        const SharedList<RiskRow> &rows, std::int64_t courseID, Date date,
        EntriesOfDay earlier = EntriesOfDay::replaced);
    /// Replaces the entries by sample data; only for a history without a directory.
    void fill(const std::vector<RosterSnapshot> &entries);
    /// Removes all entries, the file, and the copies of it that were set aside.
    /// @return the visits, for `restore`.
    HistoryVisits deleteAll();
    /// Adds deleted entries again, before the others. Those of a course and a day that was recorded
    /// since are left out.
    /// @return false while history is not recorded; nothing is then restored.
    bool restore(const HistoryVisits &deleted);

    [[nodiscard]] bool isEnabled() const;
    /// Whether all changes are on the disk; true for a history in memory alone.
    [[nodiscard]] bool isSaved() const { return store.isSaved(); }
    /// Tries to save changes that could not be saved.
    void saveUnsaved();
    /// Calendar days with at least one entry of any course.
    [[nodiscard]] std::int64_t dayCount() const;

  Q_SIGNALS:
    void historyDidChange();

  private:
    struct CourseVisits {
        HistoryVisits visits;
        std::uint64_t revision = 0;
    };
    [[nodiscard]] const CourseVisits &course(std::int64_t courseID) const;

    UserDefaults &defaults;
    SharedStore<HistoryVisits> store;
    /// The visits by course; updated on first use after a change.
    mutable std::unordered_map<std::int64_t, CourseVisits> courses;
    mutable std::optional<std::uint64_t> coursesRevision;
    std::shared_ptr<void> observing;
};

/// The line in the privacy settings: "12 days recorded." or "Nothing recorded."
[[nodiscard]] std::string historyStatus(const RosterHistory &history);

/// "levels of 42 students in 3 courses"; empty if nothing is recorded.
[[nodiscard]] std::string historyContents(const RosterHistory &history);

} // namespace ellwynd
