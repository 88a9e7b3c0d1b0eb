// Live reads from a Canvas server.
#pragma once

#include "canvas/canvasreading.h"
#include "canvas/client/canvassession.h"

namespace ellwynd {

/// The only part of the program that communicates with a Canvas server. It is read-only: GET
/// requests to five endpoints with paginated JSON responses. Requests are retried with a linear
/// back-off where that may help. Every failure is a CanvasError.
///
/// The session must outlive every read; the client may be destroyed while a read runs.
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

    /// The name of the token's owner, for the connection check.
    QCoro::Task<std::string> fetchCurrentUser();

    /// Copied by every read.
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
