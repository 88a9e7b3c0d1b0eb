// Parses the "Link" header of a page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// The address of the next page in a "Link" header; absent on the last page. The relation must be
/// written exactly as rel="next".
[[nodiscard]] std::optional<std::string> nextLink(std::string_view header);

} // namespace ellwynd
