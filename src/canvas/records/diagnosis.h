// Why a text could not be parsed as JSON.
#pragma once

#include <string>

namespace ellwynd {

/// The problem of a text that the parser rejected, without quoting the text: "it is not valid JSON
/// near byte 15". The parser reports no positions, and its messages depend on its version, so the
/// text is read again here.
[[nodiscard]] std::string diagnose(const std::string &json);

} // namespace ellwynd
