// The selection in the sidebar.
#pragma once

#include <cstdint>
#include <optional>
#include <variant>

namespace ellwynd {

struct DashboardSelection {
    bool operator==(const DashboardSelection &) const = default;
};

struct CourseSelection {
    std::int64_t courseID = 0;
    bool operator==(const CourseSelection &) const = default;
};

/// A whole term; without an id, the courses that have no term.
struct TermSelection {
    std::optional<std::int64_t> termID;
    bool operator==(const TermSelection &) const = default;
};

using Selection = std::variant<DashboardSelection, CourseSelection, TermSelection>;

} // namespace ellwynd
