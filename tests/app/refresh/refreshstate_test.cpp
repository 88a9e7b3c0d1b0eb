#include "app/refresh/refreshstate.h"

#include <gmock/gmock.h>

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

/// A point stands for no actions.
std::string orPoint(const std::string &actions) {
    return actions.empty() ? "." : actions;
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
    /// The actions of several events, one after the other.
    std::string send(std::initializer_list<Kind> kinds) {
        std::string text;
        for (const Kind kind : kinds)
            text += (text.empty() ? "" : " ") + orPoint(send(kind));
        return text;
    }
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
        story.send(kinds);
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
    const std::vector<Story> states{
        Story{},                                // not started
        Story().then({Kind::refreshRequested}), // opening
        Story::idle(),                          // fresh
        Story::stale(10min),
        Story::stale(25h),
        Story::readingList(),
        Story::idle().then({Kind::rosterRequested}), // reading the roster
        Story::passing(),
        Story::offline(),
    };
    for (const auto &[event, expected] : std::vector<std::pair<Event, std::string>>{
             {{.kind = Kind::refreshRequested}, "O . O O O . O O O"},
             {{.kind = Kind::rosterRequested}, "O . R R R R . R R"},
             {{.kind = Kind::selectionChanged, .rosterSelected = true}, ". . R R R R rR R R"},
             {{.kind = Kind::selectionChanged}, ". . . . . . r . ."},
             {{.kind = Kind::activated}, ". . . q q . . . q"},
             {{.kind = Kind::woke}, ". . . q q . . . q"},
             {{.kind = Kind::timerFired}, ". . q q q . q . q"},
             {{.kind = Kind::networkReachable}, ". . . . . . . . q"},
             {{.kind = Kind::deadline}, ". . . . . . . . ."},
             {{.kind = Kind::connectionOpened}, ". L . . . . . . ."},
             {{.kind = Kind::connectionMissing}, ". . . . . l r p ."},
             {{.kind = Kind::connectionFailed}, ". . . . . . . . ."},
             {{.kind = Kind::connectionChanged}, "O O O O O lO rO pO O"},
             {{.kind = Kind::listRead}, ". . R R R R . pR R"},
             {{.kind = Kind::listFailed}, ". . . . . . . . ."},
             {{.kind = Kind::rosterRead}, ". . . . . . . . ."},
             {{.kind = Kind::rosterFailed}, ". . . . . . . . ."},
             {{.kind = Kind::rosterCached}, ". . . . . . . . ."},
             {{.kind = Kind::passEnded}, ". . . . . . . . ."},
             {{.kind = Kind::dayChanged}, ". . . . . . . pP ."},
         }) {
        std::string actions;
        for (Story story : states)
            actions += orPoint(story.send(event)) + " ";
        EXPECT_EQ(actions, expected + " ") << int(event.kind);
    }
}

TEST(RefreshState, RefreshesDuringOneCauseOneMore) {
    Story story = Story::idle();
    EXPECT_EQ(story.send({Kind::refreshRequested, Kind::connectionOpened}), "O L");
    for (int i = 0; i < 8; ++i)
        EXPECT_EQ(story.send(Kind::refreshRequested), "");
    EXPECT_EQ(story.send({Kind::listRead, Kind::connectionOpened, Kind::rosterRead}), "O LR .")
        << "the pass waits for the second list";
    EXPECT_EQ(story.send({Kind::listRead, Kind::rosterRead}), "R P");
    EXPECT_EQ(story.endPass(), "");
}

TEST(RefreshState, APassFollowsEachListRead) {
    Story story = Story::readingList().then({Kind::refreshRequested});
    EXPECT_EQ(story.send({Kind::listRead, Kind::connectionOpened, Kind::rosterRead}), "O LR .");
    EXPECT_EQ(story.send(Kind::listFailed), "P")
        << "a failed second refresh does not prevent the pass";

    Story timer = Story::readingList();
    EXPECT_EQ(timer.send({Kind::timerFired, Kind::listRead, Kind::rosterRead}), ". R P");
}

TEST(RefreshState, ActivationReadsAgainWhatIsAMinuteOld) {
    Story story = Story::idle();
    story.now += 59s;
    EXPECT_EQ(story.send(Kind::activated), "");
    story.now += 1s;
    EXPECT_EQ(story.send(Kind::activated), "q");
    for (int i = 0; i < 7; ++i)
        EXPECT_EQ(story.send(Kind::activated), "") << "already under way";
    EXPECT_EQ(
        story.send({Kind::connectionOpened, Kind::activated, Kind::rosterRead, Kind::activated}),
        "R . P .");
    EXPECT_EQ(story.endPass(), "");
    EXPECT_EQ(story.after(59s, Kind::activated), "");

    Story cached = Story::stale(10min);
    cached.send({.kind = Kind::rosterCached, .cachedAt = cached.now});
    EXPECT_EQ(cached.send({Kind::woke, Kind::connectionOpened}), "q P")
        << "the pass has read the roster";

    Story old = Story::stale(25h);
    EXPECT_EQ(old.send({Kind::woke, Kind::connectionOpened, Kind::listRead}), "q L R");
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
    EXPECT_EQ(story.send({Kind::woke, Kind::connectionOpened}), "q R");
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
    EXPECT_EQ(story.send({Kind::connectionOpened, Kind::rosterRead}), "R P");
    EXPECT_EQ(story.endPass(), "");
    EXPECT_EQ(story.send(Kind::networkReachable), "") << "nothing is left to retry";

    Story start = Story().then({Kind::refreshRequested, Kind::connectionOpened});
    EXPECT_EQ(start.fail(Kind::listFailed), "");
    EXPECT_EQ(start.toDeadline(), "q");
    EXPECT_EQ(start.send({Kind::connectionOpened, Kind::listFailed}), "L .");
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
    EXPECT_EQ(
        story.send({Kind::refreshRequested, Kind::connectionOpened, Kind::listFailed}), "O L .");
    EXPECT_TRUE(story.state.pass.running);
}

TEST(RefreshState, AnUnreadableKeyringDropsRequestedReads) {
    Story story = Story::stale(10min);
    EXPECT_EQ(story.send({Kind::timerFired, Kind::connectionFailed}), "q .");
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
