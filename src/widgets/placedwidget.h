// The widgets that the teacher has placed: what is remembered of each.
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
    /// The chosen term, kept while the snapshot lacks it; absent for "Automatic".
    std::optional<std::int64_t> termID;
    /// The top left corner on the desktop; absent where the display server places windows itself.
    std::optional<QPoint> place;

    bool operator==(const PlacedWidget &) const = default;
};

/// The widgets of a file that `savePlacedWidgets` wrote, at most 32. Entries that cannot be read
/// are left out; a file that cannot is logged and holds none.
[[nodiscard]] std::vector<PlacedWidget> readPlacedWidgets(const std::filesystem::path &file);

/// Replaces the file. One that cannot be written is logged.
void savePlacedWidgets(const std::filesystem::path &file, const std::vector<PlacedWidget> &widgets);

} // namespace ellwynd
