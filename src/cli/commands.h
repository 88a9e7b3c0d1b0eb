// The commands of ellwynd-cli, one source file each.
#pragma once

#include "cli/commandcontext.h"

#include <QStringList>

#include <span>

namespace ellwynd::cli {

struct Command {
    const char *name;
    /// One line for the overview.
    const char *summary;
    /// Runs the command on the words after its name; returns an exit status or throws.
    int (*run)(CommandContext &context, const QStringList &words);
};

/// All of them, in the order of the overview. A command NAME is the function
/// `Command NAMECommand()` of NAME.cpp, and is listed in this folder's CMakeLists.txt.
[[nodiscard]] std::span<const Command> commands();

} // namespace ellwynd::cli
