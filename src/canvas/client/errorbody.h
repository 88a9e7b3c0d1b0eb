// What the body of a failure says.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// Canvas's own words in the body of a failure: its "message", else the messages of its list of
/// "errors" joined by blanks. Absent for a body of any other shape.
[[nodiscard]] std::optional<std::string> canvasErrorText(const std::string &body);

/// Whether a body is a web page rather than JSON: its first 256 bytes, without the white space
/// around them, begin with "<".
[[nodiscard]] bool looksLikeHTML(std::string_view body);

} // namespace ellwynd
