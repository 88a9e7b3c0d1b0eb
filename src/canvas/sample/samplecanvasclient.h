// The invented college as a Canvas data source.
#pragma once

#include "canvas/canvasreading.h"

namespace ellwynd {

/// Answers Canvas's reads with a small invented college, so that everything can be tried without an
/// account. It touches no network, no secret and no file; no read fails. Every answer is built anew
/// from fixed tables and "now": the same students at every read, only their dates move along.
class SampleCanvasClient final : public CanvasReading {
  public:
    /// Course ids of the college: real stores drop entries of this block.
    static constexpr std::int64_t firstCourseID = 900'000;
    static constexpr std::int64_t lastCourseID = 919'999;

    explicit SampleCanvasClient(Clock clock = systemNow) : now(clock) {}

    std::shared_ptr<CanvasReading> scoped(std::stop_token, RequestPriority) const override {
        return std::make_shared<SampleCanvasClient>(now);
    }
    QCoro::Task<ListRead<Course>> fetchCourses() override;
    QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) override;
    QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) override;
    QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) override;

    /// Courses of nine older terms, for lists of terms that reach further back. They are not among
    /// the active courses, but their rosters can be read.
    [[nodiscard]] static std::vector<Course> olderCourses(Date now);

  private:
    Clock now;
};

} // namespace ellwynd
