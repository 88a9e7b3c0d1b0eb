// The history as it is held in memory: what each visit to a course recorded.
#pragma once

#include "memory/recordedlevel.h"
#include "memory/rostersnapshot.h"

#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace ellwynd {

/// The levels of a course's students at one instant. Never changed, so that threads may share it.
class HistoryVisit {
  public:
    /// @param entries those of one course and one instant, in the order of recording; not empty.
    explicit HistoryVisit(std::span<const RosterSnapshot> entries);

    [[nodiscard]] std::int64_t courseID() const { return course; }
    [[nodiscard]] Date recordedAt() const { return instant; }
    /// The number of entries, and each of them in the order of recording.
    [[nodiscard]] std::size_t size() const { return entries.size(); }
    [[nodiscard]] std::int64_t studentID(std::size_t index) const {
        return entries[index].studentID;
    }
    [[nodiscard]] std::int64_t missingCount(std::size_t index) const {
        return entries[index].missingCount;
    }
    [[nodiscard]] RecordedLevel level(std::size_t index) const;
    /// The level's text, which may be of another version of the program.
    [[nodiscard]] std::string_view levelText(std::size_t index) const;
    [[nodiscard]] RosterSnapshot snapshot(std::size_t index) const;

    /// The indices of a student's entries, in the order of recording: one in a file of this
    /// program, or none.
    [[nodiscard]] std::span<const std::uint32_t> find(std::int64_t studentID) const;

  private:
    struct Entry {
        std::int64_t studentID = 0;
        std::int64_t missingCount = 0;
        /// The index of a known level's text, or that of `otherLevels` after them.
        std::uint32_t level = 0;
    };

    std::int64_t course;
    Date instant;
    std::vector<Entry> entries;
    /// The indices of the entries, by student.
    std::vector<std::uint32_t> byStudent;
    /// Texts that this version does not know.
    std::vector<std::string> otherLevels;
};

/// In the order of recording. Copying it copies no entries.
using HistoryVisits = std::vector<std::shared_ptr<const HistoryVisit>>;

/// Entries with the same course and instant in a row become one visit.
[[nodiscard]] HistoryVisits visitsOf(std::span<const RosterSnapshot> entries);

/// All entries of visits, in their order.
[[nodiscard]] std::vector<RosterSnapshot> snapshotsOf(const HistoryVisits &visits);

} // namespace ellwynd
