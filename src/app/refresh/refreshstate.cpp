#include "app/refresh/refreshstate.h"

#include <algorithm>
#include <array>
#include <utility>

namespace ellwynd::refresh {

namespace {

using Kind = Event::Kind;

constexpr std::array<ElapsedTime, 3> retryWaits{
    std::chrono::seconds(5), std::chrono::seconds(15), std::chrono::seconds(60)};

bool isOlder(const Job &job, ElapsedTime age, ElapsedTime now) {
    return !job.readAt || now - *job.readAt >= age;
}

/// Requests a read unless it is running. The teacher's initiative takes precedence.
void want(Job &job, Initiative initiative) {
    if (job.running)
        job.running = std::max(*job.running, initiative);
    else
        job.wanted = std::max(job.wanted.value_or(initiative), initiative);
}

/// Turns a state into the next one and collects the actions.
class Decision {
  public:
    Decision(State state, ElapsedTime now) : state(std::move(state)), now(now) {}

    void handle(const Event &event);
    void decide();
    [[nodiscard]] Step take() { return {std::move(state), std::move(actions)}; }

  private:
    void requestList(Initiative initiative);
    void comeBack();
    void fireTimer();
    void changeSelection(const Event &event);
    void finishList();
    void finish(Job &job, bool lacksNetwork);
    void retry();
    void stop(Job &job, Action action);
    void stopReads();
    void dropWishes();
    [[nodiscard]] bool passMayStart() const;

    State state;
    ElapsedTime now;
    std::vector<Action> actions;
};

/// Any number of refreshes requested during one cause one more after it.
void Decision::requestList(Initiative initiative) {
    if (state.list.running) {
        state.refreshQueued = true;
        return;
    }
    want(state.connection, initiative);
    want(state.list, initiative);
}

void Decision::comeBack() {
    // The roster and a pass follow a running list anyway.
    if (!state.started || state.list.running || state.list.wanted)
        return;
    if (isOlder(state.list, listFreshFor, now)) {
        requestList(Initiative::program);
        return;
    }
    const auto freshen = [this](Job &job) {
        if (job.running || job.wanted || !isOlder(job, freshFor, now))
            return;
        want(job, Initiative::program);
        want(state.connection, Initiative::program);
    };
    if (state.rosterSelected)
        freshen(state.roster);
    freshen(state.pass);
}

void Decision::fireTimer() {
    // A pass follows a running list anyway.
    if (!state.started || state.list.running || state.list.wanted)
        return;
    if (isOlder(state.list, listFreshFor, now)) {
        requestList(Initiative::program);
    } else if (state.pass.running) {
        state.passQueued = true;
    } else {
        want(state.connection, Initiative::program);
        want(state.pass, Initiative::program);
    }
}

void Decision::changeSelection(const Event &event) {
    stop(state.roster, Action::stopRoster);
    state.roster = {.readAt = event.cachedAt};
    state.rosterSelected = event.rosterSelected;
    state.rosterDueAt.reset();
    if (event.rosterSelected) {
        state.roster.wanted = Initiative::teacher;
        state.rosterDueAt = now + event.settle;
    }
}

/// A list is followed by the roster on screen and by a pass, even if another refresh is queued.
void Decision::finishList() {
    const Initiative initiative = state.list.running.value_or(Initiative::program);
    finish(state.list, false);
    if (state.rosterSelected)
        want(state.roster, initiative);
    stop(state.pass, Action::stopPass);
    want(state.pass, Initiative::program);
    state.passFollowsList = true;
}

void Decision::finish(Job &job, bool lacksNetwork) {
    job.running.reset();
    job.lacksNetwork = lacksNetwork;
    if (!lacksNetwork) {
        const auto waits = [](const Job &each) { return each.lacksNetwork; };
        if (!waits(state.list) && !waits(state.roster) && !waits(state.pass)) {
            state.retryAt.reset();
            state.retries = 0;
        }
    } else if (!state.retryAt && state.retries < int(retryWaits.size())) {
        state.retryAt = now + retryWaits.at(std::size_t(state.retries++));
    }
}

/// Requests all reads again that failed because there was no network.
void Decision::retry() {
    state.retryAt.reset();
    for (Job *job : {&state.list, &state.roster, &state.pass}) {
        if (std::exchange(job->lacksNetwork, false) && !job->running) {
            want(*job, Initiative::program);
            want(state.connection, Initiative::program);
        }
    }
}

void Decision::stop(Job &job, Action action) {
    if (job.running)
        actions.push_back(action);
    job.running.reset();
}

void Decision::stopReads() {
    stop(state.list, Action::stopList);
    stop(state.roster, Action::stopRoster);
    stop(state.pass, Action::stopPass);
}

void Decision::dropWishes() {
    for (Job *job : {&state.connection, &state.list, &state.roster, &state.pass})
        job->wanted.reset();
    state.refreshQueued = false;
    state.passQueued = false;
}

void Decision::handle(const Event &event) {
    switch (event.kind) {
    case Kind::refreshRequested:
        state.started = true;
        requestList(Initiative::teacher);
        break;
    case Kind::rosterRequested:
        if (state.rosterSelected)
            want(state.roster, Initiative::teacher);
        if (!state.connected)
            requestList(Initiative::teacher);
        break;
    case Kind::selectionChanged:
        changeSelection(event);
        break;
    case Kind::woke:
        state.retries = 0;
        [[fallthrough]];
    case Kind::activated:
        comeBack();
        break;
    case Kind::timerFired:
        fireTimer();
        break;
    case Kind::networkReachable:
        state.retries = 0;
        retry();
        break;
    case Kind::deadline:
        if (state.retryAt && *state.retryAt <= now)
            retry();
        break;
    case Kind::connectionOpened:
        state.connection.running.reset();
        state.connected = true;
        break;
    case Kind::connectionMissing:
        stopReads();
        state = {.started = true};
        break;
    case Kind::connectionFailed:
        state.connection.running.reset();
        dropWishes();
        break;
    case Kind::connectionChanged:
        stopReads();
        state = {.started = true};
        requestList(Initiative::teacher);
        break;
    case Kind::listRead:
        finishList();
        state.list.readAt = now;
        break;
    case Kind::listFailed:
        finish(state.list, event.lacksNetwork);
        break;
    case Kind::rosterRead:
        finish(state.roster, false);
        state.roster.readAt = now;
        break;
    case Kind::rosterFailed:
        finish(state.roster, event.lacksNetwork);
        break;
    case Kind::rosterCached:
        state.roster.readAt = event.cachedAt;
        break;
    case Kind::passEnded:
        finish(state.pass, event.lacksNetwork);
        if (event.complete)
            state.pass.readAt = now;
        break;
    case Kind::dayChanged:
        if (state.pass.running) {
            stop(state.pass, Action::stopPass);
            want(state.pass, Initiative::program);
        }
        break;
    }
    if (!state.list.running && std::exchange(state.refreshQueued, false)) {
        state.list.wanted = Initiative::teacher;
        want(state.connection, Initiative::teacher);
    }
    if (!state.pass.running && std::exchange(state.passQueued, false)) {
        state.pass.wanted = Initiative::program;
        want(state.connection, Initiative::program);
    }
}

/// The roster on screen is read first, so that its requests are not queued behind those of every
/// other course. A roster that hangs delays the pass only for `rosterGrace`.
bool Decision::passMayStart() const {
    const bool rosterFirst =
        state.roster.wanted || (state.roster.running && now - *state.rosterStartedAt < rosterGrace);
    return !state.list.wanted && !state.list.running && state.list.readAt && !rosterFirst;
}

void Decision::decide() {
    if (state.rosterDueAt && *state.rosterDueAt <= now)
        state.rosterDueAt.reset();
    const auto begin = [this](Job &job, Action action) {
        job.running = *std::exchange(job.wanted, std::nullopt);
        job.lacksNetwork = false;
        actions.push_back(action);
    };
    if (state.connection.wanted && !state.connection.running) {
        const bool quiet = *state.connection.wanted == Initiative::program;
        begin(state.connection, quiet ? Action::openConnectionQuietly : Action::openConnection);
    }
    if (state.connection.running || !state.connected)
        return;
    if (state.list.wanted && !state.list.running)
        begin(state.list, Action::readList);
    if (state.roster.wanted && !state.roster.running && state.list.readAt && !state.rosterDueAt) {
        state.rosterStartedAt = now;
        begin(state.roster, Action::readRoster);
    }
    if (state.pass.wanted && !state.pass.running && passMayStart()) {
        const bool followsList = std::exchange(state.passFollowsList, false);
        state.passFreshSince = followsList ? *state.list.readAt : now - freshFor;
        begin(state.pass, Action::startPass);
    }
}

} // namespace

Step step(State state, const Event &event, ElapsedTime now) {
    Decision decision(std::move(state), now);
    decision.handle(event);
    decision.decide();
    return decision.take();
}

std::optional<ElapsedTime> nextDeadline(const State &state, ElapsedTime now) {
    std::optional<ElapsedTime> next;
    const auto consider = [&](std::optional<ElapsedTime> time) {
        if (time && *time > now)
            next = std::min(next.value_or(*time), *time);
    };
    consider(state.retryAt);
    if (state.roster.wanted)
        consider(state.rosterDueAt);
    if (state.pass.wanted && !state.pass.running && state.roster.running && state.rosterStartedAt)
        consider(*state.rosterStartedAt + rosterGrace);
    return next;
}

} // namespace ellwynd::refresh
