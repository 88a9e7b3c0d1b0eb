// Live reads from a Canvas server.
#pragma once

#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"

namespace ellwynd {

/// The only part of the program that talks to a Canvas server. It reads and never writes: five GET
/// endpoints, each answered as JSON, page by page, with a short linear back-off where a retry
/// helps. Every failure is one CanvasError.
///
/// The session must outlive every read; the client itself may be destroyed while one runs.
class CanvasClient final : public CanvasReading {
  public:
    /// @param baseURL the institution's address as saved.
    /// @param stop ends running reads and their waits with Cancelled.
    CanvasClient(
        std::string baseURL, std::string token, CanvasSession &session, std::stop_token stop = {},
        RequestPriority priority = RequestPriority::foreground);

    std::shared_ptr<CanvasReading>
    scoped(std::stop_token stop, RequestPriority priority) const override;

    QCoro::Task<ListRead<Course>> fetchCourses() override;
    QCoro::Task<ListRead<Enrollment>> fetchEnrollments(std::int64_t courseID) override;
    QCoro::Task<ListRead<AssignmentGroup>> fetchAssignmentGroups(std::int64_t courseID) override;
    QCoro::Task<ListRead<SubmissionSummary>> fetchSubmissions(std::int64_t courseID) override;

    /// The name of whom the token belongs to, for the connection check.
    QCoro::Task<std::string> fetchCurrentUser();

    /// What the reads need; they hold a copy.
    struct Connection {
        std::string baseURL;
        std::string token;
        CanvasSession *session;
        std::stop_token stop;
        RequestPriority priority;
    };

  private:
    Connection connection;
};

} // namespace ellwynd
