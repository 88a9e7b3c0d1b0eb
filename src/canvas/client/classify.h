// Maps failures of Canvas requests to CanvasErrors.
#pragma once

#include "canvas/records/canvaserror.h"
#include "net/download.h"

#include <chrono>

namespace ellwynd {

[[nodiscard]] CanvasError classify(const TransportFailure &failure, const std::string &host);

/// @param status is not 200 to 299.
[[nodiscard]] CanvasError
classifyStatus(int status, const std::string &body, const std::string &host);

/// How long to wait before retrying a request; absent if it should not be retried.
/// @param attempt the number of the failed attempt, from 1.
[[nodiscard]] std::optional<std::chrono::milliseconds>
retryDelay(const CanvasError &error, int attempt);

} // namespace ellwynd
