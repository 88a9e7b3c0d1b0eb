// The texts of a desktop widget, and its choice of term and courses.
#pragma once

#include "outputs/snapshot/widgetsnapshot.h"

#include <array>
#include <cstddef>

namespace ellwynd {

// The term is a widget's only setting.

inline constexpr std::string_view widgetTermParameter = "Term";
inline constexpr std::string_view widgetTermPrompt = "Choose Term";

/// An entry of the term menu.
struct WidgetTermEntity {
    /// Absent for "Automatic".
    std::optional<std::int64_t> id;
    std::string title;

    bool operator==(const WidgetTermEntity &) const = default;
};

/// "Automatic", then the terms of the file.
[[nodiscard]] std::vector<WidgetTermEntity>
widgetTermQuery(const std::optional<WidgetSnapshotFile> &file);

/// The term that a widget shows: the chosen one, or the automatic term if none is chosen or the
/// chosen one is no longer in the file. Null if the file has neither.
[[nodiscard]] const WidgetTermSummary *
shownTerm(const WidgetSnapshotFile &file, const std::optional<std::int64_t> &chosen);

enum class WidgetLevel { atRisk, concern, watch };

struct WidgetLevelCount {
    WidgetLevel level = WidgetLevel::atRisk;
    std::int64_t count = 0;

    bool operator==(const WidgetLevelCount &) const = default;
};

/// "At Risk", "Concern" or "Watch".
[[nodiscard]] std::string_view widgetLevelName(WidgetLevel level);

/// "4 At Risk".
[[nodiscard]] std::string levelCountText(const WidgetLevelCount &count);

/// The row of a course.
struct WidgetRow {
    std::int64_t courseID = 0;
    /// The course's name; if names are hidden, "Course " and its position in the list.
    std::string label;
    bool nameHidden = false;
    /// The levels with students, most severe first; empty when all are OK.
    std::vector<WidgetLevelCount> levels;
    /// "8 flagged" or "All OK".
    std::string summary;
    /// The whole row in one sentence, for screen readers.
    std::string accessibleText;
    /// The deep link that opens the course's roster.
    std::string link;

    bool operator==(const WidgetRow &) const = default;
};

/// The contents of a widget.
struct WidgetContent {
    /// Shown instead of everything else when there is no data; otherwise empty.
    std::string message;
    /// The term shown.
    std::string title;
    std::int64_t flagged = 0;
    /// The text after the number: "students need attention".
    std::string attention;
    /// "8 students need attention in Fall 2026".
    std::string headline;
    std::array<WidgetLevelCount, 3> levels;
    std::vector<WidgetRow> rows;
    /// "3 more in Ellwynd", or empty.
    std::string more;
    /// "as of 9:41 AM", with the day if that is not today.
    std::string asOf;

    bool operator==(const WidgetContent &) const = default;
};

/// @param maxRows how many courses fit the widget. If there are more, those with the most severe
///        levels are shown, in the order of the file.
[[nodiscard]] WidgetContent widgetContent(
    const std::optional<WidgetSnapshotFile> &file, const std::optional<std::int64_t> &chosen,
    std::size_t maxRows, Date now);

/// "as of 9:41 AM" or "as of Wed, Sep 23, 9:41 AM".
/// @param now determines whether `updatedAt` is today.
[[nodiscard]] std::string asOfText(Date updatedAt, Date now);

} // namespace ellwynd
