// What a course has set of its own, under "Course.{id}.".
#pragma once

#include "preferences/userdefaults.h"

#include <array>

namespace ellwynd {

namespace courseSettings {

inline constexpr std::string_view prefix = "Course.";
inline constexpr std::string_view passingScore = "PassingScore";
inline constexpr std::string_view inactivityDays = "InactivityDays";
/// One of `iconWords`.
inline constexpr std::string_view icon = "Icon";
/// One of `colorWords`.
inline constexpr std::string_view iconColor = "IconColor";

/// "Course.4021.PassingScore".
[[nodiscard]] std::string key(std::int64_t courseID, std::string_view suffix);

/// "PassingScore" of "Course.4021.PassingScore"; empty for a key that is no course's.
[[nodiscard]] std::string_view suffixOf(std::string_view key);

/// Whether the course holds a value of its own.
[[nodiscard]] bool has(const UserDefaults &, std::int64_t courseID, std::string_view suffix);

/// Writes a course's own value; an absent one is removed, and the course follows the default.
void set(
    UserDefaults &, std::int64_t courseID, std::string_view suffix,
    std::optional<PreferenceValue> value);

/// What a course's tile can show.
inline constexpr std::array<std::string_view, 26> iconWords{
    "code",  "database", "chip",   "gear",   "ruler", "calculator", "chart", "flask",   "atom",
    "leaf",  "heart",    "ball",   "book",   "pen",   "speech",     "globe", "compass", "column",
    "music", "palette",  "camera", "people", "gavel", "briefcase",  "bulb",  "house"};

/// The colours of tiles, in the order in which a course's id picks one.
inline constexpr std::array<std::string_view, 10> colorWords{
    "blue", "pink", "purple", "teal", "orange", "green", "red", "slate", "brown", "indigo"};

/// Whether a change of the key changes a course's tile.
[[nodiscard]] bool isIconKey(std::string_view key);

} // namespace courseSettings

/// The words chosen for a course's tile. Empty where none is, or one that the program does not
/// know.
struct CourseIcon {
    std::string icon;
    std::string color;

    bool operator==(const CourseIcon &) const = default;
};

[[nodiscard]] CourseIcon courseIcon(const UserDefaults &, std::int64_t courseID);

} // namespace ellwynd
