#include "canvas/client/canvasclient.h"
#include "net/runtoend.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/servedcourse.h"

#include <QTcpServer>

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::CertificateKind;
using test::FakeCanvas;
using test::FakeReply;
using test::FakeRequest;
using testing::HasSubstr;
using Kind = CanvasError::Kind;
using Manner = FakeReply::Manner;
using namespace std::chrono_literals;

const QString coursesPath = QStringLiteral("/api/v1/courses");

/// The requested waits between retries.
std::vector<std::chrono::milliseconds> waits;

QCoro::Task<> recordWait(std::chrono::milliseconds duration, std::stop_token stop) {
    waits.push_back(duration);
    if (stop.stop_requested())
        throw Cancelled();
    co_return;
}

/// The error of reading the course list; absent if it succeeds.
std::optional<CanvasError> failureOf(CanvasClient reading) {
    try {
        (void)runToEnd(reading.fetchCourses());
    } catch (const CanvasError &error) {
        return error;
    }
    return std::nullopt;
}

/// A page of one course that links to the next page.
FakeReply pageBefore(const std::string &next) {
    return {
        .body = R"([{"id":1}])",
        .headers = {{"Link", QByteArray::fromStdString("<" + next + ">; rel=\"next\"")}}};
}

struct CanvasClientTest : testing::Test {
    FakeCanvas canvas;
    test::LogCapture log;
    std::vector<std::string> &logged = test::LogCapture::lines();
    CanvasSession session{{.inactivityTimeout = 60s, .totalTimeout = 60s}, recordWait};

    CanvasClientTest() {
        test::trustAuthority();
        waits.clear();
    }

    [[nodiscard]] CanvasClient client() { return client(canvas.address()); }
    [[nodiscard]] CanvasClient client(const std::string &address) {
        return {address, "secret-token", session};
    }
    [[nodiscard]] ListRead<Course> readCourses() { return runToEnd(client().fetchCourses()); }
};

TEST_F(CanvasClientTest, SendsTheExpectedRequests) {
    // A cookie that is not sent back.
    canvas.plan(
        coursesPath,
        {{.body = R"([{"id":1,"name":"Bio"}])", .headers = {{"Set-Cookie", "session=1; Path=/"}}}});
    const std::string base = "/api/v1/courses/4021";
    for (const std::string path : {"/enrollments", "/assignment_groups", "/students/submissions"})
        canvas.serve(QString::fromStdString(base + path), {});
    canvas.plan(QStringLiteral("/api/v1/users/self"), {{.body = R"({"short_name":"Ana"})"}});
    CanvasClient reading = client();
    EXPECT_EQ(runToEnd(reading.fetchCourses()).records.at(0).name, "Bio");
    (void)runToEnd(reading.fetchEnrollments(4021));
    (void)runToEnd(reading.fetchAssignmentGroups(4021));
    (void)runToEnd(reading.fetchSubmissions(4021));
    EXPECT_EQ(runToEnd(reading.fetchCurrentUser()), "Ana");

    std::vector<std::string> requested;
    for (const FakeRequest &request : canvas.requests) {
        requested.push_back(request.path.toStdString() + "?" + request.query.toStdString());
        EXPECT_EQ(request.method, "GET");
        EXPECT_EQ(request.headers["authorization"], "Bearer secret-token");
        EXPECT_EQ(request.headers["accept"], "application/json");
        EXPECT_THAT(request.headers["user-agent"].toStdString(), testing::StartsWith("Ellwynd/"));
        EXPECT_FALSE(request.headers.contains("cookie"));
    }
    EXPECT_THAT(
        requested,
        testing::ElementsAre(
            "/api/v1/courses?enrollment_type=teacher&enrollment_state=active&include[]=term&per_"
            "page=100",
            "/api/v1/courses/4021/enrollments?type[]=StudentEnrollment&state[]=active&per_page=100",
            "/api/v1/courses/4021/assignment_groups?include[]=assignments&per_page=100",
            "/api/v1/courses/4021/students/submissions?student_ids[]=all&per_page=100",
            "/api/v1/users/self?"));
    EXPECT_EQ(canvas.connections, 1) << "the connection is reused";
}

TEST_F(CanvasClientTest, ReadsAWholeCourse) {
    // With the address up to the port, as it was typed.
    for (const auto &[typed, requestsPerConnection, students, assignments] :
         std::vector<std::tuple<std::string, int, int, int>>{
             {"https://localhost:", 0, 400, 60},
             {"https://LocalHost:0", 0, 130, 2},
             {"https://localhost:", 50, 130, 60},
             {"https://localhost:", 1, 130, 20}}) {
        SCOPED_TRACE(fmt::format("{} {}", typed, requestsPerConnection));
        FakeCanvas server;
        server.requestsPerConnection = requestsPerConnection;
        const auto served = test::inventCourse(
            4021, {.students = students, .assignments = assignments}, test::noon);
        test::serve(server, std::span(&served, 1));
        CanvasClient reading = client(typed + std::to_string(server.port()));
        EXPECT_EQ(runToEnd(reading.fetchCourses()).records, std::vector{served.course});

        // Concurrently, as a roster is read.
        auto enrollments = reading.fetchEnrollments(4021);
        auto groups = reading.fetchAssignmentGroups(4021);
        auto submissions = reading.fetchSubmissions(4021);
        EXPECT_TRUE(runToEnd(std::move(enrollments)).records == served.enrollments);
        EXPECT_TRUE(runToEnd(std::move(groups)).records == served.groups);
        EXPECT_TRUE(runToEnd(std::move(submissions)).records == served.submissions);
        if (requestsPerConnection == 0) {
            EXPECT_LE(server.connections, 3) << "connections are reused";
        }
    }
}

/// Older versions of Qt end a reply with an informational response. The final response must not be
/// taken for the response to another request.
TEST_F(CanvasClientTest, EarlyHintsAreNotTheResponse) {
    canvas.serve(coursesPath, {R"({"id":1})"});
    (void)readCourses();
    const QString enrollments = QStringLiteral("/api/v1/courses/1/enrollments");
    canvas.serve(enrollments, {R"({"user_id":5})"});
    canvas.hold(enrollments);
    auto meanwhile = client().fetchEnrollments(1);
    canvas.plan(
        QStringLiteral("/api/v1/users/self"),
        {{.body = R"([{"id":2}])", .manner = Manner::earlyHints}});
    EXPECT_THROW((void)runToEnd(client().fetchCurrentUser()), CanvasError)
        << "a list was read as a user";
    EXPECT_EQ(readCourses().records, std::vector{Course{.id = 1}});
    canvas.release();
    EXPECT_EQ(runToEnd(std::move(meanwhile)).records, std::vector{Enrollment{.userID = 5}});
    EXPECT_TRUE(waits.empty()) << "what was under way is not disturbed";
}

/// A thread decodes the larger one.
TEST_F(CanvasClientTest, ReadsCompressedPages) {
    for (const int size : {5000, 1'000'000}) {
        canvas.answerWith([size](const FakeRequest &request) {
            EXPECT_THAT(request.headers["accept-encoding"].toStdString(), HasSubstr("gzip"));
            const QByteArray name(size, 'x');
            return test::gzipped(
                {.body = R"([{"id":1,"name":"Caf\u00e9"},{"id":2,"name":")" + name + "\"}]"});
        });
        EXPECT_EQ(
            readCourses().records,
            (std::vector<Course>{
                {.id = 1, .name = "Café"},
                {.id = 2, .name = std::string(std::size_t(size), 'x')}}));
    }
}

TEST_F(CanvasClientTest, LimitsRequestsInFlight) {
    std::vector<std::pair<QByteArray, QByteArray>> headers;
    canvas.answerWith([&](const FakeRequest &) { return FakeReply{.headers = headers}; });
    // The remaining rate limit in the response to a first read; empty without the header.
    for (const auto &[remaining, atOnce] :
         {std::pair{"", 6},
          {"199.5", 1},
          {"200", 6},
          {"0", 1},
          {"", 6},
          {"-50.25", 1},
          {"unknown", 6},
          {"650.0", 6}}) {
        headers.clear();
        if (*remaining != '\0')
            headers.emplace_back("x-rate-limit-remaining", remaining);
        (void)readCourses();
        std::vector<QCoro::Task<ListRead<Course>>> reads;
        for (int i = 0; i < 9; ++i)
            reads.push_back(client().fetchCourses());
        // Counted here: Qt itself opens no more than six connections.
        EXPECT_EQ(session.requestLimiter().inFlight(), atOnce) << remaining;
        for (auto &read : reads)
            (void)runToEnd(std::move(read));
        EXPECT_EQ(session.requestLimiter().inFlight(), 0);
    }
}

TEST_F(CanvasClientTest, RetriesTransientFailuresAfterAWait) {
    const FakeReply unavailable{.status = 502, .body = "<html>"};
    const FakeReply limited{.status = 403, .body = "403 Forbidden (Rate Limit Exceeded)"};
    for (const auto &[replies, expected, expectedWaits] : std::vector<std::tuple<
             std::vector<FakeReply>, std::optional<CanvasError>,
             std::vector<std::chrono::milliseconds>>>{
             {{unavailable, unavailable}, std::nullopt, {500ms, 1000ms}},
             {{unavailable, unavailable, unavailable},
              CanvasError::canvasUnavailable(502),
              {500ms, 1000ms}},
             {{limited, unavailable}, std::nullopt, {1500ms, 1000ms}},
             {{limited, limited, {.status = 429}},
              CanvasError(Kind::rateLimited),
              {1500ms, 3000ms}},
             {{{.status = 404}}, CanvasError(Kind::notFound), {}},
             {{{.status = 401}}, CanvasError(Kind::unauthorized), {}}}) {
        waits.clear();
        canvas.serve(coursesPath, {});
        canvas.plan(coursesPath, replies);
        EXPECT_EQ(failureOf(client()), expected);
        EXPECT_EQ(waits, expectedWaits);
    }
    EXPECT_THAT(
        logged,
        testing::Contains("network: Retrying (attempt 2) after Canvas isn't responding normally "
                          "(status 502)."));
}

TEST_F(CanvasClientTest, FailuresAreClassified) {
    const CanvasError interrupted = CanvasError::network("The connection was interrupted.");
    const CanvasError notDecoded(Kind::decodingFailed);
    for (const auto &[what, reply, expected] :
         std::vector<std::tuple<std::string, FakeReply, CanvasError>>{
             {"closed at once", {.manner = Manner::closed}, interrupted},
             {"closed after a part that is a list",
              {.body = "[]" + QByteArray(500, ' '), .manner = Manner::cut},
              interrupted},
             {"no response", {.manner = Manner::silent}, CanvasError(Kind::timedOut)},
             {"a slow response", {.manner = Manner::trickle}, CanvasError(Kind::timedOut)},
             {"HTML", {.body = "<!DOCTYPE html><html>"}, CanvasError::notCanvas("localhost")},
             {"not a list", {.body = "{}"}, notDecoded},
             {"too large", {.body = "[" + QByteArray(1999, ' ') + "]"}, notDecoded},
             {"as large as the limit, which is read",
              {.body = "{" + QByteArray(1998, ' ') + "]"},
              notDecoded},
             {"bad gzip",
              {.body = "not gzip", .headers = {{"Content-Encoding", "gzip"}}},
              CanvasError::network("")},
             {"too large once decompressed",
              test::gzipped({.body = "[" + QByteArray(3000, ' ') + "]"}), notDecoded}}) {
        // A session for each row, so that no row uses a connection that another one broke.
        CanvasSession limited(
            {.inactivityTimeout = 150ms, .totalTimeout = 400ms, .maxBytes = 2000}, recordWait);
        canvas.answerWith([&answer = reply](const FakeRequest &) { return answer; });
        const auto error = failureOf(CanvasClient(canvas.address(), "secret-token", limited));
        ASSERT_TRUE(error) << what;
        EXPECT_EQ(error->kind(), expected.kind()) << what << ": " << error->what();
        EXPECT_EQ(
            logged.back() == "network: HTTP 200 with a body that is too large to read",
            what.starts_with("too large"))
            << what;
        if (expected != CanvasError::network("")) {
            EXPECT_EQ(*error, expected) << what;
        }
    }
}

TEST_F(CanvasClientTest, UnreachableHostsAndInvalidAddresses) {
    EXPECT_EQ(
        failureOf(client("https://nowhere.invalid")),
        CanvasError::cannotReachHost("nowhere.invalid"));
    QTcpServer gone;
    ASSERT_TRUE(gone.listen(QHostAddress::LocalHost));
    const std::string address = "https://localhost:" + std::to_string(gone.serverPort());
    gone.close();
    EXPECT_EQ(failureOf(client(address)), CanvasError::cannotReachHost("localhost"));
    EXPECT_EQ(failureOf(client("http://localhost")), CanvasError(Kind::badURL));
    EXPECT_EQ(failureOf(client("nonsense")), CanvasError(Kind::badURL));
    EXPECT_TRUE(canvas.requests.empty());
}

TEST_F(CanvasClientTest, SendsNoRequestWithoutATrustedCertificate) {
    for (const CertificateKind kind :
         {CertificateKind::expired, CertificateKind::notYetValid, CertificateKind::otherHost,
          CertificateKind::unknownAuthority}) {
        FakeCanvas impostor(kind);
        EXPECT_EQ(failureOf(client(impostor.address())), CanvasError::tlsFailed("localhost"))
            << int(kind);
        EXPECT_TRUE(impostor.requests.empty()) << int(kind);
    }
}

TEST_F(CanvasClientTest, SendsTheTokenToOneOriginOnly) {
    FakeCanvas other;
    other.serve(coursesPath, {R"({"id":2})"});
    QTcpServer plain;
    ASSERT_TRUE(plain.listen(QHostAddress::LocalHost));
    const std::string port = std::to_string(plain.serverPort());
    for (const std::string &address :
         {other.address(), "http://localhost:" + port,
          "https://LOCALHOST:" + std::to_string(canvas.port()),
          "https://localhost@127.0.0.1:" + port}) {
        canvas.plan(coursesPath, {pageBefore(address + "/api/v1/courses")});
        const ListRead<Course> list = readCourses();
        EXPECT_EQ(list.records.size(), 1U) << address;
        EXPECT_EQ(list.cutShort, CutShort::refusedLink) << address;
        EXPECT_THAT(logged.back(), HasSubstr("Refusing cross-host Link to " + address));
    }
    canvas.plan(coursesPath, {pageBefore("https://local host/api/v1/courses")});
    EXPECT_EQ(readCourses().cutShort, CutShort::unreadableLink);
    for (const std::string &address : {other.address() + "/", "http://localhost:" + port + "/"}) {
        for (const int status : {300, 301, 302, 307, 308}) {
            canvas.plan(
                coursesPath,
                {{.status = status,
                  .body = "",
                  .headers = {{"Location", QByteArray::fromStdString(address)}}}});
            EXPECT_EQ(failureOf(client()), CanvasError::unexpectedStatus(status, std::nullopt));
        }
    }
    canvas.plan(coursesPath, {{.status = 299}});
    EXPECT_TRUE(readCourses().records.empty());
    EXPECT_TRUE(other.requests.empty());
    EXPECT_FALSE(plain.hasPendingConnections());
    EXPECT_THAT(logged, testing::Each(testing::Not(HasSubstr("secret-token"))));
}

TEST_F(CanvasClientTest, StopsAtThreeHundredPages) {
    canvas.answerWith([&](const FakeRequest &) {
        return pageBefore(canvas.address() + "/api/v1/courses?page=again");
    });
    const ListRead<Course> list = readCourses();
    EXPECT_EQ(list.records.size(), 300U);
    EXPECT_EQ(list.cutShort, CutShort::pageLimit);
    EXPECT_EQ(logged.back(), "network: Stopped after 300 pages — Link chain never ended");
}

TEST_F(CanvasClientTest, AStopEndsReadsAndWaits) {
    std::stop_source stop;
    canvas.answerWith([&](const FakeRequest &) {
        stop.request_stop();
        return FakeReply{.manner = Manner::silent};
    });
    CanvasClient reading(canvas.address(), "secret-token", session, stop.get_token());
    EXPECT_THROW((void)runToEnd(reading.fetchCourses()), Cancelled);

    std::stop_source later;
    CanvasSession waitingSession;
    canvas.answerWith([&](const FakeRequest &) {
        QMetaObject::invokeMethod(
            &canvas, [&] { later.request_stop(); }, Qt::QueuedConnection);
        return FakeReply{.status = 500};
    });
    CanvasClient waiting(canvas.address(), "secret-token", waitingSession, later.get_token());
    EXPECT_THROW((void)runToEnd(waiting.fetchCourses()), Cancelled);
}

} // namespace
} // namespace ellwynd
