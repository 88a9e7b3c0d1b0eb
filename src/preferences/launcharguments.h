// Launch arguments: preferences set for one run.
#pragma once

#include "preferences/preferencevalue.h"

#include <span>

namespace ellwynd {

/// A command line, split into leading preferences and the rest.
struct LaunchArguments {
    PreferenceMap domain;
    std::vector<std::string> rest;
};

/// Splits off the leading "-Key value" pairs of a command line (without the program's name). A
/// value may begin with "-". A key is a "-" and at least two characters, the first of them a
/// letter; the pairs end at the first word that is not a key, or at a key without a value. The last
/// value of a repeated key counts. Unknown keys are accepted, among them the window system's
/// options of this form.
[[nodiscard]] LaunchArguments parseLaunchArguments(std::span<const std::string> words);

/// What a program with windows answers without opening any: the usage for "--help", the version for
/// "--version"; absent for other command lines.
/// @param usage ends with a line break.
[[nodiscard]] std::optional<std::string> answerWithoutWindow(
    const LaunchArguments &arguments, std::string_view usage, std::string_view nameAndVersion);

} // namespace ellwynd
