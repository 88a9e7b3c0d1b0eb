// What a command runs with, and how it can end.
#pragma once

#include "app/roster/visit.h"
#include "canvas/asynctokenstore.h"
#include "canvas/client/canvassession.h"
#include "cli/progress.h"
#include "net/runtoend.h"
#include "platform/background/threadworkqueue.h"
#include "platform/cloud/syncedfolder.h"

#include <iosfwd>
#include <memory>
#include <span>
#include <stdexcept>
#include <string_view>

namespace ellwynd::cli {

/// The exit status, which scripts rely on.
enum ExitStatus : int {
    done = 0,
    failed = 1,
    wrongUsage = 2,
    notConnected = 3,
    keychainUnavailable = 4,
};

/// The command line is wrong; the message says how.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work failed; the message is one line.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// No Canvas address is saved, or no token for it.
class NotConnected : public std::runtime_error {
  public:
    NotConnected() : std::runtime_error("Not connected") {}
};

/// The streams, preferences, stores and clock of one run. Stores are opened on first use.
class CommandContext {
  public:
    /// @param preferencesFile read when a command first needs it.
    CommandContext(
        std::istream &in, std::ostream &out, std::ostream &err,
        std::filesystem::path preferencesFile, PreferenceMap arguments, Terminal terminal);
    /// Waits a moment for what is still to be written to the synced folder.
    ~CommandContext();
    CommandContext(const CommandContext &) = delete;
    CommandContext &operator=(const CommandContext &) = delete;

    std::ostream &out;
    std::ostream &err;
    Clock now = systemNow;

    /// The values forced for this run.
    [[nodiscard]] const PreferenceMap &launchArguments() const { return arguments; }
    [[nodiscard]] UserDefaults &defaults();
    [[nodiscard]] AsyncTokenStore &tokens() { return tokenStore; }
    [[nodiscard]] CanvasSession &http() { return canvasSession; }
    /// Roster history, contacts and templates.
    [[nodiscard]] Stores &stores();
    /// Whether all changes of the preferences and the stores that were used are on the disk.
    [[nodiscard]] bool isSaved() const;
    /// The counts shared with the teacher's other machines. The first call waits a moment for the
    /// synced folder.
    [[nodiscard]] TrendSync &trends();
    /// Opens the data source. @throws NotConnected, KeychainError
    [[nodiscard]] std::shared_ptr<CanvasReading> connect();

    /// Reads one line. On a terminal it is asked for on standard error, and not shown.
    [[nodiscard]] std::string readSecret(std::string_view prompt);

    /// The width of standard output; 0 if it is no terminal.
    [[nodiscard]] std::size_t outputColumns() const { return columns; }

    /// Progress of long work on a terminal.
    [[nodiscard]] Progress &progress() { return progressLine; }

    /// Runs work to its end and returns its value, or throws what it threw.
    /// @param step what a terminal shows while long work runs, such as "Reading the roster…".
    template<class T>
    T finish(std::string step, QCoro::Task<T> work) {
        struct EndStep {
            Progress &progress;
            ~EndStep() { progress.end(); }
        };
        progressLine.begin(std::move(step));
        const EndStep endStep{progressLine};
        return runToEnd(std::move(work));
    }

  private:
    std::istream &in;
    std::filesystem::path preferencesFile;
    PreferenceMap arguments;
    int keyboard;
    std::size_t columns;
    std::unique_ptr<UserDefaults> openedDefaults;
    std::unique_ptr<Stores> openedStores;
    ThreadWorkQueue cloudQueue;
    std::unique_ptr<SyncedFolder> cloud;
    std::unique_ptr<TrendSync> trendSync;
    AsyncTokenStore tokenStore{makeSecretStore()};
    CanvasSession canvasSession;
    Progress progressLine;
};

/// Fetches the course list. Reports on standard error when it was cut short.
[[nodiscard]] std::vector<Course> fetchCourses(CommandContext &context, CanvasReading &source);

/// Prints the notes of the courses' rosters to standard error, one per line.
void printNotes(CommandContext &context, std::span<const ScoredCourse *const> courses);

/// For commands whose purpose is to save. @throws Failure when not all changes of the preferences
/// and the stores that were used are on the disk
void requireSaved(CommandContext &context);

/// Parses an id. @param what names its kind in the message, such as "course". @throws UsageError
[[nodiscard]] std::int64_t parseID(const std::string &word, const char *what);

} // namespace ellwynd::cli
