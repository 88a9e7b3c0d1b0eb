// A roster as the windows show it.
#pragma once

#include "app/roster/courseinsight.h"
#include "memory/movement.h"

#include <map>
#include <span>

namespace ellwynd {

/// What the roster pane shows.
struct RosterView {
    enum class State { nothingSelected, notConnected, loading, failed, shown };

    State state = State::nothingSelected;
    /// The course's or the term's name.
    std::string title;
    /// Present for a course, absent for a term.
    std::optional<std::int64_t> courseID;
    std::vector<RiskRow> rows;
    std::vector<MissedAssignment> missedWork;
    /// Who moved since the last visit; empty for a term, whose courses have unrelated histories.
    std::vector<RosterChange> movement;
    /// What became of the students the teacher wrote to.
    std::map<StudentKey, OutreachOutcome> outreach;
    /// Absent for a term.
    std::optional<CourseInsight> insight;
    std::optional<CourseThresholds> thresholds;
    /// Courses behind the rows: 1 for a course.
    std::size_t courseCount = 1;
    /// While loading, how many of them are in.
    std::size_t loadedCourses = 0;
    /// When the records behind the rows were fetched; of a term, the oldest of them.
    Date fetchedAt;
    /// Why the rows on screen could not be freshened; empty when they are as Canvas has them.
    std::string staleReason;
    /// What else the reader must know: lists that were cut short, a course that could not be read.
    std::vector<std::string> notes;
};

/// The outcome of every contact with a student of the rows.
[[nodiscard]] std::map<StudentKey, OutreachOutcome>
outreachOf(const std::vector<RiskRow> &rows, const Stores &stores, Date now);

/// The notes of several courses' rosters, each with its course's name; of a single course without.
[[nodiscard]] std::vector<std::string> notesOf(std::span<const ScoredCourse *const> courses);

/// Everything that the reader of the rows must know, a line each; empty when there is nothing.
[[nodiscard]] std::string noteText(const RosterView &roster);

/// What is shown below the title: who moved since the last visit, and how many await follow-up;
/// empty when there is neither.
[[nodiscard]] std::string rememberedLine(const RosterView &roster);

} // namespace ellwynd
