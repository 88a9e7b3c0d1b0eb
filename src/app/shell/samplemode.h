// Texts for entering and leaving the sample college.
#pragma once

#include <string_view>

namespace ellwynd::samplemode {

/// The title of the menu item that switches the mode.
[[nodiscard]] constexpr std::string_view menuTitle(bool isSampleMode) {
    return isSampleMode ? "Leave Sample Data…" : "Explore with Sample Data…";
}

// The alert shown before entering the sample college. Leaving it needs no confirmation.
inline constexpr std::string_view question = "Explore with sample data?";
inline constexpr std::string_view explanation =
    "Ellwynd will restart showing an invented college — made-up courses and students, scored "
    "exactly as real ones are. Nothing connects to Canvas while you are in sample data, and your "
    "own settings are left alone.\n\nLeave it the same way, from this menu.";
inline constexpr std::string_view confirm = "Restart in Sample Data";
inline constexpr std::string_view cancel = "Cancel";

} // namespace ellwynd::samplemode
