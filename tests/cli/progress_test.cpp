#include "cli/progress.h"
#include "commandline.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd::cli {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// What a terminal shows for a text: a carriage return moves to the start of the line, and later
/// characters overwrite earlier ones. Trailing blanks are invisible.
std::string screen(std::string text) {
    // An ellipsis is three bytes and one column.
    for (std::size_t at = 0; (at = text.find("…")) != std::string::npos;)
        text.replace(at, 3, "_");
    std::string shown;
    std::size_t column = 0;
    for (const char byte : text) {
        if (byte == '\r' || byte == '\n') {
            if (byte == '\n')
                shown.erase(shown.find_last_not_of(' ') + 1).push_back('\n');
            column = byte == '\n' ? shown.size() : shown.rfind('\n') + 1;
            continue;
        }
        shown.resize(std::max(shown.size(), column + 1), ' ');
        shown[column++] = byte;
    }
    return shown.erase(shown.find_last_not_of(' ') + 1);
}

TEST(Progress, AppearsAfterASecondAndIsErased) {
    struct Row {
        const char *name;
        bool terminal;
        /// Each has a time in ms, the step that begins, "tick" or "end", and what is on the screen
        /// afterwards.
        std::string events;
    };
    for (const Row &row : std::vector<Row>{
             {"quick work", true, "0|Reading|;999|tick|;999|end|"},
             {"long work", true, "0|Reading|;1000|tick|Reading;9000|end|"},
             {"steps count together", true,
              "0|Listing|;600|end|;600|Reading|;1000|tick|Reading;2000|end|;"
              "2000|Counting|Counting;3000|end|"},
             {"a shorter step leaves nothing of a longer one", true,
              "0|Reading 9 of 10|;2000|tick|Reading 9 of 10;3000|Done|Done"},
             {"a narrow terminal shows the beginning", true,
              "0|Reading 3 of 12: Programming\x1b[2J in many words…|;"
              "1000|tick|Reading 3 of 12: Programming [2J in man_;2000|end|"},
             {"a tick after the end", true, "0|Reading|;500|end|;1000|tick|"},
             {"no terminal", false, "0|Reading|;2000|tick|;3000|Counting|;4000|end|"}}) {
        std::ostringstream err;
        steady_clock::time_point time;
        Progress progress(
            err,
            {.present = row.terminal, .columns = [] { return 41U; }, .now = [&] { return time; }});
        std::istringstream events(row.events);
        for (std::string event; std::getline(events, event, ';');) {
            const std::size_t first = event.find('|');
            const std::size_t second = event.find('|', first + 1);
            const std::string what = event.substr(first + 1, second - first - 1);
            time = steady_clock::time_point(std::chrono::milliseconds(std::stoi(event)));
            if (what == "tick")
                progress.update();
            else if (what == "end")
                progress.end();
            else
                progress.begin(what);
            EXPECT_EQ(screen(err.str()), event.substr(second + 1)) << row.name << ": " << event;
        }
        if (!row.terminal) {
            EXPECT_EQ(err.str(), "") << row.name;
        }
    }
}

TEST(Progress, AppearsOnATimerAndIsOverwrittenByLogLines) {
    std::ostringstream err;
    // Half a millisecond short of the delay, so the timer is set to its shortest interval.
    std::vector<std::chrono::microseconds> times{0s, 999'500us, 1s};
    std::size_t asked = 0;
    Progress progress(err, {.present = true, .now = [&] {
                                return steady_clock::time_point(
                                    times[std::min(asked++, times.size() - 1)]);
                            }});
    progress.begin("Reading…");
    EXPECT_EQ(err.str(), "");
    EXPECT_TRUE(test::until([&] { return !err.str().empty(); }));
    err << "a line of the log\n";
    EXPECT_EQ(screen(err.str()), "a line of the log\n");
    progress.end();
    EXPECT_EQ(screen(err.str()), "a line of the log\n");
}

TEST(Progress, IsShownByCommandsThatReadCanvas) {
    struct Row {
        const char *line;
        std::vector<const char *> steps;
        const char *remaining;
    };
    const test::TemporaryFolder folder;
    constexpr auto list = "Reading the course list…\r";
    for (const Row &row : std::vector<Row>{
             {"courses", {list}, ""},
             {"roster 900101", {list, "Reading the roster…\r"}, ""},
             {"term 9001",
              {list, "Reading 1 of 6: CS 101  4021 - Intro to Programming…\r",
               "Reading 6 of 6: CS 260  8830 - Data Structures…\r"},
              ""},
             {"dashboard --json",
              {"Scored 0 of 7 courses…\r", "Scored 1 of 7: CS 101  4021 - Intro to Programming…\r",
               "Scored 7 of 7: CS 260  3310 - Data Structures…\r"},
              ""},
             {"roster 1", {list}, "No course 1 in the course list.\n"},
             {"status", {}, ""}}) {
        for (const bool terminal : {true, false}) {
            std::istringstream in;
            std::ostringstream out;
            std::ostringstream err;
            int seconds = 0;
            const auto fastClock = [&] {
                return steady_clock::time_point(std::chrono::seconds(seconds++));
            };
            (void)run(
                wordsOf(std::string("--sample ") + row.line), in, out, err,
                folder.path() / "Preferences.json", {.present = terminal, .now = fastClock});
            EXPECT_THAT(out.str(), testing::Not(testing::HasSubstr("…")));
            EXPECT_EQ(screen(err.str()), row.remaining);
            if (!terminal) {
                EXPECT_EQ(err.str(), row.remaining);
                continue;
            }
            for (const char *step : row.steps)
                EXPECT_THAT(err.str(), testing::HasSubstr(step));
        }
    }
}

} // namespace
} // namespace ellwynd::cli
