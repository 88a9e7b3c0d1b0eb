// What is to be read from Canvas next: one pure function of what is known and what happened.
#pragma once

#include "base/elapsedtime.h"

#include <optional>
#include <vector>

namespace ellwynd::refresh {

/// Who asked for a read. Only the teacher's own may raise an unlock prompt and always counts as a
/// visit.
enum class Initiative { program, teacher };

/// One kind of read.
struct Job {
    /// Asked for, and not begun yet.
    std::optional<Initiative> wanted;
    /// Under way.
    std::optional<Initiative> running;
    /// When the last one that succeeded ended; absent before.
    std::optional<ElapsedTime> readAt;
    /// The last one failed for want of a network, and is to be tried again.
    bool lacksNetwork = false;

    bool operator==(const Job &) const = default;
};

struct State {
    /// The program has asked for its first refresh; nothing else happens before.
    bool started = false;
    bool connected = false;
    /// Reading the token from the secret store.
    Job connection;
    /// The course list.
    Job list;
    /// The roster on screen; of a term, all of its courses.
    Job roster;
    /// A scoring pass over the nearby terms.
    Job pass;
    /// One more refresh, or pass, follows the one under way.
    bool refreshQueued = false;
    bool passQueued = false;
    /// Whether a roster is on screen at all, and not the dashboard.
    bool rosterSelected = false;
    /// A selection is read once it has stood this long, so that courses passed over are not asked.
    std::optional<ElapsedTime> rosterDueAt;
    std::optional<ElapsedTime> rosterStartedAt;
    /// The next pass follows a list: only what was read after the list is fresh for it.
    bool passFollowsList = false;
    /// Courses read since then need not be read again by the pass under way.
    ElapsedTime passFreshSince{};
    /// When what failed for want of a network is tried again; absent when it is not.
    std::optional<ElapsedTime> retryAt;
    /// Tries made since the first failure.
    int retries = 0;

    bool operator==(const State &) const = default;
};

struct Event {
    enum class Kind {
        /// "Refresh", the start of the program, and a saved connection.
        refreshRequested,
        /// "Refresh roster" and "Try Again".
        rosterRequested,
        /// Another course, term or the dashboard was selected.
        selectionChanged,
        /// The program came to the front.
        activated,
        /// The computer woke up.
        woke,
        /// The half-hour timer.
        timerFired,
        networkReachable,
        /// `nextDeadline` has come.
        deadline,
        connectionOpened,
        /// There is no address or no token: signed out.
        connectionMissing,
        /// The secret store could not be read.
        connectionFailed,
        /// The address was changed; the caller has cleared what belonged to the other one.
        connectionChanged,
        listRead,
        listFailed,
        rosterRead,
        rosterFailed,
        /// The pass has read the roster on screen.
        rosterCached,
        passEnded,
        /// The pass under way is about another day.
        dayChanged,
    };

    Kind kind;
    /// With `selectionChanged`: whether a roster is selected, and how long the selection has to
    /// stand before it is read. With this and `rosterCached`: when the cache last read it.
    bool rosterSelected = false;
    std::optional<ElapsedTime> cachedAt;
    ElapsedTime settle{};
    /// With `…Failed` and `passEnded`: nothing could be read for want of a network.
    bool lacksNetwork = false;
    /// With `passEnded`: every course of every term was read.
    bool complete = false;
};

enum class Action {
    /// Reads the token; the first may raise an unlock prompt.
    openConnection,
    openConnectionQuietly,
    readList,
    /// Who asked for it is in the state, also when that changes while it runs.
    readRoster,
    startPass,
    stopList,
    stopRoster,
    stopPass,
};

struct Step {
    State state;
    /// In the order in which they are to be carried out.
    std::vector<Action> actions;

    bool operator==(const Step &) const = default;
};

/// What was read less than this ago counts as fresh.
inline constexpr ElapsedTime freshFor = std::chrono::minutes(1);
/// A course list older than this is read again on coming back.
inline constexpr ElapsedTime listFreshFor = std::chrono::hours(24);
/// A roster that takes longer than this no longer holds the pass back.
inline constexpr ElapsedTime rosterGrace = std::chrono::seconds(5);

/// What follows from an event.
[[nodiscard]] Step step(State state, const Event &event, ElapsedTime now);

/// When `Event::Kind::deadline` is to be sent; absent when nothing waits for time to pass.
[[nodiscard]] std::optional<ElapsedTime> nextDeadline(const State &state, ElapsedTime now);

} // namespace ellwynd::refresh
