#include "risk/scorer.h"

#include "risk/reasons.h"

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

// The maximum that each signal adds to a score.
constexpr double missingWeight = maxSignalShare;
constexpr double pastDueWeight = 0.1;
constexpr double timeWeight = 0.2;
constexpr double gradeWeight = 0.25;
constexpr double inactivityWeight = 0.15;

constexpr double atRiskFrom = 0.5;
constexpr double concernFrom = 0.25;
constexpr double watchFrom = 0.1;

/// Below passing, a current score up to this one is At Risk.
constexpr double failingScore = 50;
/// The missing share of the grade from which the signal has its full weight.
constexpr double severeShare = 0.2;
/// The count of missing or past-due assignments from which their signal has its full weight.
constexpr double severeCount = 5;
/// Points above passing from which a strong grade damps by `strongDamping`.
constexpr double strongMargin = 15;
constexpr double strongDamping = 0.6;
/// The fraction of the class median below which time in course counts.
constexpr double lowTimeFrom = 0.5;

/// A student's work, without class-wide missing work.
struct StudentWork {
    std::vector<std::int64_t> missing;
    std::int64_t pastDue = 0;
    std::int64_t assignedSoFar = 0;
};

bool hasHandedIn(WorkflowState state) {
    return state == WorkflowState::submitted || state == WorkflowState::graded ||
        state == WorkflowState::pendingReview;
}

/// By position in the roster.
std::vector<StudentWork> collectWork(const ScoringInput &input, const ClassFigures &figures) {
    std::vector<StudentWork> work(figures.roster.size());
    std::unordered_map<std::int64_t, std::size_t> positionOf;
    positionOf.reserve(figures.roster.size());
    for (std::size_t i = 0; i < figures.roster.size(); ++i)
        positionOf.emplace(figures.roster[i].userID, i);

    for (const SubmissionSummary &submission : input.submissions) {
        const auto position = positionOf.find(submission.userID);
        if (position == positionOf.end() ||
            figures.excludedAssignments.contains(submission.assignmentID))
            continue;
        StudentWork &student = work[position->second];
        const bool missing = submission.missing.value_or(false);
        const bool pastDue = submission.cachedDueDate && *submission.cachedDueDate < input.now;
        if (missing)
            student.missing.push_back(submission.assignmentID);
        else if (pastDue && submission.workflowState == WorkflowState::unsubmitted)
            ++student.pastDue;
        if (missing || pastDue || submission.score || hasHandedIn(submission.workflowState))
            ++student.assignedSoFar;
    }
    return work;
}

/// The share of a student's missing work in the final grade.
double missingShare(const GradeWeighting &weighting, const std::vector<std::int64_t> &missing) {
    double share = 0;
    for (const std::int64_t assignment : missing) {
        const auto found = weighting.sharesByAssignment.find(assignment);
        share += found != weighting.sharesByAssignment.end() ? found->second : 0;
    }
    return share;
}

RiskRow scoreStudent(
    const ScoringInput &input, const ClassFigures &figures, const Enrollment &student,
    const StudentWork &work) {
    const double passing = input.passingScore;
    const Grades grades = student.grades.value_or(Grades{});
    const std::optional<double> current = grades.currentScore;
    const bool belowPassing = current && *current < passing;
    const double missingCount = double(work.missing.size());

    double damping = 1;
    if (current && *current > passing)
        damping = 1 - strongDamping * std::min(1.0, (*current - passing) / strongMargin);

    std::optional<double> share;
    double missing = std::min(1.0, missingCount / severeCount);
    if (input.weighting != nullptr && !work.missing.empty()) {
        share = missingShare(*input.weighting, work.missing);
        missing = std::min(1.0, *share / severeShare);
    }

    const double pastDue = std::min(1.0, double(work.pastDue) / severeCount);

    double grade = 0;
    if (belowPassing)
        grade = std::min(1.0, (passing - *current) / std::max(1.0, passing - failingScore));

    double lowTime = 0;
    std::optional<double> timeOfMedian;
    if (figures.medianActivityTime > 0) {
        timeOfMedian = double(student.totalActivityTime.value_or(0)) / figures.medianActivityTime;
        if (*timeOfMedian < lowTimeFrom)
            lowTime = timeWeight * std::min(1.0, 2 * (lowTimeFrom - *timeOfMedian));
    }

    double inactive = 0;
    std::optional<std::int64_t> daysAway;
    if (student.lastActivityAt)
        daysAway = wholeDaysBetween(*student.lastActivityAt, input.now);
    if (figures.inactivityCounts) {
        const auto window = input.inactivityDays;
        if (!daysAway)
            inactive = 1;
        else if (const auto behind = *daysAway - figures.quietDays; window > 0 && behind > window)
            inactive = std::min(1.0, double(behind - window) / double(window));
    }

    SignalShares signals;
    if (work.assignedSoFar > 0) {
        signals[Signal::missing] = missingWeight * missing * damping;
        signals[Signal::pastDue] = pastDueWeight * pastDue * damping;
    }
    if (timeOfMedian)
        signals[Signal::time] = lowTime * damping;
    if (current)
        signals[Signal::grade] = gradeWeight * grade;
    if (figures.inactivityCounts)
        signals[Signal::inactivity] = inactivityWeight * inactive;

    double score = signals.sum();
    std::optional<ScoreFloor> floor;
    const auto lift = [&](ScoreFloor rule, double minimum) {
        if (score < minimum) {
            score = minimum;
            floor = rule;
        }
    };
    if (belowPassing)
        lift(ScoreFloor::belowPassing, watchFrom);
    if (belowPassing && *current <= failingScore)
        lift(ScoreFloor::failingGrade, atRiskFrom);
    // At least half of the assignments so far are missing, and more than one.
    if (work.missing.size() >= 2 && missingCount / double(work.assignedSoFar) >= 0.5)
        lift(ScoreFloor::mostWorkMissing, atRiskFrom);

    ReasonFigures reasons{
        .missing = work.missing,
        .assignedSoFar = work.assignedSoFar,
        .missingShare = share,
        .currentScore = belowPassing ? current : std::nullopt,
        .passingScore = passing,
        .inactive = inactive > 0,
        .daysAway = daysAway,
        .pastDue = work.pastDue,
        .timeOfMedian = timeOfMedian,
        .time = student.totalActivityTime.value_or(0),
        .medianTime = figures.medianActivityTime,
        .names = input.names};

    return {
        .id = student.userID,
        .name = studentName(student),
        .sortableName = student.user ? student.user->sortableName : std::nullopt,
        .courseName = std::string(input.courseName),
        .score = score,
        .signals = signals,
        .floor = floor,
        .level = levelOf(score),
        .currentScore = current,
        .currentGrade = grades.currentGrade,
        .missingCount = std::int64_t(work.missing.size()),
        .lastActivityAt = student.lastActivityAt,
        .totalActivityTime = student.totalActivityTime,
        .courseID = input.courseID,
        .reasonLines = explain(reasons)};
}

} // namespace

std::optional<RiskLevel> levelOf(double score) {
    if (score >= atRiskFrom)
        return RiskLevel::atRisk;
    if (score >= concernFrom)
        return RiskLevel::concern;
    if (score >= watchFrom)
        return RiskLevel::watch;
    return std::nullopt;
}

ScoredRoster scoreRoster(const ScoringInput &input) {
    const ClassFigures figures =
        classFigures(input.enrollments, input.submissions, input.termEndsAt, input.now);
    const std::vector<StudentWork> work = collectWork(input, figures);
    ScoredRoster scored;
    std::vector<RiskRow> &rows = scored.rows;
    rows.reserve(figures.roster.size());
    for (std::size_t i = 0; i < figures.roster.size(); ++i)
        rows.push_back(scoreStudent(input, figures, figures.roster[i], work[i]));
    std::ranges::stable_sort(rows, std::greater{}, &RiskRow::score);
    scored.coverage =
        coverageOf(rows, figures, input.weighting != nullptr, input.termEndsAt, input.now);
    return scored;
}

} // namespace ellwynd
