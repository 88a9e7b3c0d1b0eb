// The launch arguments: preferences forced for one run.
#pragma once

#include "preferences/preferencevalue.h"

#include <span>

namespace ellwynd {

/// What a command line begins with, and what follows it.
struct LaunchArguments {
    PreferenceMap domain;
    std::vector<std::string> rest;
};

/// Takes the leading "-Key value" pairs off a command line (without the program's own name). A
/// value may begin with "-". A key is one "-" and a letter; the first word that is none ends the
/// pairs, and so does a key without a value. A key given twice keeps its last value. Keys that no
/// preference has are accepted, as are the window system's own options of this form.
[[nodiscard]] LaunchArguments parseLaunchArguments(std::span<const std::string> words);

} // namespace ellwynd
