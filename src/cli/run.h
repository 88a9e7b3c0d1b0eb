// A whole run of ellwynd-cli, apart from the process around it.
#pragma once

#include "cli/progress.h"

#include <filesystem>
#include <iosfwd>
#include <span>
#include <string>

namespace ellwynd::cli {

/// Runs one command line, without the program's own name: results to `out`, everything else to
/// `err`, progress among it where that is a terminal. Needs a QCoreApplication. Returns the exit
/// status.
int run(
    std::span<const std::string> words, std::istream &in, std::ostream &out, std::ostream &err,
    const std::filesystem::path &preferences, Terminal terminal = {});

} // namespace ellwynd::cli
