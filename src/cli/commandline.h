// A command's own words: options, arguments, and where its output goes.
#pragma once

#include "cli/commandcontext.h"
#include "outputs/export/rosterexport.h"

#include <QCommandLineParser>

namespace ellwynd::cli {

/// Parses what follows a command's name. Every command knows `--help`; those that print a result
/// know `--json` and `-o FILE` as well.
class CommandLine {
  public:
    CommandLine(CommandContext &context, const char *name, const char *description);

    /// Declares one argument; the help shows them in order. `repeats` takes one or more.
    void argument(const char *name, const char *description, bool repeats = false);
    /// Declares one more that may be left out; its word is then empty.
    void optionalArgument(const char *name, const char *description);
    void flag(const char *name, const char *description);
    void option(const char *name, const char *value, const char *description);

    /// False when the run is over, since the help was asked for and printed.
    /// @throws UsageError for words that do not fit the declarations.
    [[nodiscard]] bool parse(const QStringList &words);

    [[nodiscard]] bool has(const char *flag) const;
    [[nodiscard]] std::optional<std::string> value(const char *option) const;
    /// Every value of an option that may be given more than once.
    [[nodiscard]] std::vector<std::string> values(const char *option) const;
    [[nodiscard]] std::string word(qsizetype index) const;
    [[nodiscard]] qsizetype wordCount() const;
    [[nodiscard]] bool wantsJSON() const { return has("json"); }

    /// Prints a result, or writes it to the file named with `-o`. @throws Failure
    void print(const std::string &text) const;

  private:
    CommandContext &context;
    QString name;
    QCommandLineParser parser;
    qsizetype arguments = 0;
    qsizetype optionalArguments = 0;
    bool lastRepeats = false;
};

/// For commands about the real Canvas. @throws UsageError in the sample college
void refuseSample(CommandContext &context, const char *command);

/// `--passing` and `--inactivity`, within the bounds of the program's editors. @throws UsageError
[[nodiscard]] std::optional<double> passingOption(const CommandLine &line);
[[nodiscard]] std::optional<std::int64_t> inactivityOption(const CommandLine &line);

/// Declares `--csv` and `--markdown`.
void addExportFlags(CommandLine &line);
/// Which of the two was asked for, if any. @throws UsageError for more than one form of output.
[[nodiscard]] std::optional<ExportFormat> exportFormat(const CommandLine &line);
/// What a run's export is made from besides its rows.
[[nodiscard]] ExportSource exportSource(CommandContext &context, bool wholeTerm);

} // namespace ellwynd::cli
