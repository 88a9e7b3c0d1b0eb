// A list read from a data source, which may be incomplete.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// Why a list is incomplete.
enum class CutShort {
    /// There are more pages than are read.
    pageLimit,
    /// The link to the next page leads to another origin.
    refusedLink,
    /// The link to the next page is not a valid URL.
    unreadableLink,
};

template<class Record>
struct ListRead {
    std::vector<Record> records;
    /// Absent for a complete list.
    std::optional<CutShort> cutShort;
};

/// A sentence for the teacher: "The list of submissions is incomplete: …"
/// @param records the listed items, in the plural.
[[nodiscard]] std::string cutShortText(std::string_view records, CutShort reason);

} // namespace ellwynd
