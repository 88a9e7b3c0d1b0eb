#include "app/refresh/refreshstate.h"

#include <gmock/gmock.h>

#include <array>
#include <string>

namespace ellwynd::refresh {
namespace {

using namespace std::chrono_literals;
using Kind = Event::Kind;

constexpr ElapsedTime noon = 1000h;

/// One letter for each action: capitals start a read, lower-case letters stop one, and "q" opens
/// the connection quietly.
std::string letters(const std::vector<Action> &actions) {
    std::string text;
    for (const Action action : actions)
        text += "OqLRPlrp"[int(action)];
    return text;
}

/// Applies a sequence of events.
struct Story {
    State state;
    ElapsedTime now = noon;

    std::string send(const Event &event) {
        Step next = step(std::move(state), event, now);
        state = std::move(next.state);
        return letters(next.actions);
    }
    std::string send(Kind kind) { return send(Event{.kind = kind}); }
    std::string select(std::optional<ElapsedTime> cachedAt = std::nullopt) {
        return send(
            {.kind = Kind::selectionChanged,
             .rosterSelected = true,
             .cachedAt = cachedAt,
             .settle = 150ms});
    }
    std::string fail(Kind kind) { return send({.kind = kind, .lacksNetwork = true}); }
    std::string endPass() { return send({.kind = Kind::passEnded, .complete = true}); }
    std::string after(ElapsedTime wait, Kind kind) {
        now += wait;
        return send(kind);
    }
    /// Advances the time to the next deadline; "-" if there is none.
    std::string toDeadline() {
        const auto deadline = nextDeadline(state, now);
        if (!deadline)
            return "-";
        now = *deadline;
        return send(Kind::deadline);
    }

    [[nodiscard]] Story then(std::initializer_list<Kind> kinds) const {
        Story story = *this;
        for (const Kind kind : kinds)
            story.send(kind);
        return story;
    }

    /// Everything has been read, and a roster is on screen.
    static Story idle() {
        Story story =
            Story().then({Kind::refreshRequested, Kind::connectionOpened, Kind::listRead});
        story.endPass();
        story.select();
        story.toDeadline();
        return story.then({Kind::rosterRead});
    }
    static Story readingList() {
        return idle().then({Kind::refreshRequested, Kind::connectionOpened});
    }
    static Story passing() { return idle().then({Kind::timerFired, Kind::connectionOpened}); }
    static Story stale(ElapsedTime age) {
        Story story = idle();
        story.now += age;
        return story;
    }
    static Story offline() {
        Story story = stale(10min).then({Kind::woke, Kind::connectionOpened});
        story.fail(Kind::rosterFailed);
        story.fail(Kind::passEnded);
        return story;
    }
};

/// The actions that each event causes in each state.
TEST(RefreshState, EveryEventInEveryState) {
    const std::array<std::pair<const char *, Story>, 9> states{{
        {"not started", Story{}},
        {"opening", Story().then({Kind::refreshRequested})},
        {"idle, fresh", Story::idle()},
        {"idle, ten minutes old", Story::stale(10min)},
        {"idle, a day old", Story::stale(25h)},
        {"reading the list", Story::readingList()},
        {"reading the roster", Story::idle().then({Kind::rosterRequested})},
        {"in a pass", Story::passing()},
        {"without a network", Story::offline()},
    }};
    struct Row {
        const char *name;
        Event event;
        std::array<const char *, 9> actions;
    };
    const std::vector<Row> rows{
        {"refresh", {.kind = Kind::refreshRequested}, {"O", "", "O", "O", "O", "", "O", "O", "O"}},
        {"roster", {.kind = Kind::rosterRequested}, {"O", "", "R", "R", "R", "R", "", "R", "R"}},
        {"selection",
         {.kind = Kind::selectionChanged, .rosterSelected = true},
         {"", "", "R", "R", "R", "R", "rR", "R", "R"}},
        {"dashboard", {.kind = Kind::selectionChanged}, {"", "", "", "", "", "", "r", "", ""}},
        {"activated", {.kind = Kind::activated}, {"", "", "", "q", "q", "", "", "", "q"}},
        {"woke", {.kind = Kind::woke}, {"", "", "", "q", "q", "", "", "", "q"}},
        {"timer", {.kind = Kind::timerFired}, {"", "", "q", "q", "q", "", "q", "", "q"}},
        {"network", {.kind = Kind::networkReachable}, {"", "", "", "", "", "", "", "", "q"}},
        {"deadline", {.kind = Kind::deadline}, {"", "", "", "", "", "", "", "", ""}},
        {"opened", {.kind = Kind::connectionOpened}, {"", "L", "", "", "", "", "", "", ""}},
        {"missing", {.kind = Kind::connectionMissing}, {"", "", "", "", "", "l", "r", "p", ""}},
        {"keyring", {.kind = Kind::connectionFailed}, {"", "", "", "", "", "", "", "", ""}},
        {"address",
         {.kind = Kind::connectionChanged},
         {"O", "O", "O", "O", "O", "lO", "rO", "pO", "O"}},
        {"list", {.kind = Kind::listRead}, {"", "", "R", "R", "R", "R", "", "pR", "R"}},
        {"list failed", {.kind = Kind::listFailed}, {"", "", "", "", "", "", "", "", ""}},
        {"roster read", {.kind = Kind::rosterRead}, {"", "", "", "", "", "", "", "", ""}},
        {"roster failed", {.kind = Kind::rosterFailed}, {"", "", "", "", "", "", "", "", ""}},
        {"roster cached", {.kind = Kind::rosterCached}, {"", "", "", "", "", "", "", "", ""}},
        {"pass ended", {.kind = Kind::passEnded}, {"", "", "", "", "", "", "", "", ""}},
        {"another day", {.kind = Kind::dayChanged}, {"", "", "", "", "", "", "", "pP", ""}},
    };
    for (const Row &row : rows) {
        for (std::size_t i = 0; i < states.size(); ++i) {
            Story story = states.at(i).second;
            EXPECT_EQ(story.send(row.event), row.actions.at(i))
                << row.name << ", " << states.at(i).first;
        }
    }
}

TEST(RefreshState, RefreshesDuringOneCauseOneMore) {
    Story story = Story::idle();
    EXPECT_EQ(story.send(Kind::refreshRequested), "O");
    EXPECT_EQ(story.send(Kind::connectionOpened), "L");
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(story.send(Kind::refreshRequested), "");
    EXPECT_EQ(story.send(Kind::listRead), "O");
    EXPECT_EQ(story.send(Kind::connectionOpened), "LR") << "the pass waits for the second list";
    EXPECT_EQ(story.send(Kind::rosterRead), "");
    EXPECT_EQ(story.send(Kind::listRead), "R");
    EXPECT_EQ(story.send(Kind::rosterRead), "P");
    EXPECT_EQ(story.endPass(), "");
}

TEST(RefreshState, APassFollowsEachListRead) {
    Story story = Story::readingList().then({Kind::refreshRequested});
    EXPECT_EQ(story.send(Kind::listRead), "O");
    EXPECT_EQ(story.send(Kind::connectionOpened), "LR");
    EXPECT_EQ(story.send(Kind::rosterRead), "");
    EXPECT_EQ(story.send(Kind::listFailed), "P")
        << "a failed second refresh does not prevent the pass";

    Story timer = Story::readingList();
    EXPECT_EQ(timer.send(Kind::timerFired), "");
    EXPECT_EQ(timer.send(Kind::listRead), "R");
    EXPECT_EQ(timer.send(Kind::rosterRead), "P");
}

TEST(RefreshState, ActivationReadsAgainWhatIsAMinuteOld) {
    Story story = Story::idle();
    story.now += 59s;
    EXPECT_EQ(story.send(Kind::activated), "");
    story.now += 1s;
    EXPECT_EQ(story.send(Kind::activated), "q");
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(story.send(Kind::activated), "") << "already under way";
    EXPECT_EQ(story.send(Kind::connectionOpened), "R");
    EXPECT_EQ(story.send(Kind::activated), "");
    EXPECT_EQ(story.send(Kind::rosterRead), "P");
    EXPECT_EQ(story.send(Kind::activated), "");
    EXPECT_EQ(story.endPass(), "");
    EXPECT_EQ(story.after(59s, Kind::activated), "");

    Story cached = Story::stale(10min);
    cached.send({.kind = Kind::rosterCached, .cachedAt = cached.now});
    EXPECT_EQ(cached.send(Kind::woke), "q");
    EXPECT_EQ(cached.send(Kind::connectionOpened), "P") << "the pass has read the roster";

    Story old = Story::stale(25h);
    EXPECT_EQ(old.send(Kind::woke), "q");
    EXPECT_EQ(old.send(Kind::connectionOpened), "L");
    EXPECT_EQ(old.send(Kind::listRead), "R");
    EXPECT_EQ(old.state.roster.running, Initiative::program) << "not a visit";
}

TEST(RefreshState, AHangingRosterDelaysAPassOnlyBriefly) {
    Story story = Story::readingList();
    EXPECT_EQ(story.send(Kind::listRead), "R");
    EXPECT_EQ(story.toDeadline(), "P");
    EXPECT_EQ(story.now, noon + 150ms + rosterGrace);
    EXPECT_EQ(story.toDeadline(), "-");
}

TEST(RefreshState, OnlyTheLastOfSeveralQuickSelectionsIsRead) {
    Story story = Story::idle();
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(story.select(), "");
        story.now += 30ms;
        EXPECT_EQ(story.send(Kind::deadline), "");
    }
    EXPECT_EQ(story.toDeadline(), "R");
    EXPECT_EQ(story.select(), "r");
    EXPECT_EQ(story.toDeadline(), "R");
    EXPECT_EQ(story.state.roster.running, Initiative::teacher);
}

TEST(RefreshState, ReadsThatFailedWithoutANetworkAreRetried) {
    Story story = Story::stale(10min);
    EXPECT_EQ(story.send(Kind::woke), "q");
    EXPECT_EQ(story.send(Kind::connectionOpened), "R");
    EXPECT_EQ(story.fail(Kind::rosterFailed), "P");
    EXPECT_EQ(story.fail(Kind::passEnded), "");
    ElapsedTime failedAt = story.now;
    for (const ElapsedTime wait : {5s, 15s, 60s}) {
        EXPECT_EQ(story.toDeadline(), "q");
        EXPECT_EQ(story.now - failedAt, wait);
        EXPECT_EQ(story.send(Kind::connectionOpened), "R");
        EXPECT_EQ(story.state.roster.running, Initiative::program);
        EXPECT_EQ(story.fail(Kind::rosterFailed), "P");
        EXPECT_EQ(story.fail(Kind::passEnded), "");
        failedAt = story.now;
    }
    EXPECT_EQ(story.toDeadline(), "-") << "no more retries until there is a network";
    EXPECT_EQ(story.after(10h, Kind::networkReachable), "q");
    EXPECT_EQ(story.send(Kind::connectionOpened), "R");
    EXPECT_EQ(story.send(Kind::rosterRead), "P");
    EXPECT_EQ(story.endPass(), "");
    EXPECT_EQ(story.send(Kind::networkReachable), "") << "nothing is left to retry";

    Story start = Story().then({Kind::refreshRequested, Kind::connectionOpened});
    EXPECT_EQ(start.fail(Kind::listFailed), "");
    EXPECT_EQ(start.toDeadline(), "q");
    EXPECT_EQ(start.send(Kind::connectionOpened), "L");
    EXPECT_EQ(start.send(Kind::listFailed), "");
    EXPECT_EQ(start.toDeadline(), "-") << "no retry after a response from Canvas";
}

TEST(RefreshState, OnePassFollowsAPassSlowerThanTheTimer) {
    Story story = Story::passing();
    for (int i = 0; i < 3; ++i)
        EXPECT_EQ(story.after(30min, Kind::timerFired), "");
    EXPECT_EQ(story.endPass(), "q");
    EXPECT_EQ(story.send(Kind::connectionOpened), "P");
    EXPECT_EQ(story.endPass(), "");

    // A refresh replaces a running pass only once its list has been read.
    story = Story::passing();
    EXPECT_EQ(story.send(Kind::refreshRequested), "O");
    EXPECT_EQ(story.send(Kind::connectionOpened), "L");
    EXPECT_EQ(story.send(Kind::listFailed), "");
    EXPECT_TRUE(story.state.pass.running);
}

TEST(RefreshState, AnUnreadableKeyringDropsRequestedReads) {
    Story story = Story::stale(10min);
    EXPECT_EQ(story.send(Kind::timerFired), "q");
    EXPECT_EQ(story.send(Kind::connectionFailed), "");
    EXPECT_EQ(story.toDeadline(), "-");
    EXPECT_EQ(story.send(Kind::timerFired), "q") << "the timer tries again";
}

TEST(RefreshState, TheTeachersRequestTurnsARunningReadIntoAVisit) {
    Story story = Story::stale(10min).then({Kind::activated, Kind::connectionOpened});
    EXPECT_EQ(story.state.roster.running, Initiative::program);
    EXPECT_EQ(story.send(Kind::rosterRequested), "");
    EXPECT_EQ(story.state.roster.running, Initiative::teacher);
}

} // namespace
} // namespace ellwynd::refresh
