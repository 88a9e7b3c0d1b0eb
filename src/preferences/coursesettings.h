// The preferences of a single course, under "Course.{id}.".
#pragma once

#include "preferences/userdefaults.h"

namespace ellwynd::courseSettings {

inline constexpr std::string_view prefix = preferences::coursePrefix;

/// The last part of a course's key in the table; a key without a row does not compile.
consteval std::string_view suffixInTable(std::string_view key) {
    return preferences::row(key).key.substr(prefix.size() + std::string_view("{id}.").size());
}

inline constexpr std::string_view passingScore = suffixInTable("Course.{id}.PassingScore");
inline constexpr std::string_view inactivityDays = suffixInTable("Course.{id}.InactivityDays");
inline constexpr std::string_view icon = suffixInTable("Course.{id}.Icon");
inline constexpr std::string_view iconColor = suffixInTable("Course.{id}.IconColor");

/// "Course.4021.PassingScore".
[[nodiscard]] std::string key(std::int64_t courseID, std::string_view suffix);

/// "PassingScore" for "Course.4021.PassingScore"; empty for a key that is not a course's.
[[nodiscard]] std::string_view suffixOf(std::string_view key);

/// Whether the course has a value of its own.
[[nodiscard]] bool has(const UserDefaults &, std::int64_t courseID, std::string_view suffix);

/// Saves a course's own value. Absent removes it, so that the default applies.
void set(
    UserDefaults &, std::int64_t courseID, std::string_view suffix,
    std::optional<PreferenceValue> value);

} // namespace ellwynd::courseSettings
