// The texts of the privacy settings.
#pragma once

#include <string>
#include <string_view>

namespace ellwynd {

/// "3 days recorded. Levels of 42 students in 3 courses."
/// @param status such as `historyStatus`.
/// @param contents such as `historyContents`; empty if nothing is recorded.
[[nodiscard]] std::string recordedLine(std::string_view status, std::string_view contents);

/// The accessible name of the button that deletes it: "Delete This History: levels of 42 students
/// in 3 courses. 3 days recorded."
[[nodiscard]] std::string
deleteButtonName(std::string_view label, std::string_view status, std::string_view contents);

} // namespace ellwynd
