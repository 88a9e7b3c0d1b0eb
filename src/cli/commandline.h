// One command's options and arguments, and its output.
#pragma once

#include "cli/commandcontext.h"
#include "outputs/export/rosterexport.h"

#include <QCommandLineParser>

namespace ellwynd::cli {

/// Parses the words after a command's name. Every command accepts `--help`, `--json` and `-o FILE`.
class CommandLine {
  public:
    CommandLine(CommandContext &context, const char *name, const char *description);

    /// Declares a required argument; with `repeats`, one or more. The help lists arguments in
    /// order.
    void argument(const char *name, const char *description, bool repeats = false);
    /// Declares an argument that may be left out; `word` is then empty.
    void optionalArgument(const char *name, const char *description);
    void flag(const char *name, const char *description);
    void option(const char *name, const char *value, const char *description);

    /// Returns false after printing the help for `--help`; the command then ends.
    /// @throws UsageError for words that do not match the declarations.
    [[nodiscard]] bool parse(const QStringList &words);

    [[nodiscard]] bool has(const char *flag) const;
    [[nodiscard]] std::optional<std::string> value(const char *option) const;
    /// All values of an option that may be repeated.
    [[nodiscard]] std::vector<std::string> values(const char *option) const;
    [[nodiscard]] std::string word(qsizetype index) const;
    [[nodiscard]] qsizetype wordCount() const;
    [[nodiscard]] bool wantsJSON() const { return has("json"); }

    /// The width of the terminal that a result is printed on; 0 for a file, a pipe or `-o`.
    [[nodiscard]] std::size_t columns() const;

    /// Prints a result, or writes it to the file named with `-o`. @throws Failure
    void print(const std::string &result) const;

  private:
    CommandContext &context;
    QString name;
    QCommandLineParser parser;
    qsizetype arguments = 0;
    qsizetype optionalArguments = 0;
    bool lastRepeats = false;
};

/// For commands that need the real Canvas. @throws UsageError in the sample college
void refuseSample(CommandContext &context, const char *command);

/// The values of `--passing` and `--inactivity`; absent when not given. @throws UsageError outside
/// the range of the settings' editors
[[nodiscard]] std::optional<double> passingOption(const CommandLine &line);
[[nodiscard]] std::optional<std::int64_t> inactivityOption(const CommandLine &line);

/// Declares `--csv` and `--markdown`.
void addExportFlags(CommandLine &line);
/// The requested export; absent for none. @throws UsageError for more than one output format
[[nodiscard]] std::optional<ExportFormat> exportFormat(const CommandLine &line);
/// What an export is made from besides its rows.
[[nodiscard]] ExportSource exportSource(CommandContext &context, bool wholeTerm);

} // namespace ellwynd::cli
