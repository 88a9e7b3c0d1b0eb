// The data of the desktop widgets: counts for each course of the nearby terms, no student data.
#pragma once

#include "base/date.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ellwynd {

struct WidgetCourseSummary {
    std::int64_t id = 0;
    /// Absent when course names are hidden.
    std::optional<std::string> name;
    // The numbers of students at each level, and of all scored students.
    std::int64_t atRisk = 0;
    std::int64_t concern = 0;
    std::int64_t watch = 0;
    std::int64_t total = 0;

    bool operator==(const WidgetCourseSummary &) const = default;
};

struct WidgetTermSummary {
    std::int64_t id = 0;
    std::string title;
    std::vector<WidgetCourseSummary> courses;

    bool operator==(const WidgetTermSummary &) const = default;
};

/// Version 2: every nearby term that was scored completely.
struct WidgetSnapshotFile {
    /// When the numbers were computed.
    Date updatedAt;
    /// The term of widgets set to "Automatic".
    std::int64_t automaticTermID = 0;
    std::vector<WidgetTermSummary> terms;

    bool operator==(const WidgetSnapshotFile &) const = default;
};

/// Version 1: only the automatic term, for widgets from before terms could be chosen.
struct WidgetSnapshot {
    Date updatedAt;
    std::string termTitle;
    std::vector<WidgetCourseSummary> courses;

    bool operator==(const WidgetSnapshot &) const = default;
};

/// The term with this id, or null.
[[nodiscard]] const WidgetTermSummary *findTerm(const WidgetSnapshotFile &file, std::int64_t id);

/// The version-1 snapshot of the automatic term; absent if the file lacks that term.
[[nodiscard]] std::optional<WidgetSnapshot> automaticSnapshot(const WidgetSnapshotFile &file);

/// JSON, pretty-printed with sorted keys; dates are ISO 8601 to the second.
[[nodiscard]] std::string encode(const WidgetSnapshotFile &file);
[[nodiscard]] std::string encode(const WidgetSnapshot &snapshot);

/// Reads a version-2 file. Absent for any other text, including a missing key, a value of another
/// type, a count that is negative or above 1,000,000,000, and more than 1000 terms. Unknown keys
/// are ignored. A course or term with a number out of range is left out; without a usable automatic
/// term its id is 0.
[[nodiscard]] std::optional<WidgetSnapshotFile> decodeWidgetSnapshotFile(std::string_view text);

} // namespace ellwynd
