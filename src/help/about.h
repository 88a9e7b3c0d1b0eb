// The texts of the about box.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ellwynd::about {

/// What the program is for, in one sentence.
inline constexpr std::string_view purpose =
    "Reads your Canvas courses and shows which students need attention, worst first, each one "
    "explained in plain sentences.";

/// What it never does, in sentences.
[[nodiscard]] std::span<const std::string_view> promises();

/// A library that the program is built on.
struct Dependency {
    std::string_view name;
    /// What it does here.
    std::string_view use;
    /// The licence it is used under, by its SPDX identifier.
    std::string_view licence;
};

/// All libraries that are part of the running program.
[[nodiscard]] std::span<const Dependency> dependencies();

/// All of it as one page of Markdown, below the program's name and version.
[[nodiscard]] std::string page();

} // namespace ellwynd::about
