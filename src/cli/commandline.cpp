#include "cli/commandline.h"

#include "base/files.h"

#include <fmt/format.h>

#include <ostream>

namespace ellwynd::cli {

namespace {

QString text(const char *utf8) {
    return QString::fromUtf8(utf8);
}

/// The output file with symbolic links resolved: a regular file or a new one, in an existing
/// folder.
std::filesystem::path outputFile(const std::string &name) {
    namespace fs = std::filesystem;
    std::error_code error;
    fs::path file = fs::absolute(name, error);
    if (!error)
        file = fs::weakly_canonical(file, error);
    if (error || (fs::exists(file, error) && !fs::is_regular_file(file, error)))
        throw Failure(name + " is not a file that can be written.");
    if (!fs::is_directory(file.parent_path(), error))
        throw Failure("There is no folder " + file.parent_path().string() + ".");
    return file;
}

} // namespace

CommandLine::CommandLine(CommandContext &context, const char *name, const char *description)
    : context(context), name(text(name)) {
    parser.setApplicationDescription(text(description));
    parser.addOption({{QStringLiteral("h"), QStringLiteral("help")}, text("Show this help.")});
    flag("json", "Print one JSON document.");
    parser.addOption(
        {{QStringLiteral("o"), QStringLiteral("output")},
         text("Write to FILE instead of printing."),
         QStringLiteral("FILE")});
}

void CommandLine::argument(const char *argumentName, const char *description, bool repeats) {
    const QString shown = text(argumentName);
    parser.addPositionalArgument(
        shown, text(description), repeats ? shown + QStringLiteral("...") : shown);
    ++arguments;
    lastRepeats = repeats;
}

void CommandLine::optionalArgument(const char *argumentName, const char *description) {
    const QString shown = text(argumentName);
    parser.addPositionalArgument(shown, text(description), QStringLiteral("[%1]").arg(shown));
    ++optionalArguments;
}

void CommandLine::flag(const char *flagName, const char *description) {
    parser.addOption({text(flagName), text(description)});
}

void CommandLine::option(const char *optionName, const char *valueName, const char *description) {
    parser.addOption({text(optionName), text(description), text(valueName)});
}

bool CommandLine::parse(const QStringList &words) {
    const QString program = QStringLiteral("ellwynd-cli ") + name;
    const bool understood = parser.parse(QStringList{program} + words);
    if (parser.isSet(QStringLiteral("help"))) {
        // Qt's usage line begins with the program's path instead of the command.
        QString help = parser.helpText();
        const qsizetype usage = help.indexOf(u'\n');
        QString synopsis = QStringLiteral("Usage: ") + program + QStringLiteral(" [options]");
        const QString first = help.left(usage);
        const qsizetype options = first.indexOf(QStringLiteral("[options]"));
        if (options >= 0)
            synopsis += first.mid(options + 9);
        context.out << (synopsis + help.mid(usage)).toStdString()
                    << "\nBefore the command: --sample for an invented college, and -Key value to "
                       "override a\npreference for this run.\n";
        return false;
    }
    if (!understood)
        throw UsageError(parser.errorText().toStdString());
    const qsizetype count = parser.positionalArguments().size();
    if (count < arguments)
        throw UsageError(fmt::format("{} needs more arguments", name.toStdString()));
    if (count > arguments + optionalArguments && !lastRepeats) {
        throw UsageError(fmt::format(
            "{} takes no argument {}", name.toStdString(),
            parser.positionalArguments().at(arguments + optionalArguments).toStdString()));
    }
    return true;
}

bool CommandLine::has(const char *flagName) const {
    return parser.isSet(text(flagName));
}

std::optional<std::string> CommandLine::value(const char *optionName) const {
    return has(optionName) ? std::optional{parser.value(text(optionName)).toStdString()}
                           : std::nullopt;
}

std::vector<std::string> CommandLine::values(const char *optionName) const {
    std::vector<std::string> all;
    for (const QString &value : parser.values(text(optionName)))
        all.push_back(value.toStdString());
    return all;
}

std::string CommandLine::word(qsizetype index) const {
    return parser.positionalArguments().value(index).toStdString();
}

qsizetype CommandLine::wordCount() const {
    return parser.positionalArguments().size();
}

std::size_t CommandLine::columns() const {
    return has("output") ? 0 : context.outputColumns();
}

void CommandLine::print(const std::string &result) const {
    if (const auto file = value("output")) {
        try {
            files::replaceForTeacher(outputFile(*file), result);
        } catch (const FileError &error) {
            throw Failure(error.what());
        }
    } else {
        context.out << result;
    }
}

void refuseSample(CommandContext &context, const char *command) {
    if (context.defaults().value(preferences::sampleData))
        throw UsageError(std::string(command) + " cannot be used with the sample college");
}

std::optional<double> passingOption(const CommandLine &line) {
    const auto word = line.value("passing");
    if (!word)
        return std::nullopt;
    const NumberRange &range = preferences::passingScores;
    const auto number = valueAs<double>(parsePreferenceValue(*word));
    if (!number || !range.contains(*number)) {
        throw UsageError(fmt::format(
            "--passing takes a percentage from {} to {}", range.minimum, range.maximum));
    }
    return number;
}

std::optional<std::int64_t> inactivityOption(const CommandLine &line) {
    const auto word = line.value("inactivity");
    if (!word)
        return std::nullopt;
    const NumberRange &range = preferences::inactivityWindows;
    const auto days = valueAs<std::int64_t>(parsePreferenceValue(*word));
    if (!days || !range.contains(double(*days))) {
        throw UsageError(fmt::format(
            "--inactivity takes whole days from {} to {}", range.minimum, range.maximum));
    }
    return days;
}

void addExportFlags(CommandLine &line) {
    line.flag("csv", "Print the export as CSV.");
    line.flag("markdown", "Print the export as Markdown.");
}

std::optional<ExportFormat> exportFormat(const CommandLine &line) {
    const bool csv = line.has("csv");
    const bool markdown = line.has("markdown");
    if (int(csv) + int(markdown) + int(line.wantsJSON()) > 1)
        throw UsageError("Only one of --json, --csv and --markdown can be printed");
    return csv     ? std::optional{ExportFormat::csv}
        : markdown ? std::optional{ExportFormat::markdown}
                   : std::nullopt;
}

ExportSource exportSource(CommandContext &context, bool wholeTerm) {
    return {
        .contacts = context.stores().contacts,
        .history = context.stores().history,
        .now = context.now(),
        .wholeTerm = wholeTerm};
}

} // namespace ellwynd::cli
