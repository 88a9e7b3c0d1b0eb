// Scores a large course: 500 students and 80 assignments, with reasons.
#include "risk/missedwork.h"
#include "risk/scorer.h"

#include <benchmark/benchmark.h>

namespace {

using namespace ellwynd;

constexpr std::int64_t students = 500;
constexpr std::int64_t assignments = 80;
const Date now = *parseInstant("2026-09-24T12:00:00Z");

struct LargeCourse {
    std::vector<Enrollment> enrollments;
    std::vector<SubmissionSummary> submissions;
    GradeWeighting weighting;

    LargeCourse() {
        for (std::int64_t id = 0; id < assignments; ++id) {
            weighting.sharesByAssignment[id] = 1.0 / double(assignments);
            weighting.namesByAssignment[id] = "Assignment number " + std::to_string(id);
        }
        for (std::int64_t id = 0; id < students; ++id) {
            enrollments.push_back(
                {.userID = id,
                 .user = EnrolledUser{.id = id, .name = "Student number " + std::to_string(id)},
                 .grades = Grades{.currentScore = double(30 + id % 70), .currentGrade = "B"},
                 .lastActivityAt = now - std::chrono::hours(id % 500),
                 .totalActivityTime = 3600 * (id % 40)});
            for (std::int64_t assignment = 0; assignment < assignments; ++assignment) {
                const bool missing = (id * 7 + assignment * 13) % 11 == 0;
                submissions.push_back(
                    {.userID = id,
                     .assignmentID = assignment,
                     .workflowState = missing ? "unsubmitted" : "graded",
                     .missing = missing,
                     .score = missing ? std::nullopt : std::optional(8.5),
                     .cachedDueDate = now - std::chrono::hours(120)});
            }
        }
    }
};

void scoreLargeCourse(benchmark::State &state) {
    const LargeCourse course;
    for (auto _ : state) {
        const auto scored = scoreRoster(
            {.courseID = 4021,
             .courseName = "Bio",
             .enrollments = course.enrollments,
             .submissions = course.submissions,
             .weighting = &course.weighting,
             .names = course.weighting.namesByAssignment,
             .now = now});
        benchmark::DoNotOptimize(scored.rows.data());
    }
}

void listMissingWork(benchmark::State &state) {
    const LargeCourse course;
    for (auto _ : state) {
        const auto work =
            missedWork(course.submissions, students, course.weighting.namesByAssignment);
        benchmark::DoNotOptimize(work.data());
    }
}

} // namespace

BENCHMARK(scoreLargeCourse)->Unit(benchmark::kMillisecond);
BENCHMARK(listMissingWork)->Unit(benchmark::kMillisecond);
