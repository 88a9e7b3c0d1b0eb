// What a desktop widget shows, word for word, and which term and courses it shows.
#pragma once

#include "outputs/snapshot/widgetsnapshot.h"

#include <array>
#include <cstddef>

namespace ellwynd {

// A widget's one setting is its term.

inline constexpr std::string_view widgetTermParameter = "Term";
inline constexpr std::string_view widgetTermPrompt = "Choose Term";

/// One entry of the term choice.
struct WidgetTermEntity {
    /// Absent for "Automatic".
    std::optional<std::int64_t> id;
    std::string title;

    bool operator==(const WidgetTermEntity &) const = default;
};

/// "Automatic", then the terms of the file.
[[nodiscard]] std::vector<WidgetTermEntity>
widgetTermQuery(const std::optional<WidgetSnapshotFile> &file);

/// The term of a widget: the one chosen, or the automatic term where none is chosen or the chosen
/// one is no longer in the file. Null when the file has neither.
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

/// One course as a row.
struct WidgetRow {
    std::int64_t courseID = 0;
    /// The course's name, or "Course " and its place in the list where names are hidden.
    std::string label;
    bool nameHidden = false;
    /// The levels that students are at, most severe first; empty when all are OK.
    std::vector<WidgetLevelCount> levels;
    /// "8 flagged" or "All OK".
    std::string summary;
    /// The whole row in one sentence, for who cannot see it.
    std::string accessibleText;
    /// Opens the course's roster.
    std::string link;

    bool operator==(const WidgetRow &) const = default;
};

/// Everything one widget shows.
struct WidgetContent {
    /// Stands for all the rest when there is nothing to show.
    std::string message;
    /// The term shown.
    std::string title;
    std::int64_t flagged = 0;
    /// What follows the number: "students need attention".
    std::string attention;
    /// "8 students need attention in Fall 2026".
    std::string headline;
    std::array<WidgetLevelCount, 3> levels;
    std::vector<WidgetRow> rows;
    /// "3 more in Ellwynd", or empty.
    std::string more;
    /// "as of 9:41 AM", with the day once that is not today.
    std::string asOf;

    bool operator==(const WidgetContent &) const = default;
};

/// @param maxRows how many courses the widget can show. Where there are more, those with the most
///        severe levels are shown, in the order of the file.
[[nodiscard]] WidgetContent widgetContent(
    const std::optional<WidgetSnapshotFile> &file, const std::optional<std::int64_t> &chosen,
    std::size_t maxRows, Date now);

/// @param now what "today" is.
[[nodiscard]] std::string asOfText(Date updatedAt, Date now);

} // namespace ellwynd
