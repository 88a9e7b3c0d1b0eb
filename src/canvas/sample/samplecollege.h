// The tables of the sample college.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd::sample {

struct SampleCourse {
    std::int64_t id;
    std::string_view name;
    bool appliesGroupWeights = false;
};

struct SampleTerm {
    std::int64_t id;
    std::string_view name;
    /// Relative to now.
    std::chrono::days start;
    std::chrono::days end;
    std::vector<SampleCourse> courses;
};

struct SampleAssignment {
    std::int64_t id;
    std::string name;
    int points;
};

struct SampleGroup {
    std::int64_t id;
    std::string_view name;
    std::optional<int> weight;
    std::vector<SampleAssignment> assignments;
};

/// One invented student in one course.
struct Profile {
    std::int64_t id;
    std::string_view firstName;
    /// Percent.
    std::optional<double> currentScore;
    /// A letter grade, with U+2212 as its minus sign; empty for none.
    std::string_view currentGrade;
    /// Absent for a student without recorded activity.
    std::optional<int> daysSinceActivity;
    double activityHours;
    /// Ids of the missing assignments.
    std::vector<std::int64_t> missing;
};

/// The terms of the active courses, in the order of the course list.
[[nodiscard]] const std::vector<SampleTerm> &activeTerms();

/// Nine earlier terms, newest first.
[[nodiscard]] const std::vector<SampleTerm> &olderTerms();

/// A course's assignment groups.
[[nodiscard]] std::vector<SampleGroup> assignmentGroups(std::int64_t courseID);

/// A course's students: written by hand for three courses, generated from the id for all others.
[[nodiscard]] std::vector<Profile> roster(std::int64_t courseID);

} // namespace ellwynd::sample
