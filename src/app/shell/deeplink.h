// Links with the scheme "ellwynd". Widgets use them, but any program may open one.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace ellwynd {

/// The course id of a link such as "ellwynd://course/4021"; absent for any other text. Scheme and
/// host are case-sensitive. The id is the first component of the path, a 64-bit decimal number with
/// an optional sign; further components, a query and a fragment are ignored.
[[nodiscard]] std::optional<std::int64_t> courseOfLink(std::string_view link);

/// Whether a word begins like a link of any scheme: "scheme:".
[[nodiscard]] bool looksLikeLink(std::string_view word);

} // namespace ellwynd
