#include "app/roster/rosterloader.h"

#include "base/largevalue.h"
#include "net/task.h"
#include "risk/scorer.h"

#include <algorithm>
#include <exception>
#include <unordered_map>
#include <unordered_set>

namespace ellwynd {

namespace {

/// Lets rows share their reasons with the earlier rows of the same students where they are equal.
/// What one reading after another leaves as it was then stays where it is in memory, so that
/// replacing it does not leave more and more small gaps.
void shareReasons(std::vector<RiskRow> &rows, const SharedList<RiskRow> &earlier) {
    std::unordered_map<std::int64_t, const RiskRow *> earlierOf;
    earlierOf.reserve(earlier.size());
    for (const RiskRow &row : earlier)
        earlierOf.emplace(row.id, &row);
    for (RiskRow &row : rows) {
        const auto found = earlierOf.find(row.id);
        if (found != earlierOf.end() && found->second->reasonLines == row.reasonLines)
            row.reasonLines = found->second->reasonLines;
    }
}

/// Sets the thresholds, the rows and the missed work of a course.
/// @param earlier the same course as scored before, or null.
void score(ScoredCourse &course, const CourseThresholds &thresholds, const ScoredCourse *earlier) {
    const CourseRecords &records = *course.records;
    const GradeWeighting &weighting = records.weighting;
    const std::string name = displayName(course.course);
    course.thresholds = thresholds;
    ScoredRoster scored = scoreRoster({
        .courseID = course.course.id,
        .courseName = name,
        .enrollments = records.students,
        .submissions = records.submissions,
        .passingScore = thresholds.passingScore,
        .inactivityDays = thresholds.inactivityDays,
        .termEndsAt = course.termEndsAt,
        // Without shares of the grade, missing work is counted instead of weighted.
        .weighting = weighting.sharesByAssignment.empty() ? nullptr : &weighting,
        .names = weighting.namesByAssignment,
        .now = course.fetchedAt,
    });
    if (earlier != nullptr)
        shareReasons(scored.rows, earlier->rows);
    course.rows = std::move(scored.rows);
    course.coverage = std::move(scored.coverage);
    course.missedWork =
        missedWork(records.submissions, records.students.size(), weighting.namesByAssignment);
}

/// Awaits a read, and stops the others if it fails.
template<class T>
QCoro::Task<T> stoppingOthers(QCoro::Task<T> read, std::stop_source others) {
    try {
        co_return co_await read;
    } catch (...) {
        others.request_stop();
        throw;
    }
}

/// Collects the exceptions of concurrent reads. The first one that is not Cancelled takes
/// precedence.
class Failures {
  public:
    /// Must be called in an exception handler.
    void add() {
        try {
            throw;
        } catch (const Cancelled &) {
            if (!first)
                first = std::current_exception();
            return;
        } catch (...) {
            if (!first || isCancelled)
                first = std::current_exception();
            isCancelled = false;
        }
    }
    void rethrow() const {
        if (first)
            std::rethrow_exception(first);
    }

  private:
    std::exception_ptr first;
    bool isCancelled = true;
};

} // namespace

ScoredCourse scoreCourse(
    Course course, std::vector<Enrollment> students, const std::vector<AssignmentGroup> &groups,
    std::vector<SubmissionSummary> submissions, const CourseThresholds &thresholds, Date now,
    const ScoredCourse *earlier) {
    students = reduceToStudents(students);
    // Canvas also returns the test student and people who have left the course.
    std::unordered_set<std::int64_t> onRoster;
    for (const Enrollment &student : students)
        onRoster.insert(student.userID);
    std::erase_if(submissions, [&](const SubmissionSummary &submission) {
        return !onRoster.contains(submission.userID);
    });

    ScoredCourse scored;
    scored.records = std::make_shared<const CourseRecords>(CourseRecords{
        .students = std::move(students),
        .submissions = std::move(submissions),
        .weighting = gradeWeighting(groups, course.appliesGroupWeights)});
    scored.termEndsAt = course.term ? course.term->endAt : std::nullopt;
    scored.course = std::move(course);
    scored.fetchedAt = now;
    score(scored, thresholds, earlier);
    return scored;
}

ScoredCourse rescored(const ScoredCourse &course, const CourseThresholds &thresholds) {
    ScoredCourse result{
        .course = course.course,
        .fetchedAt = course.fetchedAt,
        .readAt = course.readAt,
        .termEndsAt = course.termEndsAt,
        .notes = course.notes,
        .records = course.records};
    score(result, thresholds, &course);
    return result;
}

SharedCourse withCurrentThresholds(const SharedCourse &course, const UserDefaults &defaults) {
    const CourseThresholds thresholds = courseThresholds(defaults, course->course.id);
    return thresholds == course->thresholds ? course : shareLarge(rescored(*course, thresholds));
}

QCoro::Task<ScoredCourse> loadCourse(
    std::shared_ptr<CanvasReading> source, Course course, const UserDefaults &defaults, Clock clock,
    LoadOptions options) {
    std::stop_source own;
    const std::stop_callback stopsWithCaller(options.stop, [own]() mutable { own.request_stop(); });
    const auto reads = source->scoped(own.get_token(), options.priority);
    // Tasks start immediately, so the three reads run concurrently.
    auto enrollments = stoppingOthers(reads->fetchEnrollments(course.id), own);
    auto groups = stoppingOthers(reads->fetchAssignmentGroups(course.id), own);
    auto submissions = stoppingOthers(reads->fetchSubmissions(course.id), own);
    ListRead<Enrollment> students;
    ListRead<AssignmentGroup> fetchedGroups;
    ListRead<SubmissionSummary> work;
    Failures failures;
    try {
        students = co_await enrollments;
    } catch (...) {
        failures.add();
    }
    try {
        fetchedGroups = co_await groups;
    } catch (...) {
        failures.add();
    }
    try {
        work = co_await submissions;
    } catch (...) {
        failures.add();
    }
    failures.rethrow();
    const CourseThresholds thresholds = courseThresholds(defaults, course.id);
    ScoredCourse scored = scoreCourse(
        std::move(course), std::move(students.records), fetchedGroups.records,
        std::move(work.records), thresholds, clock(), options.earlier.get());
    const auto addNote = [&](std::string_view records, std::optional<CutShort> cutShort) {
        if (cutShort)
            scored.notes.push_back(cutShortText(records, *cutShort));
    };
    addNote("students", students.cutShort);
    addNote("assignments", fetchedGroups.cutShort);
    addNote("submissions", work.cutShort);
    co_return scored;
}

} // namespace ellwynd
