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
    for (const auto &[failure, error] : std::vector<std::pair<TransportFailure, CanvasError>>{
             {{Code::ConnectionRefusedError, "x"}, CanvasError::cannotReachHost("h")},
             {{Code::ConnectionRefusedError, "x", false, true}, CanvasError(Kind::offline)},
             {{Code::HostNotFoundError, "x"}, CanvasError::cannotReachHost("h")},
             {{Code::HostNotFoundError, "x", false, true}, CanvasError(Kind::offline)},
             {{Code::UnknownNetworkError, "Unreachable"}, CanvasError::network("Unreachable")},
             {{Code::UnknownNetworkError, "x", false, true}, CanvasError(Kind::offline)},
             {{Code::NetworkSessionFailedError, "roaming"}, CanvasError(Kind::offline)},
             {{Code::RemoteHostClosedError, "x"},
              CanvasError::network("The connection was interrupted.")},
             {{Code::TimeoutError, "x"}, CanvasError(Kind::timedOut)},
             {{Code::OperationCanceledError, "x", true}, CanvasError(Kind::timedOut)},
             {{Code::SslHandshakeFailedError, "x"}, CanvasError::tlsFailed("h")},
             {{Code::ProtocolFailure, "odd"}, CanvasError::network("odd")}})
        EXPECT_EQ(classify(failure, "h"), error) << int(failure.code);
}

TEST(Classify, Statuses) {
    for (const auto &[status, body, error] :
         std::vector<std::tuple<int, const char *, CanvasError>>{
             {401, "{}", CanvasError(Kind::unauthorized)},
             {403, "", CanvasError::forbidden(std::nullopt)},
             {403, "403 Forbidden (Rate Limit Exceeded)", CanvasError(Kind::rateLimited)},
             {403, R"({"errors":[{"message":"RATE LIMIT"}]})", CanvasError(Kind::rateLimited)},
             {403, R"({"message":"user not authorised","x":"rate limit"})",
              CanvasError::forbidden("user not authorised")},
             {403, R"({"x":"rate limit"})", CanvasError(Kind::rateLimited)},
             {404, " \n<!DOCTYPE html>", CanvasError::notCanvas("h")},
             {404, R"({"errors":[]})", CanvasError(Kind::notFound)},
             {429, "", CanvasError(Kind::rateLimited)},
             {500, "", CanvasError::canvasUnavailable(500)},
             {599, "<html>", CanvasError::canvasUnavailable(599)},
             {600, "", CanvasError::unexpectedStatus(600, std::nullopt)},
             {302, "", CanvasError::unexpectedStatus(302, std::nullopt)},
             {418, R"({"errors":[{"message":"a"},{"message":""},{"message":"b"}]})",
              CanvasError::unexpectedStatus(418, "a b")}})
        EXPECT_EQ(classifyStatus(status, body, "h"), error) << status << body;
}

TEST(Classify, ReadsCanvassMessage) {
    for (const auto &[body, text] :
         std::vector<std::pair<const char *, std::optional<std::string>>>{
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
        EXPECT_EQ(canvasErrorText(body), text) << body;
}

TEST(Classify, RetriesTransientFailures) {
    EXPECT_EQ(retryDelay(CanvasError(Kind::timedOut), 2), 1000ms);
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
    for (const auto &[header, next] :
         std::vector<std::pair<const char *, std::optional<std::string>>>{
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
        EXPECT_EQ(nextLink(header), next) << header;
}

TEST(Request, EndpointsAreBelowTheSavedAddress) {
    for (const auto &[base, expected] : std::vector<std::pair<std::string, std::string>>{
             {"https://h.example", "https://h.example"},
             {"https://h.example/", "https://h.example"},
             {"https://h.example/lms/", "https://h.example/lms"},
             {"https://h.example/lms//", "https://h.example/lms"},
             {"https://h.example?q#f", "https://h.example"},
             {"http://h.example", ""},
             {"HTTPS://h.example", ""},
             {"https:///x", ""},
             {"https://user:pw@h.example", ""},
             {"https://h example", ""},
             {"nonsense", ""}}) {
        const auto url = endpointURL(base, "/api/v1/x", {{"a[]", "b"}, {"per_page", "100"}});
        EXPECT_EQ(
            url ? url->toEncoded().toStdString() : "",
            expected.empty() ? "" : expected + "/api/v1/x?a%5B%5D=b&per_page=100")
            << base;
    }
}

} // namespace
} // namespace ellwynd
