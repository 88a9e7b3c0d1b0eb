#include "canvas/client/canvasclient.h"

#include "base/log.h"
#include "canvas/client/classify.h"
#include "canvas/client/errorbody.h"
#include "canvas/client/linkheader.h"
#include "canvas/client/request.h"
#include "canvas/records/decoding.h"
#include "net/inthread.h"
#include "net/origin.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

using Connection = CanvasClient::Connection;
using Kind = CanvasError::Kind;

constexpr Log logger{"network"};

/// The limit for an endless chain of pages: 30,000 records of one read.
constexpr int maxPages = 300;

/// Records of a large course: 200 students with 80 assignments.
constexpr std::size_t largeList = 16'000;

/// In bytes; a body of this size takes about a millisecond to decode.
constexpr std::size_t largeBody = std::size_t{512} * 1024;

std::string hostForMessages(const QUrl &url, const Connection &connection) {
    if (const QString host = url.host(); !host.isEmpty())
        return host.toStdString();
    const std::string base = hostOf(connection.baseURL);
    return base.empty() ? "the Canvas server" : base;
}

/// Sends one request. @throws CanvasError for every failure and every status but 200 to 299.
QCoro::Task<HttpResponse> send(Connection connection, QUrl url) {
    const std::string host = hostForMessages(url, connection);
    HttpResponse response;
    try {
        auto get =
            connection.session->get(url, connection.token, connection.stop, connection.priority);
        response = co_await get;
    } catch (const TransportFailure &failure) {
        const CanvasError error = classify(failure, host);
        logger.error(
            fmt::format("Transport failure: {} → {}", int(failure.code), error.errorDescription()));
        throw error;
    }
    if (response.tooLarge) {
        logger.error(fmt::format("HTTP {} with a body that is too large to read", response.status));
        throw CanvasError(Kind::decodingFailed);
    }
    if (response.status == 0)
        throw CanvasError(Kind::nonHTTP);
    if (response.status >= 200 && response.status <= 299)
        co_return response;
    const CanvasError error = classifyStatus(response.status, response.body, host);
    logger.error(fmt::format("HTTP {} → {}", response.status, error.errorDescription()));
    throw error;
}

QCoro::Task<HttpResponse> sendWithRetry(Connection connection, QUrl url) {
    for (int attempt = 1;; ++attempt) {
        std::optional<CanvasError> failure;
        try {
            auto sending = send(connection, url);
            co_return co_await sending;
        } catch (const CanvasError &error) {
            failure = error;
        }
        const auto delay = retryDelay(*failure, attempt);
        if (!delay)
            throw *failure;
        auto waiting = connection.session->wait(*delay, connection.stop);
        co_await waiting;
        logger.info(fmt::format(
            "Retrying (attempt {}) after {}", attempt + 1, failure->errorDescription()));
    }
}

/// Decodes a body, a large one on another thread. @throws CanvasError if that fails.
template<class Decode>
QCoro::Task<std::invoke_result_t<Decode, const std::string &>>
decodeBody(const std::string &body, std::string host, const char *what, Decode decode) {
    try {
        if (body.size() < largeBody)
            co_return decode(body);
        auto decoding = inThread([&body, decode] { return decode(body); });
        co_return co_await decoding;
    } catch (const DecodingError &error) {
        if (looksLikeHTML(body))
            throw CanvasError::notCanvas(host);
        logger.error(fmt::format("Decoding {} failed: {}", what, error.what()));
        throw CanvasError(Kind::decodingFailed);
    }
}

template<class Record>
struct Endpoint {
    std::string path;
    QueryItems query;
    /// The type of the list, for the log.
    const char *what;
    std::vector<Record> (*decode)(const std::string &);
};

/// Reads all pages of an endpoint.
template<class Record>
QCoro::Task<ListRead<Record>> fetchAll(Connection connection, Endpoint<Record> endpoint) {
    const auto first = endpointURL(connection.baseURL, endpoint.path, endpoint.query);
    if (!first)
        throw CanvasError(Kind::badURL);
    ListRead<Record> result;
    QUrl url = *first;
    for (int page = 1;; ++page) {
        auto sending = sendWithRetry(connection, url);
        const HttpResponse response = co_await sending;
        const std::string host = url.host().isEmpty() ? "The server" : url.host().toStdString();
        auto decoding = decodeBody(response.body, host, endpoint.what, endpoint.decode);
        std::vector<Record> records = co_await decoding;
        result.records.insert(
            result.records.end(), std::make_move_iterator(records.begin()),
            std::make_move_iterator(records.end()));

        const auto next = nextLink(response.header("Link"));
        if (!next) {
            // Kept as long as the course is shown.
            result.records.shrink_to_fit();
            co_return result;
        }
        url = QUrl(QString::fromStdString(*next), QUrl::StrictMode);
        if (url.isEmpty() || !url.isValid()) {
            logger.error("The next page's address could not be read");
            result.cutShort = CutShort::unreadableLink;
            co_return result;
        }
        // The token is sent to one origin only.
        if (!isSameOrigin(*first, *next)) {
            logger.error(fmt::format("Refusing cross-host Link to {}", *next));
            result.cutShort = CutShort::refusedLink;
            co_return result;
        }
        if (page == maxPages) {
            logger.error(fmt::format("Stopped after {} pages — Link chain never ended", maxPages));
            result.cutShort = CutShort::pageLimit;
            co_return result;
        }
        // Growing step by step would fragment the heap: small values that live longer are placed
        // in the blocks that the list has left. Capacity that is not used is not resident.
        if (page == 1)
            result.records.reserve(largeList);
    }
}

std::string coursePath(std::int64_t courseID, const char *rest) {
    return fmt::format("/api/v1/courses/{}{}", courseID, rest);
}

const std::pair<std::string, std::string> perPage{"per_page", "100"};

QCoro::Task<std::string> fetchUserName(Connection connection) {
    const auto url = endpointURL(connection.baseURL, "/api/v1/users/self", {});
    if (!url)
        throw CanvasError(Kind::badURL);
    auto sending = sendWithRetry(connection, *url);
    const HttpResponse response = co_await sending;
    auto decoding = decodeBody(response.body, url->host().toStdString(), "CanvasUser", decodeUser);
    const CanvasUser user = co_await decoding;
    co_return user.name ? *user.name : user.shortName.value_or("your Canvas account");
}

} // namespace

CanvasClient::CanvasClient(
    std::string baseURL, std::string token, CanvasSession &session, std::stop_token stop,
    RequestPriority priority)
    : connection{std::move(baseURL), std::move(token), &session, std::move(stop), priority} {}

std::shared_ptr<CanvasReading>
CanvasClient::scoped(std::stop_token stop, RequestPriority priority) const {
    return std::make_shared<CanvasClient>(
        connection.baseURL, connection.token, *connection.session, std::move(stop), priority);
}

QCoro::Task<ListRead<Course>> CanvasClient::fetchCourses() {
    logger.info("Fetching courses");
    return fetchAll<Course>(
        connection,
        {.path = "/api/v1/courses",
         .query =
             {{"enrollment_type", "teacher"},
              {"enrollment_state", "active"},
              {"include[]", "term"},
              perPage},
         .what = "Courses",
         .decode = decodeCourses});
}

QCoro::Task<ListRead<Enrollment>> CanvasClient::fetchEnrollments(std::int64_t courseID) {
    logger.info(fmt::format("Fetching enrollments for course {}", courseID));
    return fetchAll<Enrollment>(
        connection,
        {.path = coursePath(courseID, "/enrollments"),
         .query = {{"type[]", "StudentEnrollment"}, {"state[]", "active"}, perPage},
         .what = "Enrollments",
         .decode = decodeEnrollments});
}

QCoro::Task<ListRead<AssignmentGroup>> CanvasClient::fetchAssignmentGroups(std::int64_t courseID) {
    logger.info(fmt::format("Fetching assignment groups for course {}", courseID));
    return fetchAll<AssignmentGroup>(
        connection,
        {.path = coursePath(courseID, "/assignment_groups"),
         .query = {{"include[]", "assignments"}, perPage},
         .what = "AssignmentGroups",
         .decode = decodeAssignmentGroups});
}

QCoro::Task<ListRead<SubmissionSummary>> CanvasClient::fetchSubmissions(std::int64_t courseID) {
    logger.info(fmt::format("Fetching submissions for course {}", courseID));
    return fetchAll<SubmissionSummary>(
        connection,
        {.path = coursePath(courseID, "/students/submissions"),
         .query = {{"student_ids[]", "all"}, perPage},
         .what = "SubmissionSummaries",
         .decode = decodeSubmissions});
}

QCoro::Task<std::string> CanvasClient::fetchCurrentUser() {
    return fetchUserName(connection);
}

} // namespace ellwynd
