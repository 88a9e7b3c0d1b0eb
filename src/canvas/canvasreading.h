// The read interface of a Canvas data source.
#pragma once

#include "canvas/listread.h"
#include "canvas/records/canvaserror.h"
#include "canvas/records/records.h"
#include "net/requestpriority.h"

#include <QCoro/QCoroTask>

#include <memory>
#include <stop_token>

namespace ellwynd {

/// A source of courses and rosters: a teacher's Canvas, or the sample college. Each read returns a
/// list, with the reason if it is incomplete, or throws a CanvasError. A source must outlive its
/// reads.
class CanvasReading {
  public:
    CanvasReading() = default;
    CanvasReading(const CanvasReading &) = delete;
    CanvasReading &operator=(const CanvasReading &) = delete;
    virtual ~CanvasReading() = default;

    /// The same source for reads of its own: they end with Cancelled once a stop is requested, and
    /// in the background they let others go first.
    [[nodiscard]] virtual std::shared_ptr<CanvasReading>
    scoped(std::stop_token stop, RequestPriority priority) const = 0;

    /// The teacher's active courses, each with its term.
    virtual QCoro::Task<ListRead<Course>> fetchCourses() = 0;
    /// The course's active student enrollments, one for each section that a student is in.
    virtual QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) = 0;
    /// The course's assignment groups with their assignments.
    virtual QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) = 0;
    /// Every student's submissions, including those of users who are not on the roster.
    virtual QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) = 0;
};

} // namespace ellwynd
