// Decides what to read from Canvas next, as one pure function of the state and an event.
#pragma once

#include "base/elapsedtime.h"

#include <optional>
#include <vector>

namespace ellwynd::refresh {

/// Who requested a read. A roster that the teacher requested counts as a visit, and failures of the
/// teacher's reads are always shown.
enum class Initiative { program, teacher };

/// One kind of read.
struct Job {
    /// Requested but not started yet, and by whom; absent otherwise.
    std::optional<Initiative> wanted;
    /// Running, and for whom; absent otherwise.
    std::optional<Initiative> running;
    /// When the last successful read ended; absent before the first.
    std::optional<ElapsedTime> readAt;
    /// The last read failed because there was no network, and must be retried.
    bool lacksNetwork = false;

    bool operator==(const Job &) const = default;
};

struct State {
    /// A refresh was requested. Before that, activation, wake-up and the timer are ignored.
    bool started = false;
    bool connected = false;
    /// Reading the token from the secret store.
    Job connection;
    /// The course list.
    Job list;
    /// The roster on screen: one course, or all courses of a term.
    Job roster;
    /// A scoring pass over the nearby terms.
    Job pass;
    /// Another refresh, or pass, must follow the running one.
    bool refreshQueued = false;
    bool passQueued = false;
    /// Whether a roster is selected, rather than the dashboard.
    bool rosterSelected = false;
    /// When the new selection may be read; delayed so that courses selected only briefly are not
    /// read. Absent when there is nothing to wait for.
    std::optional<ElapsedTime> rosterDueAt;
    /// When the last read of the roster started; absent before the first.
    std::optional<ElapsedTime> rosterStartedAt;
    /// The next pass follows a course list, so only courses read after the list count as fresh.
    bool passFollowsList = false;
    /// The running pass does not read courses again that were read since then.
    ElapsedTime passFreshSince{};
    /// When to retry the reads that failed without a network; absent if no retry is planned.
    std::optional<ElapsedTime> retryAt;
    /// Retries planned since the first failure.
    int retries = 0;

    bool operator==(const State &) const = default;
};

struct Event {
    enum class Kind {
        /// The command "Refresh", the start of the program, or a saved connection.
        refreshRequested,
        /// The commands "Refresh roster" and "Try Again".
        rosterRequested,
        /// A course, a term or the dashboard was selected.
        selectionChanged,
        /// The program became active.
        activated,
        /// The computer woke up.
        woke,
        /// The half-hour timer fired.
        timerFired,
        networkReachable,
        /// The time of `nextDeadline` was reached.
        deadline,
        connectionOpened,
        /// Signed out: there is no address or no token.
        connectionMissing,
        /// The secret store could not be read.
        connectionFailed,
        /// The address changed; the caller has removed the data of the previous one.
        connectionChanged,
        listRead,
        listFailed,
        rosterRead,
        rosterFailed,
        /// A pass stored a course, and the cache now holds the whole roster on screen.
        rosterCached,
        passEnded,
        /// The last pass started on an earlier day.
        dayChanged,
    };

    Kind kind;
    /// `selectionChanged`: whether a roster is selected.
    bool rosterSelected = false;
    /// `selectionChanged` and `rosterCached`: when the oldest course of the selection in the cache
    /// was read; absent if the cache does not hold all of them.
    std::optional<ElapsedTime> cachedAt;
    /// `selectionChanged`: how long to wait before the selection is read.
    ElapsedTime settle{};
    /// `listFailed`, `rosterFailed` and `passEnded`: nothing could be read because there was no
    /// network.
    bool lacksNetwork = false;
    /// `passEnded`: every course of every term was read.
    bool complete = false;
};

enum class Action {
    /// Reads the token for the teacher; a failure is shown.
    openConnection,
    /// Reads the token for the program, without a prompt; a failure is only logged.
    openConnectionQuietly,
    readList,
    /// `State::roster.running` says for whom, which may change during the read.
    readRoster,
    startPass,
    stopList,
    stopRoster,
    stopPass,
};

struct Step {
    State state;
    /// In the order of execution.
    std::vector<Action> actions;

    bool operator==(const Step &) const = default;
};

/// How long a roster or a pass counts as fresh.
inline constexpr ElapsedTime freshFor = std::chrono::minutes(1);
/// A course list of this age is read again on activation, on wake-up and by the timer.
inline constexpr ElapsedTime listFreshFor = std::chrono::hours(24);
/// How long a pass waits for the roster on screen.
inline constexpr ElapsedTime rosterGrace = std::chrono::seconds(5);

/// The next state and the actions that follow from an event.
[[nodiscard]] Step step(State state, const Event &event, ElapsedTime now);

/// When to send `Event::Kind::deadline`; absent if nothing depends on the time.
[[nodiscard]] std::optional<ElapsedTime> nextDeadline(const State &state, ElapsedTime now);

} // namespace ellwynd::refresh
