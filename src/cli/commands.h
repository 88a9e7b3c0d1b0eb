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
    /// Runs the command with the words after its name. Returns an exit status or throws.
    int (*run)(CommandContext &context, const QStringList &words);
};

/// All commands, in the order of the overview. A command NAME is defined by `Command NAMECommand()`
/// in NAME.cpp and listed in this folder's CMakeLists.txt.
[[nodiscard]] std::span<const Command> commands();

} // namespace ellwynd::cli
