// Reads the bodies of error responses.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// Canvas's message in the body of an error response: its "message", else the messages of its
/// "errors" array, joined by blanks. Absent if there is none.
[[nodiscard]] std::optional<std::string> canvasErrorText(const std::string &body);

/// Whether a body is a web page rather than JSON: its first 256 bytes are UTF-8 and begin with "<"
/// after white space.
[[nodiscard]] bool looksLikeHTML(std::string_view body);

} // namespace ellwynd
