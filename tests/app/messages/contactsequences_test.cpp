// Contact marks, copies, removals, undoing and automatic reads in every order.
#include "app/messages/writesession.h"
#include "app/roster/rosteractions.h"
#include "app/roster/visit.h"
#include "base/calendar.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using Level = std::optional<RiskLevel>;

Date clockTime;

int severe(Level level) {
    return level ? 3 - int(*level) : 0;
}

/// What must be known after a sequence, by the rules of the contact log alone.
struct Expected {
    std::optional<Date> contact;
    std::vector<std::optional<Date>> undo;
    std::vector<std::pair<Date, Level>> recorded;

    void mark() {
        undo.push_back(contact);
        contact = clockTime;
    }
    void remove() {
        if (!contact)
            return;
        undo.push_back(contact);
        contact.reset();
    }
    void undoNewest() {
        if (undo.empty())
            return;
        contact = undo.back();
        undo.pop_back();
    }
    void freshen(Level level) {
        for (const auto &[date, known] : recorded) {
            if (calendar::dayKey(date) == calendar::dayKey(clockTime))
                return;
        }
        recorded.emplace_back(clockTime, level);
    }

    /// The level at the contact; absent if none was recorded.
    [[nodiscard]] std::optional<Level> levelThen() const {
        std::optional<Level> then;
        for (const auto &[date, level] : recorded) {
            if (date <= *contact)
                then = level;
        }
        for (const auto &[date, level] : recorded) {
            if (!then && date > *contact)
                then = level;
        }
        return then;
    }

    [[nodiscard]] std::string text(Level now) const {
        if (!contact)
            return "";
        const auto days = calendar::daysBetween(*contact, clockTime);
        std::string text = days == 0 ? "Wrote today"
            : days == 1              ? "Wrote yesterday"
                                     : fmt::format("Wrote {} days ago", days);
        const std::optional<Level> then = levelThen();
        if (!now)
            text += then && *then ? " — no longer flagged since" : " — not flagged";
        else if (!then || severe(*then) == severe(now))
            text += fmt::format(" — still {}", levelName(now));
        else
            text += fmt::format(
                " — {} to {} since", severe(now) > severe(*then) ? "slipped" : "improved",
                levelName(now));
        const bool awaiting = days > 6 && now && (!then || severe(now) >= severe(*then));
        return awaiting ? text + " (awaiting)" : text;
    }
};

TEST(ContactSequences, EveryOrderGivesWhatTheRecordsSay) {
    const test::TemporaryFolder folder;
    const test::LogCapture log;
    UserDefaults defaults(folder.path() / "Preferences.json", {{"SampleData", true}});
    const Clock now = [] { return clockTime; };
    clockTime = test::noon;
    Stores stores(defaults, folder.path(), now);
    TrendSync trends(defaults);
    UndoStack undo;
    const RosterView roster{.title = "Bio", .courseID = 7};
    RosterActions actions(roster, defaults, stores, undo, now);
    constexpr std::array<const char *, 4> levels{"Watch", "At Risk", "", "Concern"};
    // Several steps a day, then more than a week.
    constexpr std::array<int, 5> hours{1, 30, 2, 190, 1};
    const std::string operations = "mcruf";
    constexpr int length = 5;
    int differing = 0;
    for (int number = 0; number < 3125; ++number) {
        clockTime = test::noon;
        stores.contacts.deleteAll();
        stores.history.deleteAll();
        undo.clear();
        Expected expected;
        std::string sequence;
        for (int step = 0, rest = number; step < length; ++step, rest /= 5) {
            const char operation = operations[std::size_t(rest % 5)];
            sequence += operation;
            const RiskRow row = test::row(1, levels[std::size_t(step) % levels.size()]);
            if (operation == 'm') {
                actions.markContacted({row});
                expected.mark();
            } else if (operation == 'c') {
                WriteSession session(
                    {row}, defaults, stores, undo, [](const std::string &) { return true; }, now);
                session.copyAndNext();
                expected.mark();
            } else if (operation == 'r') {
                actions.removeContactMarks({row});
                expected.remove();
            } else if (operation == 'u') {
                undo.undo();
                expected.undoNewest();
            } else {
                recordVisit(
                    {.course = {.id = 7}, .rows = {row}, .fetchedAt = clockTime}, stores, trends,
                    false);
                expected.freshen(row.level);
            }
            const auto outcome = lastOutcome(row, stores.contacts, stores.history, clockTime);
            std::string text = outcome ? outreachText(*outcome) : "";
            if (outcome && isAwaitingFollowUp(*outcome))
                text += " (awaiting)";
            ASSERT_EQ(text, expected.text(row.level)) << sequence;
            differing += text.empty() ? 0 : 1;
            clockTime += std::chrono::hours(hours[std::size_t(step)]);
        }
    }
    EXPECT_GT(differing, 5000);
}

} // namespace
} // namespace ellwynd
