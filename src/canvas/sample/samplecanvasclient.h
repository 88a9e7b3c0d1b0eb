// The sample college as a Canvas data source.
#pragma once

#include "canvas/canvasreading.h"

namespace ellwynd {

/// A small invented college, so that everything can be tried without an account. It uses no
/// network, secrets or files, and its reads do not fail. Every response is generated from fixed
/// tables and the current time: the students are the same in every read, and their dates are
/// relative to now.
class SampleCanvasClient final : public CanvasReading {
  public:
    /// The range of the college's course ids; the stores of real data drop entries in it.
    static constexpr std::int64_t firstCourseID = 900'000;
    static constexpr std::int64_t lastCourseID = 919'999;

    explicit SampleCanvasClient(Clock now = systemNow) : now(now) {}

    std::shared_ptr<CanvasReading> scoped(std::stop_token, RequestPriority) const override {
        return std::make_shared<SampleCanvasClient>(now);
    }
    QCoro::Task<ListRead<Course>> fetchCourses() override;
    QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) override;
    QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) override;
    QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) override;

    /// Courses of nine older terms, for lists of more terms. They are not active courses, but their
    /// rosters can be read.
    [[nodiscard]] static std::vector<Course> olderCourses(Date now);

  private:
    Clock now;
};

} // namespace ellwynd
