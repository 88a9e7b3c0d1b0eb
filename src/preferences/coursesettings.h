// What a course has set of its own, under "Course.{id}.".
#pragma once

#include "preferences/userdefaults.h"

namespace ellwynd::courseSettings {

inline constexpr std::string_view prefix = preferences::coursePrefix;

/// The last part of a course's key in the table; a key that no row describes does not compile.
consteval std::string_view suffixInTable(std::string_view key) {
    return preferences::row(key).key.substr(prefix.size() + std::string_view("{id}.").size());
}

inline constexpr std::string_view passingScore = suffixInTable("Course.{id}.PassingScore");
inline constexpr std::string_view inactivityDays = suffixInTable("Course.{id}.InactivityDays");
inline constexpr std::string_view icon = suffixInTable("Course.{id}.Icon");
inline constexpr std::string_view iconColor = suffixInTable("Course.{id}.IconColor");

/// "Course.4021.PassingScore".
[[nodiscard]] std::string key(std::int64_t courseID, std::string_view suffix);

/// "PassingScore" of "Course.4021.PassingScore"; empty for a key that is not a course's.
[[nodiscard]] std::string_view suffixOf(std::string_view key);

/// Whether the course holds a value of its own.
[[nodiscard]] bool has(const UserDefaults &, std::int64_t courseID, std::string_view suffix);

/// Writes a course's own value; an absent one is removed, and the course follows the default.
void set(
    UserDefaults &, std::int64_t courseID, std::string_view suffix,
    std::optional<PreferenceValue> value);

} // namespace ellwynd::courseSettings
