// Maps the keys of Canvas's JSON to the members of records.
#pragma once

#include "canvas/records/records.h"

#include <string_view>
#include <tuple>

namespace ellwynd::decoding {

template<class Record, class Value>
struct Field {
    std::string_view key;
    Value Record::*member;
    bool required;
};

template<class Record, class Value>
constexpr Field<Record, Value> required(std::string_view key, Value Record::*member) {
    return {key, member, true};
}

template<class Record, class Value>
constexpr Field<Record, std::optional<Value>>
optional(std::string_view key, std::optional<Value> Record::*member) {
    return {key, member, false};
}

/// The schema of a record: its name in errors and its fields.
template<class Record>
struct Schema;

template<>
struct Schema<Term> {
    static constexpr std::string_view name = "Term";
    static constexpr std::tuple fields{
        required("id", &Term::id),
        optional("name", &Term::name),
        optional("start_at", &Term::startAt),
        optional("end_at", &Term::endAt),
    };
};

template<>
struct Schema<Course> {
    static constexpr std::string_view name = "Course";
    static constexpr std::tuple fields{
        required("id", &Course::id),
        optional("name", &Course::name),
        optional("course_code", &Course::courseCode),
        optional("term", &Course::term),
        optional("apply_assignment_group_weights", &Course::appliesGroupWeights),
    };
};

template<>
struct Schema<Assignment> {
    static constexpr std::string_view name = "Assignment";
    static constexpr std::tuple fields{
        required("id", &Assignment::id),
        optional("name", &Assignment::name),
        optional("points_possible", &Assignment::pointsPossible),
        optional("omit_from_final_grade", &Assignment::omitFromFinalGrade),
        optional("published", &Assignment::published),
    };
};

template<>
struct Schema<AssignmentGroup> {
    static constexpr std::string_view name = "AssignmentGroup";
    static constexpr std::tuple fields{
        required("id", &AssignmentGroup::id),
        optional("name", &AssignmentGroup::name),
        optional("group_weight", &AssignmentGroup::groupWeight),
        optional("assignments", &AssignmentGroup::assignments),
    };
};

template<>
struct Schema<EnrolledUser> {
    static constexpr std::string_view name = "EnrolledUser";
    static constexpr std::tuple fields{
        required("id", &EnrolledUser::id),
        optional("name", &EnrolledUser::name),
        optional("sortable_name", &EnrolledUser::sortableName),
    };
};

template<>
struct Schema<Grades> {
    static constexpr std::string_view name = "Grades";
    static constexpr std::tuple fields{
        optional("current_score", &Grades::currentScore),
        optional("current_grade", &Grades::currentGrade),
    };
};

template<>
struct Schema<Enrollment> {
    static constexpr std::string_view name = "Enrollment";
    static constexpr std::tuple fields{
        required("user_id", &Enrollment::userID),
        optional("user", &Enrollment::user),
        optional("grades", &Enrollment::grades),
        optional("last_activity_at", &Enrollment::lastActivityAt),
        optional("total_activity_time", &Enrollment::totalActivityTime),
    };
};

template<>
struct Schema<SubmissionSummary> {
    static constexpr std::string_view name = "SubmissionSummary";
    static constexpr std::tuple fields{
        required("user_id", &SubmissionSummary::userID),
        required("assignment_id", &SubmissionSummary::assignmentID),
        required("workflow_state", &SubmissionSummary::workflowState),
        optional("missing", &SubmissionSummary::missing),
        optional("late", &SubmissionSummary::late),
        optional("score", &SubmissionSummary::score),
        optional("cached_due_date", &SubmissionSummary::cachedDueDate),
    };
};

template<>
struct Schema<CanvasUser> {
    static constexpr std::string_view name = "CanvasUser";
    static constexpr std::tuple fields{
        optional("name", &CanvasUser::name),
        optional("short_name", &CanvasUser::shortName),
    };
};

} // namespace ellwynd::decoding
