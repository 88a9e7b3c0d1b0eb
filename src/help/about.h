// The texts of the about box.
#pragma once

#include <span>
#include <string>
#include <string_view>

namespace ellwynd::about {

/// The purpose of the program, in one sentence.
inline constexpr std::string_view purpose =
    "Reads your Canvas courses and shows which students need attention, worst first, each one "
    "explained in plain sentences.";

/// The program's promises about privacy, one sentence each.
[[nodiscard]] std::span<const std::string_view> promises();

/// A library that the program uses.
struct Dependency {
    std::string_view name;
    /// What the program uses it for.
    std::string_view use;
    /// The SPDX identifier of the licence under which it is used.
    std::string_view licence;
};

/// All libraries of the running program.
[[nodiscard]] std::span<const Dependency> dependencies();

/// The page below the program's name and version, as Markdown.
[[nodiscard]] std::string page();

} // namespace ellwynd::about
