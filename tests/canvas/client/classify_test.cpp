#include "canvas/client/classify.h"
#include "canvas/client/errorbody.h"
#include "canvas/client/linkheader.h"
#include "canvas/client/request.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using Kind = CanvasError::Kind;
using Code = QNetworkReply::NetworkError;
using namespace std::chrono_literals;

TEST(Classify, TransportFailures) {
    struct Row {
        TransportFailure failure;
        CanvasError error;
    };
    for (const Row &row : {
             Row{{Code::ConnectionRefusedError, "x"}, CanvasError::cannotReachHost("h")},
             Row{{Code::ConnectionRefusedError, "x", false, true}, CanvasError(Kind::offline)},
             Row{{Code::HostNotFoundError, "x"}, CanvasError::cannotReachHost("h")},
             Row{{Code::HostNotFoundError, "x", false, true}, CanvasError(Kind::offline)},
             Row{{Code::UnknownNetworkError, "Unreachable"}, CanvasError::network("Unreachable")},
             Row{{Code::UnknownNetworkError, "x", false, true}, CanvasError(Kind::offline)},
             Row{{Code::NetworkSessionFailedError, "roaming"}, CanvasError(Kind::offline)},
             Row{{Code::RemoteHostClosedError, "x"},
                 CanvasError::network("The connection was interrupted.")},
             Row{{Code::TimeoutError, "x"}, CanvasError(Kind::timedOut)},
             Row{{Code::OperationCanceledError, "x", true}, CanvasError(Kind::timedOut)},
             Row{{Code::SslHandshakeFailedError, "x"}, CanvasError::tlsFailed("h")},
             Row{{Code::ProtocolFailure, "odd"}, CanvasError::network("odd")},
         })
        EXPECT_EQ(classify(row.failure, "h"), row.error) << int(row.failure.code);
}

TEST(Classify, Statuses) {
    struct Row {
        int status;
        const char *body;
        CanvasError error;
    };
    for (const Row &row : {
             Row{401, "{}", CanvasError(Kind::unauthorized)},
             Row{403, "", CanvasError::forbidden(std::nullopt)},
             Row{403, "403 Forbidden (Rate Limit Exceeded)", CanvasError(Kind::rateLimited)},
             Row{403, R"({"errors":[{"message":"RATE LIMIT"}]})", CanvasError(Kind::rateLimited)},
             Row{403, R"({"message":"user not authorised","x":"rate limit"})",
                 CanvasError::forbidden("user not authorised")},
             Row{403, R"({"x":"rate limit"})", CanvasError(Kind::rateLimited)},
             Row{404, " \n<!DOCTYPE html>", CanvasError::notCanvas("h")},
             Row{404, R"({"errors":[]})", CanvasError(Kind::notFound)},
             Row{429, "", CanvasError(Kind::rateLimited)},
             Row{500, "", CanvasError::canvasUnavailable(500)},
             Row{599, "<html>", CanvasError::canvasUnavailable(599)},
             Row{600, "", CanvasError::unexpectedStatus(600, std::nullopt)},
             Row{302, "", CanvasError::unexpectedStatus(302, std::nullopt)},
             Row{418, R"({"errors":[{"message":"a"},{"message":""},{"message":"b"}]})",
                 CanvasError::unexpectedStatus(418, "a b")},
         })
        EXPECT_EQ(classifyStatus(row.status, row.body, "h"), row.error) << row.status << row.body;
}

TEST(Classify, ReadsCanvassMessage) {
    struct Row {
        const char *body;
        std::optional<std::string> text;
    };
    for (const Row &row : std::vector<Row>{
             {"", std::nullopt},
             {"[]", std::nullopt},
             {"{", std::nullopt},
             {R"({"message":""})", std::nullopt},
             {R"({"message":7,"errors":[{"message":"a"}]})", "a"},
             {R"({"message":"m","errors":[{"message":"a"}]})", "m"},
             {R"({"errors":{"field":"x"}})", std::nullopt},
             {R"({"errors":["a"]})", std::nullopt},
             {R"({"errors":[{"message":"a"},"b"]})", std::nullopt},
             {R"({"error":"x"})", std::nullopt}})
        EXPECT_EQ(canvasErrorText(row.body), row.text) << row.body;
}

TEST(Classify, RetriesTransientFailures) {
    EXPECT_EQ(retryDelay(CanvasError::canvasUnavailable(502), 1), 500ms);
    EXPECT_EQ(retryDelay(CanvasError::canvasUnavailable(502), 2), 1000ms);
    EXPECT_EQ(retryDelay(CanvasError::canvasUnavailable(502), 3), std::nullopt);
    EXPECT_EQ(retryDelay(CanvasError(Kind::timedOut), 2), 1000ms);
    EXPECT_EQ(retryDelay(CanvasError(Kind::rateLimited), 1), 1500ms);
    EXPECT_EQ(retryDelay(CanvasError(Kind::rateLimited), 2), 3000ms);
    EXPECT_EQ(retryDelay(CanvasError(Kind::unauthorized), 1), std::nullopt);
    EXPECT_EQ(retryDelay(CanvasError::network("x"), 1), std::nullopt);
}

TEST(LooksLikeHTML, ExaminesOnlyTheFirstBytes) {
    EXPECT_TRUE(looksLikeHTML("\r\n\t <!DOCTYPE html>"));
    EXPECT_FALSE(looksLikeHTML(std::string(256, ' ') + "<html>"));
    EXPECT_TRUE(looksLikeHTML(std::string(255, ' ') + "<html>"));
    EXPECT_FALSE(looksLikeHTML("<\xff>"));
    EXPECT_FALSE(looksLikeHTML("{}"));
    EXPECT_FALSE(looksLikeHTML(""));
}

TEST(NextLink, FindsTheNextRelation) {
    struct Row {
        const char *header;
        std::optional<std::string> next;
    };
    for (const Row &row : std::vector<Row>{
             {"", std::nullopt},
             {R"(<https://h/1>; rel="first",<https://h/2>; rel="next")", "https://h/2"},
             {R"(<https://h/2> ;x=1; rel="next" , <https://h/1>; rel="first")", "https://h/2"},
             {R"(<https://h/2>; rel="next",<https://h/3>; rel="next")", "https://h/2"},
             {R"(https://h/2; rel="next")", "https://h/2"},
             {R"(<https://h/1>, <https://h/2>;x=1;rel="next")", "https://h/2"},
             {R"(<https://h/2>;rel="next")", "https://h/2"},
             {R"(rel="next")", std::nullopt},
             {R"(<https://h/2>; rel=next)", std::nullopt},
             {R"(<https://h/2>; REL="NEXT")", std::nullopt},
             {R"(<https://h/2>; rel="next last")", std::nullopt},
             {R"(<https://h/2>)", std::nullopt},
             {R"(; rel="next")", ""}})
        EXPECT_EQ(nextLink(row.header), row.next) << row.header;
}

TEST(Request, EndpointsAreBelowTheSavedAddress) {
    struct Row {
        const char *base;
        std::optional<std::string> url;
    };
    for (const Row &row : std::vector<Row>{
             {"https://h.example", "https://h.example/api/v1/x?a%5B%5D=b&per_page=100"},
             {"https://h.example/", "https://h.example/api/v1/x?a%5B%5D=b&per_page=100"},
             {"https://h.example/lms/", "https://h.example/lms/api/v1/x?a%5B%5D=b&per_page=100"},
             {"https://h.example/lms//", "https://h.example/lms/api/v1/x?a%5B%5D=b&per_page=100"},
             {"https://h.example?q#f", "https://h.example/api/v1/x?a%5B%5D=b&per_page=100"},
             {"http://h.example", std::nullopt},
             {"HTTPS://h.example", std::nullopt},
             {"https:///x", std::nullopt},
             {"https://user:pw@h.example", std::nullopt},
             {"https://h example", std::nullopt},
             {"nonsense", std::nullopt}}) {
        const auto url = endpointURL(row.base, "/api/v1/x", {{"a[]", "b"}, {"per_page", "100"}});
        EXPECT_EQ(url ? std::optional(url->toEncoded().toStdString()) : std::nullopt, row.url)
            << row.base;
    }
}

} // namespace
} // namespace ellwynd
