// Every way in which a Canvas request can fail, as one CanvasError.
#pragma once

#include "canvas/records/canvaserror.h"

#include <QNetworkReply>

#include <chrono>
#include <string_view>

namespace ellwynd {

/// A request that brought no answer.
struct TransportFailure {
    QNetworkReply::NetworkError code = QNetworkReply::NoError;
    /// The platform's words.
    std::string description;
    /// One of our own bounds ended it, silence or time in all, rather than the caller.
    bool timedOut = false;
    /// This machine has no network at all.
    bool offline = false;
};

[[nodiscard]] CanvasError classify(const TransportFailure &failure, const std::string &host);

/// @param status any but 200 to 299.
[[nodiscard]] CanvasError
classifyStatus(int status, const std::string &body, const std::string &host);

/// What Canvas itself says in the body of a failure: its "message", else the messages of its list
/// of "errors" joined by blanks. Absent for a body of any other shape.
[[nodiscard]] std::optional<std::string> canvasErrorText(const std::string &body);

/// Whether a request is worth another try, and how long to wait before attempt `attempt` + 1.
/// @param attempt counts from 1.
[[nodiscard]] std::optional<std::chrono::milliseconds>
retryDelay(const CanvasError &error, int attempt);

/// The address of the next page in a "Link" header; absent on the last page. Only a relation
/// written exactly rel="next" counts.
[[nodiscard]] std::optional<std::string> nextLink(std::string_view header);

} // namespace ellwynd
