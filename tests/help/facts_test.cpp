// The facts in the help agree with the program.
#include "app/roster/rosterloader.h"
#include "canvas/canvaslinks.h"
#include "canvas/records/canvaserror.h"
#include "canvas/sample/samplecanvasclient.h"
#include "help/helpbook.h"
#include "net/runtoend.h"
#include "platform/folders/directories.h"
#include "risk/scorer.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/matches.h"

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <cmath>
#include <regex>
#include <set>

namespace ellwynd {
namespace {

using test::matches;
using testing::HasSubstr;
using Kind = CanvasError::Kind;

const HelpBook &book() {
    static const HelpBook value;
    return value;
}

std::string body(std::string_view id) {
    const HelpTopic *topic = book().find(id);
    return topic != nullptr ? topic->body : std::string();
}

/// An error of each kind, with the values of the examples in the help.
std::vector<CanvasError> examples() {
    const std::string host = "canvas.example.edu";
    std::vector<CanvasError> errors{
        CanvasError::cannotReachHost(host),
        CanvasError::tlsFailed(host),
        CanvasError::network("Connection closed"),
        CanvasError::forbidden(std::nullopt),
        CanvasError::canvasUnavailable(503),
        CanvasError::unexpectedStatus(302, std::nullopt),
        CanvasError::notCanvas(host)};
    for (const Kind kind :
         {Kind::offline, Kind::timedOut, Kind::unauthorized, Kind::rateLimited, Kind::notFound,
          Kind::decodingFailed, Kind::nonHTTP, Kind::badURL})
        errors.emplace_back(kind);
    EXPECT_EQ(errors.size(), std::size_t(Kind::badURL) + 1) << "an error has no example";
    return errors;
}

TEST(HelpFacts, TroubleshootingHasAnEntryForEachMessage) {
    const std::string text = body("troubleshooting");
    const auto entries = matches(text, "^### (.+)$");
    std::set<std::string> headings(entries.begin(), entries.end());
    for (const CanvasError &error : examples()) {
        EXPECT_EQ(headings.erase(error.errorDescription()), 1U) << error.errorDescription();
        EXPECT_THAT(
            text,
            HasSubstr(fmt::format(
                "### {}\n\n> {}\n", error.errorDescription(), error.recoverySuggestion())));
    }
    test::Core core;
    const std::string address = "https://canvas.example.edu";
    for (const std::string &message :
         {runToEnd(core.check.test("", "")).status, runToEnd(core.check.test(address, "")).status,
          runToEnd(core.check.save("", "")).status, runToEnd(core.check.save(address, "")).status,
          std::string(tokenPageNeedsAddress)})
        EXPECT_EQ(headings.erase(message), 1U) << message;
    for (const CutShort reason :
         {CutShort::pageLimit, CutShort::refusedLink, CutShort::unreadableLink})
        EXPECT_EQ(headings.erase(cutShortText("submissions", reason)), 1U) << int(reason);
    EXPECT_THAT(headings, testing::IsEmpty()) << "the program has no such messages";
}

TEST(HelpFacts, EveryKeyringStatusIsExplained) {
    const std::string text = body("keychain");
    for (const auto status :
         {KeychainError::failed, KeychainError::unavailable, KeychainError::locked,
          KeychainError::dismissed, KeychainError::timedOut}) {
        const std::string message = KeychainError(status, "x").what();
        EXPECT_THAT(text, HasSubstr("| " + message.substr(0, message.find(':')) + " |"));
    }
    EXPECT_THAT(
        text, HasSubstr(KeychainError(KeychainError::locked, "The keyring is locked.").what()));
    EXPECT_THAT(text, HasSubstr("\"unknown error\""));
    EXPECT_THAT(KeychainError(1, "").what(), HasSubstr("unknown error"));

    test::Core core;
    core.connectTo("https://canvas.example.edu");
    core.secrets.failure.emplace(KeychainError::locked, "");
    const ConnectionState state = runToEnd(core.check.state());
    EXPECT_THAT(text, HasSubstr("> " + state.status + "\n"));
    EXPECT_THAT(text, HasSubstr("## " + state.placeholder + "\n"));
}

/// The text with "#" for numbers, so that sentences are compared by their words.
std::string withoutNumbers(const std::string &text) {
    static const std::regex number("[0-9]+");
    return std::regex_replace(text, number, "#");
}

TEST(HelpFacts, EveryReasonOfTheSampleCollegeIsExplained) {
    std::set<std::string> explained;
    for (const std::string &sentence : matches(body("reasons"), R"(^\| \*\*([^*]+)\*\*)"))
        explained.insert(withoutNumbers(sentence));
    const auto college = std::make_shared<SampleCanvasClient>(test::noonClock);
    const test::Core core;
    std::set<std::string> used;
    for (const Course &course : runToEnd(college->fetchCourses()).records) {
        const auto scored = runToEnd(loadCourse(college, course, core.defaults, test::noonClock));
        for (const RiskRow &row : scored.rows) {
            for (const ReasonLine &line : row.reasonLines) {
                EXPECT_TRUE(explained.contains(withoutNumbers(line.text))) << line.text;
                used.insert(withoutNumbers(line.text));
            }
        }
    }
    EXPECT_GE(used.size(), 4U);
}

TEST(HelpFacts, TheTableOfLevelsHasTheirLimits) {
    const std::string text = body("signals");
    for (const RiskLevel level : allRiskLevels) {
        const std::regex row(fmt::format(R"(\| \*\*{}\*\* \| ([0-9.]+) \|)", levelName(level)));
        std::smatch match;
        ASSERT_TRUE(std::regex_search(text, match, row)) << levelName(level);
        const double from = std::stod(match[1]);
        EXPECT_EQ(levelOf(from), level);
        EXPECT_NE(levelOf(std::nextafter(from, 0)), level);
    }
}

TEST(HelpFacts, NumbersAndNamesAreThoseOfTheProgram) {
    const NumberRange &passing = preferences::passingScores;
    const NumberRange &inactivity = preferences::inactivityWindows;
    const NumberRange &scale = preferences::textScale.row->range;
    constexpr double percent = 100;
    struct Row {
        const char *topic;
        std::string fact;
    };
    for (const Row &row : {
             Row{"thresholds",
                 fmt::format(
                     "from {} to {} in steps of {}. At first it is {}.", passing.minimum,
                     passing.maximum, passing.step, preferences::defaultPassingScore.fallback)},
             Row{"thresholds",
                 fmt::format(
                     "from {} to {}. At first it is {}.", inactivity.minimum, inactivity.maximum,
                     preferences::defaultInactivityDays.fallback)},
             Row{"appearance",
                 fmt::format("from {}% to {}%", scale.minimum * percent, scale.maximum * percent)},
             Row{"appearance",
                 fmt::format("At first it is {};", preferences::sidebarTermLimit.fallback)},
             Row{"privacy", fmt::format("`{}`", TokenStore::service)},
             Row{"connecting",
                 "`" + canvasLinks::tokenPage("https://h")->substr(sizeof "https://h" - 1) + "`"},
         })
        EXPECT_THAT(body(row.topic), HasSubstr(row.fact));
}

TEST(HelpFacts, PreferencesForTeachersAreListedWithTheirControls) {
    for (const Preference &row : preferences::table) {
        const std::string line = fmt::format("\n| `{}` | {} |", row.key, row.control);
        EXPECT_EQ(body("command-line").find(line) != std::string::npos, row.isForTeachers())
            << line;
    }
}

TEST(HelpFacts, ThePrivacyTopicHasThePathsOfFiles) {
    for (const char *variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME"})
        qunsetenv(variable);
    const std::filesystem::path home = qgetenv("HOME").toStdString();
    for (const auto &folder : {directories::config(), directories::data(), directories::state()})
        EXPECT_THAT(
            body("privacy"),
            HasSubstr("| `~/" + folder.lexically_relative(home).generic_string() + "/"));
}

} // namespace
} // namespace ellwynd
