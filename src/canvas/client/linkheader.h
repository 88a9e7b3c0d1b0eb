// The "Link" header of a page.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace ellwynd {

/// The address of the next page in a "Link" header; absent on the last page. Only a relation
/// written exactly rel="next" counts.
[[nodiscard]] std::optional<std::string> nextLink(std::string_view header);

} // namespace ellwynd
