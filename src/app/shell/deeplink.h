// The links of the scheme "ellwynd", which widgets, notices and anybody else may open.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ellwynd {

/// The course that a link like "ellwynd://course/4021" names, or nothing for any other text. Scheme
/// and host have to be written exactly so; the first component of the path is the id, a decimal
/// number of 64 bits with an optional sign. What follows that component, a query or a fragment
/// makes no difference.
[[nodiscard]] std::optional<std::int64_t> courseOfLink(std::string_view link);

/// Whether a word is meant as a link, of whatever scheme: it begins like "scheme:".
[[nodiscard]] bool looksLikeLink(std::string_view word);

} // namespace ellwynd
