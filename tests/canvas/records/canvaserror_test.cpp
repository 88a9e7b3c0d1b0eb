#include "canvas/records/canvaserror.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

TEST(CanvasError, MessagesContainTheValues) {
    struct Row {
        CanvasError error;
        const char *message;
        bool lacksNetwork = false;
    };
    using Kind = CanvasError::Kind;
    for (const Row &row : {
             Row{CanvasError::cannotReachHost("h.example"), "Couldn't reach h.example.", true},
             Row{CanvasError::tlsFailed("h"), "A secure connection to h couldn't be established."},
             Row{CanvasError::network("x"), "The connection to Canvas failed: x", true},
             Row{CanvasError::forbidden(std::nullopt), "Canvas refused the request."},
             Row{CanvasError::forbidden("no"), "Canvas refused the request: no"},
             Row{CanvasError::canvasUnavailable(502),
                 "Canvas isn't responding normally (status 502)."},
             Row{CanvasError::unexpectedStatus(418, std::nullopt),
                 "Canvas returned an unexpected response (status 418)."},
             Row{CanvasError::unexpectedStatus(418, "a b"),
                 "Canvas returned an unexpected response (status 418): a b"},
             Row{CanvasError::notCanvas("h"), "h answered, but not like a Canvas server."},
             Row{CanvasError(Kind::offline), "Your Mac appears to be offline.", true},
         }) {
        EXPECT_EQ(row.error.errorDescription(), row.message);
        EXPECT_STREQ(row.error.what(), row.message);
        EXPECT_FALSE(row.error.recoverySuggestion().empty());
        EXPECT_EQ(row.error.lacksNetwork(), row.lacksNetwork) << row.message;
    }
}

TEST(CanvasError, ComparesKindsAndValues) {
    EXPECT_EQ(CanvasError::notCanvas("a"), CanvasError::notCanvas("a"));
    EXPECT_NE(CanvasError::notCanvas("a"), CanvasError::notCanvas("b"));
    EXPECT_NE(CanvasError::notCanvas("a"), CanvasError::tlsFailed("a"));
    EXPECT_NE(CanvasError::canvasUnavailable(500), CanvasError::canvasUnavailable(503));
    EXPECT_NE(CanvasError::forbidden(""), CanvasError::forbidden(std::nullopt));
}

} // namespace
} // namespace ellwynd
