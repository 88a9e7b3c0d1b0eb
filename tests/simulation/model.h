// The rules of scoring and of outcomes, written once more from their description, to compare the
// program's results with.
#pragma once

#include "memory/recordedlevel.h"
#include "memory/rostersnapshot.h"
#include "risk/coursethresholds.h"
#include "risk/levelcounts.h"
#include "school.h"

#include <span>

namespace ellwynd::simulation {

/// One student by the rules.
struct Judged {
    std::int64_t id = 0;
    double score = 0;
    std::int64_t missing = 0;

    /// Absent for a student who is not flagged.
    [[nodiscard]] std::optional<RiskLevel> level() const;
    /// Whether a row is of this student and says this.
    [[nodiscard]] bool agreesWith(const RiskRow &row) const;
};

/// The students of a course as they are at `now`, in the order of the roster.
/// @param termEnd the end of the term in the course list from which the course was opened.
[[nodiscard]] std::vector<Judged> judge(
    const School::OneCourse &course, const CourseThresholds &thresholds,
    std::optional<Date> termEnd, Date now);

/// The level that a student was known to have at the time of a contact. Entries of days after
/// `today` are of a time when the clock was wrong.
[[nodiscard]] RecordedLevel
levelAt(Date contact, StudentKey student, std::span<const RosterSnapshot> history, Date today);

} // namespace ellwynd::simulation
