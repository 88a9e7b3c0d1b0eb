// The icon and the colour that a teacher chose for a course's tile.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace ellwynd {

class UserDefaults;

namespace courseSettings {

/// The icons of course tiles.
inline constexpr std::array<std::string_view, 26> iconWords{
    "code",  "database", "chip",   "gear",   "ruler", "calculator", "chart", "flask",   "atom",
    "leaf",  "heart",    "ball",   "book",   "pen",   "speech",     "globe", "compass", "column",
    "music", "palette",  "camera", "people", "gavel", "briefcase",  "bulb",  "house"};

/// The colours of course tiles. A course's id selects its default by index.
inline constexpr std::array<std::string_view, 10> colorWords{
    "blue", "pink", "purple", "teal", "orange", "green", "red", "slate", "brown", "indigo"};

/// Whether a change of the key changes a course's tile.
[[nodiscard]] bool isIconKey(std::string_view key);

} // namespace courseSettings

/// The words chosen for a course's tile; empty for none and for unknown words.
struct CourseIcon {
    std::string icon;
    std::string color;

    bool operator==(const CourseIcon &) const = default;
};

[[nodiscard]] CourseIcon courseIcon(const UserDefaults &, std::int64_t courseID);

} // namespace ellwynd
