// The flagged students of a term, in the order in which they need the teacher.
#pragma once

#include "app/roster/rosterloader.h"
#include "app/shell/stores.h"
#include "memory/movement.h"
#include "memory/outreach.h"

#include <array>

namespace ellwynd {

/// A flagged student in one course; a student flagged in two courses is there twice.
struct DashboardStudent {
    /// A part of its scored course, which is kept with it.
    std::shared_ptr<const RiskRow> row;
    /// The short name of the course.
    std::string courseCode;
    /// The short names of the term's other courses in which the student is flagged.
    std::vector<std::string> alsoIn;
    /// Absent if the level is that of the last visit, or if there was none.
    std::optional<RosterChange> change;
    /// Absent if the student was not written to.
    std::optional<OutreachOutcome> outcome;

    bool operator==(const DashboardStudent &) const = default;
};

/// The filters above the students, each with a count.
enum class DashboardChip { worse, notYetReached, awaitingFollowUp, atRisk };
inline constexpr std::array allDashboardChips{
    DashboardChip::worse, DashboardChip::notYetReached, DashboardChip::awaitingFollowUp,
    DashboardChip::atRisk};

/// "Not yet reached".
[[nodiscard]] std::string_view chipName(DashboardChip chip);
[[nodiscard]] bool belongs(const DashboardStudent &student, DashboardChip chip);

/// The flagged students of a scored course.
/// @param changes the course's changes of level since the last visit.
[[nodiscard]] std::vector<DashboardStudent> flaggedStudents(
    const SharedCourse &course, const std::vector<RosterChange> &changes, const Stores &stores,
    Date now);

/// Sorts students of several courses: those who got worse since the last visit, those awaiting
/// follow-up, those at risk who were not written to, and the others; worst first in each group.
void sortByNeed(std::vector<DashboardStudent> &students);

/// Sets the other courses of each student of a term.
/// @return the number of different students.
std::int64_t findOtherCourses(std::vector<DashboardStudent> &students);

/// What changed, what was written and where else the student is flagged: "slipped from Concern to
/// At Risk · wrote Nov 12, worse · also in CS 101".
/// @param remembersContacts otherwise nobody is known to be reached or not.
[[nodiscard]] std::string newsText(const DashboardStudent &student, bool remembersContacts);

/// Shown in place of the students: "No student awaits follow-up.", or for all of them
/// "Nobody needs you right now. Every student is OK."
[[nodiscard]] std::string emptyText(std::optional<DashboardChip> chip);

/// A student for screen readers: the name, the level, the course, the reasons and the news.
[[nodiscard]] std::string accessibleText(const DashboardStudent &student, bool remembersContacts);

} // namespace ellwynd
