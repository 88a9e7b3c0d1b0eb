// A list as it was read from a data source, which may end early.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

/// Why a list ends before its last record.
enum class CutShort {
    /// The chain of pages is longer than is followed.
    pageLimit,
    /// The next page is not on the server that was asked.
    refusedLink,
    /// The address of the next page is not one.
    unreadableLink,
};

template<class Record>
struct ListRead {
    std::vector<Record> records;
    /// Absent for a list that was read to its end.
    std::optional<CutShort> cutShort;
};

/// A sentence for the teacher: "The list of submissions is incomplete: …"
/// @param records what is listed, in the plural.
[[nodiscard]] std::string cutShortText(std::string_view records, CutShort reason);

} // namespace ellwynd
