// Every way in which a Canvas request can fail, as one CanvasError.
#pragma once

#include "canvas/records/canvaserror.h"
#include "net/download.h"

#include <chrono>

namespace ellwynd {

[[nodiscard]] CanvasError classify(const TransportFailure &failure, const std::string &host);

/// @param status any but 200 to 299.
[[nodiscard]] CanvasError
classifyStatus(int status, const std::string &body, const std::string &host);

/// Whether a request is worth another try, and how long to wait before attempt `attempt` + 1.
/// @param attempt counts from 1.
[[nodiscard]] std::optional<std::chrono::milliseconds>
retryDelay(const CanvasError &error, int attempt);

} // namespace ellwynd
