#include "cli/run.h"

#include "canvas/records/canvaserror.h"
#include "cli/commands.h"
#include "cli/table.h"
#include "generated/version.h"
#include "preferences/launcharguments.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <ostream>

namespace ellwynd::cli {

namespace {

constexpr std::array allCommands{
    Command{"score", "score Canvas JSON saved in a folder", runScore},
    Command{"courses", "list your active courses", runCourses},
    Command{"roster", "fetch and score one course", runRoster},
    Command{"term", "the flagged students of a whole term", runTerm},
    Command{"dashboard", "score every course of the nearby terms", runDashboard},
    Command{"student", "one student: why, and what is remembered", runStudent},
    Command{"contacted", "note that you wrote to students", runContacted},
    Command{"thresholds", "show, set or release a course's thresholds", runThresholds},
    Command{"message", "the filled message of each student", runMessage},
    Command{"templates", "list the message templates", runTemplates},
    Command{"connect", "save a Canvas address with its token", runConnect},
    Command{"status", "whether the program is connected", runStatus},
    Command{"disconnect", "sign out of Canvas", runDisconnect},
    Command{"defaults", "show or change the preferences", runDefaults},
    Command{"privacy", "what is remembered of students; or forget it", runPrivacy},
};

std::string overview() {
    std::string text =
        "Usage: ellwynd-cli [--sample] [-Key value]... COMMAND [ARGUMENTS]\n\n"
        "Scores the students of your Canvas courses and shows who needs attention.\n\nCommands:\n";
    for (const Command &command : commands())
        text += fmt::format("  {:<12}{}\n", command.name, command.summary);
    return text +
        "\nEvery command answers --help.\n"
        "--sample works on an invented college; -Key value overrides a preference for this run.\n";
}

/// Launch arguments and "--sample", in any order, before the command.
LaunchArguments takeLaunchArguments(std::span<const std::string> words) {
    LaunchArguments all = parseLaunchArguments(words);
    while (!all.rest.empty() && all.rest.front() == "--sample") {
        LaunchArguments more = parseLaunchArguments(std::span(all.rest).subspan(1));
        all.domain.insert_or_assign("SampleData", true);
        for (auto &[key, value] : more.domain)
            all.domain.insert_or_assign(key, value);
        all.rest = std::move(more.rest);
    }
    return all;
}

int runCommand(Session &session, const std::string &name, std::span<const std::string> words) {
    const auto found = std::ranges::find(allCommands, name, &Command::name);
    if (found == allCommands.end())
        throw UsageError(fmt::format("There is no command {}", name));
    QStringList rest;
    for (const std::string &word : words)
        rest << QString::fromStdString(word);
    return found->run(session, rest);
}

} // namespace

std::span<const Command> commands() {
    return allCommands;
}

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
        Session session(in, out, err, preferences, arguments.domain, std::move(terminal));
        const int status = runCommand(session, name, std::span(arguments.rest).subspan(1));
        if (!out.flush())
            throw Failure("The output couldn't be written.");
        return status;
    } catch (const UsageError &error) {
        err << printable(error.what()) << "\n";
        return wrongUsage;
    } catch (const NotConnected &error) {
        err << printable(error.what()) << "\n";
        return notConnected;
    } catch (const KeychainError &error) {
        err << printable(error.what()) << "\n";
        return keychainUnavailable;
    } catch (const CanvasError &error) {
        err << printable(error.errorDescription()) << "\n"
            << printable(error.recoverySuggestion()) << "\n";
        return failed;
    } catch (const std::exception &error) {
        err << printable(error.what()) << "\n";
        return failed;
    }
}

} // namespace ellwynd::cli
