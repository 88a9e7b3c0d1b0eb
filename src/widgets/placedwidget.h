// The saved state of the widgets on the desktop.
#pragma once

#include <QPoint>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

namespace ellwynd {

enum class WidgetSize { small, medium, large };

struct PlacedWidget {
    WidgetSize size = WidgetSize::medium;
    /// The chosen term, kept even when the snapshot does not have it; absent for "Automatic".
    std::optional<std::int64_t> termID;
    /// The top left corner on the desktop; absent if the display server does not report it.
    std::optional<QPoint> place;

    bool operator==(const PlacedWidget &) const = default;
};

/// Reads a file written by `savePlacedWidgets`: at most 32 widgets, without invalid entries.
/// Returns none when the file does not exist or, with an error in the log, when its content is not
/// valid. @throws FileUnavailable when it cannot be read for a reason that may pass
[[nodiscard]] std::vector<PlacedWidget> readPlacedWidgets(const std::filesystem::path &file);

/// Replaces the file. A failure is logged.
void savePlacedWidgets(const std::filesystem::path &file, const std::vector<PlacedWidget> &widgets);

} // namespace ellwynd
