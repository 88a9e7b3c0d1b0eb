#include "cli/run.h"

#include "canvas/records/canvaserror.h"
#include "cli/commands.h"
#include "cli/names.h"
#include "cli/terminaltext.h"
#include "generated/version.h"
#include "preferences/launcharguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <ostream>

namespace ellwynd::cli {

namespace {

std::string overview() {
    std::string text =
        "Usage: ellwynd-cli [--sample] [-Key value]... COMMAND [ARGUMENTS]\n\n"
        "Scores the students of your Canvas courses and shows who needs attention.\n\nCommands:\n";
    for (const Command &command : commands())
        text += fmt::format("  {:<12}{}\n", command.name, command.summary);
    return text +
        "\nBefore the command:\n"
        "  --sample            Use an invented college; no account is needed.\n"
        "  -Key value          Override a preference for this run; \"defaults keys\" lists them.\n"
        "  -h, --help          Show this help.\n"
        "  --version           Show the version.\n"
        "\nAfter every command:\n"
        "  -h, --help          Show the command's arguments and options.\n"
        "  --json              Print one JSON document.\n"
        "  -o, --output FILE   Write to FILE instead of printing.\n";
}

/// Launch arguments and "--sample", in any order, before the command.
LaunchArguments takeLaunchArguments(std::span<const std::string> words) {
    LaunchArguments all = parseLaunchArguments(words);
    while (!all.rest.empty() && all.rest.front() == "--sample") {
        LaunchArguments more = parseLaunchArguments(std::span(all.rest).subspan(1));
        all.domain.insert_or_assign(std::string(preferences::sampleData.name), true);
        for (auto &[key, value] : more.domain)
            all.domain.insert_or_assign(key, value);
        all.rest = std::move(more.rest);
    }
    return all;
}

int runCommand(
    CommandContext &context, const std::string &name, std::span<const std::string> words) {
    const auto found = std::ranges::find(commands(), name, &Command::name);
    if (found == commands().end())
        throw UsageError(fmt::format("There is no command {}", name));
    QStringList rest;
    for (const std::string &word : words)
        rest << QString::fromStdString(word);
    return found->run(context, rest);
}

} // namespace

int run(
    std::span<const std::string> words, std::istream &in, std::ostream &out, std::ostream &err,
    const std::filesystem::path &preferences, Terminal terminal) {
    try {
        const LaunchArguments arguments = takeLaunchArguments(words);
        if (arguments.rest.empty()) {
            err << overview();
            return wrongUsage;
        }
        const std::string &name = arguments.rest.front();
        if (name == "--help" || name == "-h" || name == "help") {
            out << overview();
            return done;
        }
        if (name == "--version") {
            out << "ellwynd-cli " << version << "\n";
            return done;
        }
        CommandContext context(in, out, err, preferences, arguments.domain, std::move(terminal));
        const int status = runCommand(context, name, std::span(arguments.rest).subspan(1));
        if (!out.flush())
            throw Failure("The output couldn't be written.");
        return status;
    } catch (const AmbiguousName &error) {
        err << error.what() << "\n";
        return wrongUsage;
    } catch (const UsageError &error) {
        err << terminalText(error.what()) << "\n";
        return wrongUsage;
    } catch (const NotConnected &error) {
        err << terminalText(error.what()) << "\n";
        return notConnected;
    } catch (const KeychainError &error) {
        err << terminalText(error.what()) << "\n";
        return keychainUnavailable;
    } catch (const CanvasError &error) {
        err << terminalText(error.errorDescription()) << "\n"
            << terminalText(error.recoverySuggestion()) << "\n";
        return failed;
    } catch (const std::exception &error) {
        err << terminalText(error.what()) << "\n";
        return failed;
    }
}

} // namespace ellwynd::cli
