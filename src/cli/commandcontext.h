// What a command runs in, and the ways in which one can end.
#pragma once

#include "app/roster/visit.h"
#include "canvas/client/canvassession.h"
#include "cli/progress.h"
#include "net/runtoend.h"
#include "platform/cloud/syncedfolder.h"
#include "platform/secrets/secretstore.h"

#include <iosfwd>
#include <memory>
#include <span>
#include <stdexcept>

namespace ellwynd::cli {

/// How a run ends, for scripts.
enum ExitStatus : int {
    done = 0,
    failed = 1,
    wrongUsage = 2,
    notConnected = 3,
    keychainUnavailable = 4,
};

/// The words of a command line make no sense; the message says which.
class UsageError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// The work cannot be done, for a reason that is one line.
class Failure : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// There is no Canvas address or no token for it.
class NotConnected : public std::runtime_error {
  public:
    NotConnected() : std::runtime_error("Not connected") {}
};

/// Streams, preferences and clock of one run.
class CommandContext {
  public:
    /// @param preferences the preferences' file, which is not read before a command asks for them.
    CommandContext(
        std::istream &in, std::ostream &out, std::ostream &err, std::filesystem::path preferences,
        PreferenceMap launchArguments, Terminal terminal);

    std::ostream &out;
    std::ostream &err;
    /// Where a token is read from.
    std::istream &in;
    Clock now = systemNow;

    /// The values forced for this run.
    [[nodiscard]] const PreferenceMap &launchArguments() const { return arguments; }
    [[nodiscard]] UserDefaults &defaults();
    [[nodiscard]] SecretStore &secrets() { return *secretStore; }
    [[nodiscard]] CanvasSession &http() { return canvasSession; }
    /// What is remembered between visits, and the templates.
    [[nodiscard]] Stores &stores();
    /// The counts shared with the teacher's other machines.
    [[nodiscard]] TrendSync &trends();
    /// The data source. @throws NotConnected, KeychainError
    [[nodiscard]] std::shared_ptr<CanvasReading> connect();

    /// What long work says of itself on a terminal.
    [[nodiscard]] Progress &progress() { return progressLine; }

    /// Runs work to its end and returns its value, or throws what it threw. On a terminal, long
    /// work is told in words such as "Reading the roster…".
    template<class T>
    T finish(std::string step, QCoro::Task<T> work) {
        struct Step {
            Progress &progress;
            ~Step() { progress.end(); }
        };
        progressLine.begin(std::move(step));
        const Step running{progressLine};
        return runToEnd(std::move(work));
    }

  private:
    std::filesystem::path file;
    PreferenceMap arguments;
    std::unique_ptr<UserDefaults> opened;
    std::unique_ptr<Stores> openedStores;
    std::unique_ptr<SyncedFolder> cloud;
    std::unique_ptr<TrendSync> trendSync;
    std::unique_ptr<SecretStore> secretStore = makeSecretStore();
    CanvasSession canvasSession;
    Progress progressLine;
};

/// The course list as fetched. A list that was cut short is said on standard error.
[[nodiscard]] std::vector<Course> fetchCourses(CommandContext &context, CanvasReading &source);

/// The course of that id. @throws Failure when the list holds none.
[[nodiscard]] Course findCourse(const std::vector<Course> &courses, std::int64_t id);

/// Fetches and scores the course of that id; its notes go to standard error. @throws Failure,
/// NotConnected, KeychainError, CanvasError
[[nodiscard]] ScoredCourse loadByID(CommandContext &context, std::int64_t courseID);

/// Prints what the reader of the courses' rosters must know to standard error, a line each.
void printNotes(CommandContext &context, std::span<const ScoredCourse *const> courses);

/// The student's row. @throws Failure when the roster holds none.
[[nodiscard]] const RiskRow &findStudent(const ScoredCourse &course, std::int64_t studentID);

/// Reads an id from a word. @throws UsageError
[[nodiscard]] std::int64_t parseID(const std::string &word, const char *what);

} // namespace ellwynd::cli
