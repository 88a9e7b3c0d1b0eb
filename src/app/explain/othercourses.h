// The other courses in which a student is flagged.
#pragma once

#include "app/roster/rostercache.h"

namespace ellwynd {

struct OtherCourse {
    StudentKey student;
    std::string courseName;
    RiskLevel level = RiskLevel::watch;

    bool operator==(const OtherCourse &) const = default;
};

/// The courses in memory, other than the row's, in which the student is flagged; the most severe
/// level first. Courses whose term had ended when they were read are left out, unless it is the
/// row's own term.
[[nodiscard]] std::vector<OtherCourse> otherCourses(const RiskRow &row, const RosterCache &cache);

/// "Also in Web Interface Design: Concern".
[[nodiscard]] std::string alsoInText(const OtherCourse &other);

} // namespace ellwynd
