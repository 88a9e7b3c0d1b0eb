// Runs ellwynd-cli without a process of its own.
#pragma once

#include "cli/progress.h"

#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>

namespace ellwynd::cli {

/// Runs one command line and returns its exit status. Results go to `out`; everything else,
/// including progress on a terminal, goes to `err`. Needs a QCoreApplication.
/// @param words the arguments without the program's name.
/// @param preferences the preferences file, read when a command first needs it.
int run(
    std::span<const std::string> words, std::istream &in, std::ostream &out, std::ostream &err,
    const std::filesystem::path &preferences, Terminal terminal = {});

} // namespace ellwynd::cli
