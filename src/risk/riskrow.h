// A scored student.
#pragma once

#include "base/date.h"
#include "base/sharedlist.h"
#include "risk/risklevel.h"
#include "risk/signals.h"

#include <string>
#include <variant>
#include <vector>

namespace ellwynd {

struct AssignmentRef {
    std::int64_t id = 0;
    std::string name;

    bool operator==(const AssignmentRef &) const = default;
};

/// The Canvas page of the student's grades in the course.
struct GradesTarget {
    bool operator==(const GradesTarget &) const = default;
};

/// A link in the text of a reason.
struct ReasonLink {
    /// Half-open, in UTF-8 bytes of the reason's text.
    struct Range {
        std::size_t begin = 0;
        std::size_t end = 0;

        bool operator==(const Range &) const = default;
    };

    Range range;
    std::variant<GradesTarget, AssignmentRef> target;

    bool operator==(const ReasonLink &) const = default;
};

/// The signal that a reason describes.
enum class ReasonRole { missingWork, currentScore, inactivity, pastDue, timeInCourse };

/// One sentence of the explanation of a row.
struct ReasonLine {
    std::string text;
    std::vector<ReasonLink> links;
    ReasonRole role = ReasonRole::missingWork;

    bool operator==(const ReasonLine &) const = default;
};

struct RiskRow {
    /// The student's Canvas user id.
    std::int64_t id = 0;
    /// The student's display name.
    std::string name;
    /// As Canvas has it ("Lovelace, Ada"); absent if it has none.
    std::optional<std::string> sortableName;
    std::string courseName;
    /// The combined score, from 0 upward: the sum of the signals, unless a rule has lifted it.
    double score = 0;
    SignalShares signals;
    /// The rule that lifted the score above that sum; absent if none did.
    std::optional<ScoreFloor> floor;
    /// Absent for a student who is not flagged.
    std::optional<RiskLevel> level;
    /// Percent.
    std::optional<double> currentScore;
    std::optional<std::string> currentGrade;
    std::int64_t missingCount = 0;
    std::optional<Date> lastActivityAt;
    /// Seconds.
    std::optional<std::int64_t> totalActivityTime;
    std::int64_t courseID = 0;
    /// The explanation, in the order of the signals; a compact roster shows only the first line.
    SharedList<ReasonLine> reasonLines;

    bool operator==(const RiskRow &) const = default;
};

/// Identifies a student of a course, where several courses are processed together.
struct StudentKey {
    std::int64_t courseID = 0;
    std::int64_t studentID = 0;

    auto operator<=>(const StudentKey &) const = default;
};

[[nodiscard]] inline StudentKey keyOf(const RiskRow &row) {
    return {row.courseID, row.id};
}

/// The row's missing assignments, in the order of the student's submissions.
[[nodiscard]] std::vector<AssignmentRef> missingAssignments(const RiskRow &row);

} // namespace ellwynd
