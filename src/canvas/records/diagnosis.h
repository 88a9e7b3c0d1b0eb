// Why a text could not be parsed as JSON.
#pragma once

#include <string>

namespace ellwynd {

/// What is wrong with a text that the parser refused, in words that quote nothing of it: "it is not
/// valid JSON near byte 15". The parser names its errors differently from version to version and
/// does not say where they are, so the text is read again here.
[[nodiscard]] std::string diagnose(const std::string &json);

} // namespace ellwynd
