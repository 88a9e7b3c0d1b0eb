// The state of the roster pane.
#pragma once

#include "app/roster/courseinsight.h"
#include "memory/movement.h"

#include <map>
#include <span>

namespace ellwynd {

/// The roster on screen, with everything shown around it.
struct RosterView {
    enum class State { nothingSelected, notConnected, loading, failed, shown };

    State state = State::nothingSelected;
    /// The name of the course or the term.
    std::string title;
    /// Absent for a term.
    std::optional<std::int64_t> courseID;
    SharedList<RiskRow> rows;
    std::vector<MissedAssignment> missedWork;
    /// Changes of level since the last visit; empty for a term, whose courses have separate visits.
    std::vector<RosterChange> movement;
    /// The outcomes of contacts, by student.
    std::map<StudentKey, OutreachOutcome> outreach;
    /// Whether contacts are remembered; otherwise nobody is known to have been written to.
    bool remembersContacts = true;
    /// The short names of the courses.
    std::map<std::int64_t, std::string> courseCodes;
    /// Absent for a term.
    std::optional<CourseInsight> insight;
    /// Absent for a term.
    std::optional<CourseThresholds> thresholds;
    /// Whether they were others at the last visit of this run, so that the movement may come from
    /// them.
    bool thresholdsChanged = false;
    /// The number of courses that the rows are from, or will be from once loaded.
    std::size_t courseCount = 1;
    /// While loading, the number of courses whose read has ended.
    std::size_t loadedCourses = 0;
    /// When the records were fetched; for a term, the earliest time.
    Date fetchedAt;
    /// Why the last refresh of the rows failed; empty otherwise.
    std::string staleReason;
    /// Sentences about lists that were cut short and courses that could not be read.
    std::vector<std::string> notes;
};

/// The outcome of the last contact with each student of the rows; without an entry for students who
/// were not contacted.
[[nodiscard]] std::map<StudentKey, OutreachOutcome>
outreachOf(const SharedList<RiskRow> &rows, const Stores &stores, Date now);

/// The course codes; the name of a course without one.
[[nodiscard]] std::map<std::int64_t, std::string>
courseCodesOf(std::span<const ScoredCourse *const> courses);

/// The notes of all courses, each with its course's name if there are several.
[[nodiscard]] std::vector<std::string> notesOf(std::span<const ScoredCourse *const> courses);

/// The stale reason and the notes, one line each; empty if there are none.
[[nodiscard]] std::string noteText(const RosterView &roster);

/// The line below the title: the movement since the last visit, the number of students awaiting
/// follow-up, and whether thresholds have changed; empty if there is none of them.
[[nodiscard]] std::string rememberedLine(const RosterView &roster);

} // namespace ellwynd
