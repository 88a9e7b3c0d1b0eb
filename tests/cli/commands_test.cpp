#include "base/date.h"
#include "base/files.h"
#include "cli/table.h"
#include "cli/terminaltext.h"
#include "commandline.h"
#include "platform/folders/directories.h"
#include "support/fakecanvas.h"

#include <gmock/gmock.h>
#include <sys/stat.h>

namespace ellwynd::cli {
namespace {

using namespace nlohmann::literals;
using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;

using CommandsTest = CommandLineTest;

TEST_F(CommandsTest, EndWithTheStatusOfTheirFailure) {
    struct Row {
        const char *line;
        int status;
        /// The whole message if it ends a line, or else a part of it.
        std::string err;
    };
    for (const Row &row : std::vector<Row>{
             {"", 2, "Usage:"},
             {"dance", 2, "There is no command dance"},
             {"courses", 3, "Not connected\n"},
             {"--sample roster", 2, "roster needs more arguments"},
             {"--sample roster -", 2, "“-” is neither the id nor the name of a course\n"},
             {"--sample term x", 2, "x is not a term id"},
             {"--sample find …", 2, "find needs a letter or a digit"},
             {"--sample roster 1 2", 2, "roster takes no argument 2"},
             {"--sample roster 1 --nonsense", 2, "nonsense"},
             {"--sample roster 1", 1, "No course 1 in the course list.\n"},
             {"--sample roster itp", 1, "No course named itp in the course list.\n"},
             {"--sample roster 1 --csv --markdown", 2, "Only one of"},
             {"--sample term 9001 --json --markdown", 2, "Only one of"},
             {"--sample term 1", 1, "No term 1 in the course list.\n"},
             {"--sample thresholds 900101 --passing 101", 2, "--passing takes"},
             {"--sample thresholds 900101 --passing nan", 2, "--passing takes"},
             {"--sample thresholds 900101 --inactivity 0", 2, "--inactivity takes"},
             {"--sample thresholds 900101 --use-defaults --passing 50", 2, "cannot be combined"},
             {"--sample thresholds 'data str'", 2,
              "course 900106: CS 260  8830 - Data Structures (Fall 2026)\n"
              "course 900201: CS 260  3310 - Data Structures (Summer 2026)\n"},
             {"--sample student intro a", 2, "student 5023: Anya\nstudent 5006: Ava\n"},
             {"--sample student intro 'jordan\nx'", 1,
              "No student named jordan x in the roster.\n"},
             {"--sample message 900101", 2, "message needs --template NAME\n"},
             {"--sample message 900101 --template", 2, "template"},
             {"--sample message 900101 --template email", 2, "There is no template email\n"},
             {"--sample message 900101 --template --odd", 2, "There is no template --odd\n"},
             {"--sample message 900101 --template Email --student ?", 2,
              "“?” is neither the id nor the name of a student\n"},
             {"--sample message 900101 --template Email --student 5001 --student -1 --note", 1,
              "No student -1 in the roster.\n"},
             {"--sample connect https://h.example", 2, "connect cannot be used"},
             {"--sample disconnect", 2, "disconnect cannot be used"},
             {"connect h.example", 1, "Enter your Canvas address first"},
             {"-CanvasBaseURL https://h.example courses", 4, "Keychain error (2): "},
             {"score /nowhere", 1, "There is no folder /nowhere.\n"},
             {"score / --now yesterday", 2, "--now takes"},
             {"defaults sing", 2, "defaults has no verb sing\n"},
             {"defaults read NoSuchKey", 1, "There is no value for NoSuchKey.\n"},
             {"defaults write TextScale big", 2, "TextScale takes a number\n"},
             {"defaults write StudentDetailsHidden maybe", 2,
              "StudentDetailsHidden takes YES or NO\n"},
             {"defaults write CourseInsightPanelMode huge", 2,
              "CourseInsightPanelMode takes one of shown, small, hidden\n"},
             {"defaults write DashboardTermID x", 2,
              "DashboardTermID takes a whole number, 0 or more\n"},
             {"defaults write Onboarding.step -7", 2,
              "Onboarding.step takes a whole number from 0 to 3\n"},
             {"defaults write CanvasBaseURL 5", 2, "CanvasBaseURL takes a text\n"}}) {
        const Outcome outcome = call(row.line);
        EXPECT_EQ(outcome.status, row.status) << row.line;
        EXPECT_THAT(outcome.err, HasSubstr(row.err));
        EXPECT_TRUE(!row.err.ends_with('\n') || outcome.err == row.err) << outcome.err;
        EXPECT_THAT(outcome.out, IsEmpty());
    }
}

TEST_F(CommandsTest, PrintHelp) {
    for (const char *part : {"Commands:", "--sample", "-Key value", "--json", "-o, --output FILE"})
        EXPECT_THAT(call("--help").out, HasSubstr(part));
    EXPECT_THAT(call("--version").out, HasSubstr("ellwynd-cli "));
    for (const std::string name :
         {"score", "courses", "roster", "term", "thresholds", "defaults"}) {
        const Outcome outcome = call(name + " --help");
        EXPECT_EQ(outcome.status, 0);
        EXPECT_THAT(outcome.out, HasSubstr("Usage: ellwynd-cli " + name));
        for (const char *option : {"--help", "--json", "--output", "--sample", "-Key"})
            EXPECT_THAT(outcome.out, HasSubstr(option)) << name;
    }
}

TEST_F(CommandsTest, ConnectTestsBeforeItSaves) {
    test::trustAuthority();
    test::FakeCanvas canvas;
    canvas.answerWith([](const test::FakeRequest &) { return test::FakeReply{.status = 401}; });
    input = "secret-token\n";
    const Outcome refused = call("connect " + canvas.address());
    EXPECT_EQ(refused.status, 1);
    EXPECT_THAT(refused.err, HasSubstr("Canvas rejected the access token.\nGenerate a new token"));
    canvas.answerWith([](const test::FakeRequest &request) {
        EXPECT_EQ(request.headers.value("authorization"), "Bearer secret-token");
        return test::FakeReply{.body = R"({"name":"Ana"})"};
    });
    // There is no secret service here, so the token cannot be saved, and the address is not either.
    const Outcome unsaved = call("connect " + canvas.address());
    EXPECT_EQ(unsaved.status, 4);
    EXPECT_THAT(unsaved.err, testing::Not(HasSubstr("secret-token")));
    EXPECT_EQ(document("defaults list"), json::object());
}

TEST_F(CommandsTest, StatusAlwaysSucceeds) {
    EXPECT_EQ(
        document("status"), R"({"state": "not connected", "address": null, "account": null})"_json);
    EXPECT_EQ(document("--sample status")["state"], "sample");
    EXPECT_EQ(
        document("-CanvasBaseURL https://h.example/x status"),
        R"({"state": "keychain unavailable", "address": "https://h.example/x",
            "account": "h.example"})"_json);
}

TEST_F(CommandsTest, PrintTheCourseList) {
    const json list = document("--sample courses");
    ASSERT_EQ(list.size(), 7U);
    EXPECT_EQ(list[0]["id"], 900101);
    EXPECT_EQ(list[0]["courseCode"], nullptr);
    EXPECT_EQ(list[6]["term"]["name"], "Summer 2026");
    EXPECT_THAT(list[6]["term"]["startAt"], testing::Matcher<std::string>(HasSubstr("Z")));
    EXPECT_THAT(call("--sample courses").out, HasSubstr("Data Structures"));
}

TEST_F(CommandsTest, PrintARosterDocument) {
    const json roster = document("-SampleData YES -DefaultPassingScore 75 roster 900101");
    EXPECT_EQ(roster["course"]["name"], "CS 101  4021 - Intro to Programming");
    EXPECT_EQ(roster["passingScore"], 75.0);
    EXPECT_EQ(roster["rows"].size(), 26U);
    const auto student = [&](std::int64_t id) {
        return *std::ranges::find_if(
            roster["rows"], [id](const json &row) { return row["id"] == id; });
    };
    EXPECT_EQ(student(5022)["floor"], "below passing");
    json jordan = student(5001);
    for (const char *key : {"lastActivityAt", "contactedAt"}) {
        EXPECT_TRUE(parseInstant(jordan[key].get<std::string>()));
        jordan.erase(key);
    }
    EXPECT_EQ(jordan["reasons"].size(), 3U);
    EXPECT_EQ(jordan["reasons"][0]["links"].size(), 5U);
    EXPECT_EQ(
        jordan["reasons"][0]["links"][0],
        R"({"target": "assignment", "id": 1, "name": "Final Project"})"_json);
    EXPECT_EQ(jordan["reasons"][1]["links"], R"([{"target": "grades"}])"_json);
    jordan.erase("reasons");
    EXPECT_NEAR(jordan["score"].get<double>(), 0.5714, 1e-4);
    jordan.erase("score");
    EXPECT_NEAR(jordan["signals"]["inactivity"].get<double>(), 0.0214, 1e-4);
    jordan["signals"].erase("inactivity");
    EXPECT_EQ(
        jordan,
        R"({"id": 5001, "name": "Jordan", "sortableName": null, "courseID": 900101,
            "courseName": "CS 101  4021 - Intro to Programming", "level": "At Risk",
            "floor": null, "currentScore": 38, "currentGrade": "F",
            "signals": {"missing": 0.3, "pastDue": 0, "time": 0, "grade": 0.25},
            "missingCount": 5, "totalActivityTime": 46800, "awaitingFollowUp": true,
            "outreach": "Wrote 9 days ago — slipped to At Risk since"})"_json);
    EXPECT_EQ(
        roster["movement"]["summary"], "Since last time: 1 slipped · 3 newly flagged · 2 improved");
    const json &first = roster["movement"]["changes"][0];
    EXPECT_EQ(first["text"], "Jordan slipped from Concern to At Risk");
    EXPECT_EQ(first["previousLevel"], "Concern");
    EXPECT_EQ(first["kind"], "worse");
    EXPECT_EQ(roster["missedWork"][0]["name"], "Homework 5");
    EXPECT_EQ(roster["missedWork"][0]["rosterSize"], 26);
    ASSERT_EQ(roster["coverage"].size(), 5U);
    EXPECT_EQ(roster["coverage"][1], R"({"signal": "pastDue", "counts": true, "note": null})"_json);
    EXPECT_THAT(call("--sample roster 900102").out, HasSubstr("excluded from risk scores"));
    EXPECT_THAT(
        call("--sample student 900101 5001").out, HasSubstr("\nScore 0.57, Missing work 0.30, "));
}

TEST_F(CommandsTest, FindStudentsAndCourses) {
    EXPECT_EQ(
        document("--sample find 'php sql'"),
        R"([{"kind": "course", "id": 900103, "name": "CS 230  5140 - PHP with SQL",
             "courseID": 900103, "courseName": "CS 230  5140 - PHP with SQL",
             "level": null}])"_json);
    EXPECT_EQ(
        document("--sample find jordan")[0],
        R"({"kind": "student", "id": 5001, "name": "Jordan", "courseID": 900101,
            "courseName": "CS 101  4021 - Intro to Programming", "level": "At Risk"})"_json);
    EXPECT_EQ(
        call("--sample find Data Str").out,
        "Level  Student  Course  Name                            In\n"
        "                900106  CS 260  8830 - Data Structures  Fall 2026\n"
        "                900201  CS 260  3310 - Data Structures  Summer 2026\n");
    const Outcome nobody = call("--sample find zzzz");
    EXPECT_EQ(nobody.status, 0);
    EXPECT_EQ(nobody.out + nobody.err, "Nobody and nothing is named like that.\n");
    EXPECT_EQ(document("--sample find zzzz"), json::array());
}

TEST_F(CommandsTest, TakeNamesInsteadOfIDs) {
    struct Row {
        const char *named;
        const char *withIDs;
    };
    for (const Row &row :
         {Row{"roster INTRO", "roster 900101"},
          Row{"roster 'cs 101 4021 - intro to programming' --csv", "roster 900101 --csv"},
          Row{"student 'cs 101' JÓRDAN", "student 900101 5001"},
          Row{"roster php --csv", "roster 900103 --csv"},
          Row{"thresholds php", "thresholds 900103"},
          Row{"message intro --template Email --student jord",
              "message 900101 --template Email --student 5001"},
          Row{"contacted intro jordan", "contacted 900101 5001"}}) {
        const Outcome outcome = call(std::string("--sample ") + row.named);
        EXPECT_EQ(outcome.status, 0) << outcome.err;
        EXPECT_EQ(outcome.out, call(std::string("--sample ") + row.withIDs).out) << row.named;
    }
}

TEST_F(CommandsTest, PrintATerm) {
    const json rows = document("--sample term 9001");
    double last = 1e9;
    for (const json &row : rows) {
        EXPECT_NE(row["level"], nullptr);
        EXPECT_LE(row["score"].get<double>(), last);
        last = row["score"].get<double>();
    }
    EXPECT_THAT(call("--sample term 9002").out, HasSubstr("flagged across 1 course\n"));
}

TEST_F(CommandsTest, ThresholdsAreSetTriedAndReset) {
    EXPECT_EQ(
        document("--sample thresholds 900101 --passing 72.5"),
        R"({"passingScore": 72.5, "inactivityDays": 7, "passingOverridden": true,
            "inactivityOverridden": false, "summary": "Scored at 73% passing, 7 days behind)"
        R"( the class. This course overrides the defaults."})"_json);
    EXPECT_EQ(
        call("--sample thresholds 900101 --passing 60 --dry-run").out,
        "At 60 %: 7 flagged instead of 12.\n"
        "Now Watch: Nadia, Theo. No longer flagged: Marcus, Iris, Liam, Hugo, Otis.\n");
    const json effect = document("--sample thresholds 900101 --passing 60 --dry-run");
    EXPECT_EQ(effect["flaggedThen"], 7);
    EXPECT_EQ(
        effect["changes"][0],
        R"({"id": 5013, "name": "Nadia", "from": "Concern", "to": "Watch"})"_json);
    // A dry run changes nothing.
    EXPECT_EQ(document("--sample roster 900101")["passingScore"], 72.5);
    EXPECT_EQ(document("--sample roster 900102")["passingScore"], 70.0);
    EXPECT_EQ(
        call("--sample thresholds 900101 --use-defaults").out,
        "Scored at 70% passing, 7 days behind the class. Following the defaults from Settings.\n");
    EXPECT_EQ(call("--sample thresholds 900101 --dry-run").out, "10 flagged, as before.\n");
}

TEST_F(CommandsTest, DefaultsAreWrittenReadAndDeleted) {
    EXPECT_EQ(call("defaults read DefaultPassingScore").out, "70\n");
    EXPECT_EQ(call("defaults write SidebarTermLimit -2").status, 0);
    EXPECT_EQ(call("defaults read SidebarTermLimit").out, "0\n");
    EXPECT_EQ(call("-SidebarTermLimit 4 defaults read SidebarTermLimit").out, "4\n");
    EXPECT_EQ(call("defaults write Unknown word").status, 0);
    EXPECT_EQ(document("defaults list"), (json{{"SidebarTermLimit", 0}, {"Unknown", "word"}}));
    const json keys = document("defaults keys");
    const auto limit = std::ranges::find(
        keys, "SidebarTermLimit", [](const json &row) { return row["key"].get<std::string>(); });
    EXPECT_EQ((*limit)["value"], 0);
    EXPECT_EQ((*limit)["takes"], "a whole number");
    for (const char *key : {"SidebarTermLimit", "Unknown"})
        EXPECT_EQ(call(std::string("defaults delete ") + key).status, 0);
    EXPECT_EQ(document("defaults list"), json::object());
}

TEST_F(CommandsTest, OnlySwitchingOffDeletesAMemory) {
    const std::pair<const char *, const char *> memories[] = {
        {"RememberRosterHistory", "RosterHistory.json"}, {"RememberContacts", "ContactLog.json"}};
    for (const auto &[key, name] : memories) {
        const auto file = directories::data() / name;
        const std::string argument = std::string("-") + key;
        files::replace(file, "[]");
        EXPECT_EQ(call(argument + " NO defaults write " + key + " YES").status, 0);
        EXPECT_TRUE(std::filesystem::exists(file)) << key;
        EXPECT_EQ(call(argument + " YES defaults write " + key + " NO").status, 0);
        EXPECT_FALSE(std::filesystem::exists(file)) << key;
        EXPECT_EQ(call(std::string("defaults delete ") + key).status, 0);
    }
}

TEST_F(CommandsTest, AChangeThatCannotBeSavedIsAFailure) {
    const auto loop = folder.path() / "loop";
    std::filesystem::create_symlink("loop", loop);
    for (const auto &parent : {loop, folder.write("plain", "")}) {
        preferences = parent / "Preferences.json";
        for (const char *line :
             {"defaults write TextScale 1.2", "--sample thresholds 900101 --passing 72.5"}) {
            const Outcome outcome = call(line);
            EXPECT_EQ(outcome.status, 1) << preferences;
            EXPECT_EQ(outcome.err, "The change couldn't be saved.\n");
            EXPECT_THAT(outcome.out, IsEmpty());
        }
    }
}

TEST_F(CommandsTest, ScoringAFolderLeavesThePreferencesAlone) {
    (void)folder.write("Preferences.json", "{broken");
    (void)folder.write("course.json", R"({"id": 1})");
    for (const char *list : {"enrollments.json", "assignment_groups.json", "submissions.json"})
        (void)folder.write(list, "[]");
    const json roster = document("-DefaultPassingScore 65 score " + folder.path().string());
    EXPECT_EQ(roster["passingScore"], 65.0);
    EXPECT_EQ(roster["inactivityDays"], 7);
    EXPECT_EQ(folder.read("Preferences.json"), "{broken");
}

TEST_F(CommandsTest, AFailedWriteToStandardOutputIsAFailure) {
    std::ostringstream out;
    std::ostringstream err;
    out.setstate(std::ios::badbit);
    const std::vector<std::string> words{"--sample", "courses"};
    std::istringstream in;
    EXPECT_EQ(run(words, in, out, err, preferences), 1);
    EXPECT_EQ(err.str(), "The output couldn't be written.\n");
}

TEST_F(CommandsTest, WriteTheirResultToAFile) {
    const std::string file = folder.path() / "out.json";
    const Outcome outcome = call("--sample courses --json -o " + file);
    EXPECT_EQ(outcome.status, 0);
    EXPECT_THAT(outcome.out, IsEmpty());
    EXPECT_EQ(json::parse(folder.read("out.json")).size(), 7U);
    std::filesystem::create_symlink(file, folder.path() / "link");
    EXPECT_EQ(call("--sample courses -o " + (folder.path() / "link").string()).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "link"));
    EXPECT_THAT(folder.read("out.json"), HasSubstr("Fall 2026"));
    const std::filesystem::path pipe = folder.path() / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    for (const std::filesystem::path &blocked :
         {pipe, folder.path() / "nowhere" / "file", folder.path()})
        EXPECT_EQ(call("--sample courses -o " + blocked.string()).status, 1) << blocked;
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
}

TEST(Table, IdsTellAlikeNamesApart) {
    const auto text = [](bool all, std::vector<std::string> names) {
        Table table({{"Level"}, {"Student"}});
        std::vector<std::int64_t> ids;
        for (const std::string &name : names) {
            table.add({"OK", name});
            ids.push_back(std::int64_t(7 + ids.size()));
        }
        table.addIDs(ids, names, all);
        return table.text();
    };
    EXPECT_EQ(text(false, {"Ana", "Bo"}), "Level  Student\nOK     Ana\nOK     Bo\n");
    EXPECT_EQ(text(true, {"Ana", "Bo"}), "ID  Level  Student\n 7  OK     Ana\n 8  OK     Bo\n");
    EXPECT_EQ(
        text(false, {"Ana", "Bo", "Ana"}),
        "ID  Level  Student\n 7  OK     Ana\n    OK     Bo\n 9  OK     Ana\n");
    // They look alike, and name either student on the command line.
    EXPECT_THAT(text(false, {"Jos\u00e9", "Bo", "Jose\u0301"}), testing::StartsWith("ID"));
    EXPECT_THAT(text(false, {"…", "?"}), testing::StartsWith("Level"));
}

TEST(Table, AlignsByWidthAndKeepsTheTerminalSafe) {
    Table table({{"Name"}, {"N", true}, {"Why"}});
    table.add({"山田", "1", "a"});
    table.add({"José", "22", "b\x1b[2J\nc\xc2\x9b"});
    // An override is removed. The mark after a name keeps the figures on its right.
    table.add({"\u202eשרה", "3", "d\u2028"});
    table.add({"מوسى", "4", "e"});
    EXPECT_EQ(
        table.text(),
        "Name   N  Why\n山田   1  a\nJosé  22  b [2J c\n"
        "שרה\u200e    3  d\nמوسى\u200e   4  e\n");
}

TEST(Table, ContinuesItsLastColumnOnATerminal) {
    Table table({{"N", true}, {"Why"}});
    table.add({"12", "4 of 16 assignments missing — 28% of the grade"});
    table.add({"3", "a-word-that-is-longer-than-the-terminal is kept"});
    const std::string unlimited = table.text();
    EXPECT_THAT(unlimited, HasSubstr("12  4 of 16 assignments missing — 28% of the grade\n"));
    EXPECT_EQ(
        table.text(30),
        " N  Why\n"
        "12  4 of 16 assignments\n    missing — 28% of the grade\n"
        " 3  a-word-that-is-longer-than-the-terminal\n    is kept\n");
    EXPECT_EQ(table.text(20), unlimited) << "too narrow";
}

TEST(TerminalText, IsCutToTheColumnsOfTheTerminal) {
    struct Row {
        const char *text;
        std::size_t columns;
        const char *shown;
    };
    for (const Row &row : {
             Row{"Biology", 7, "Biology"},
             Row{"Biology", 6, "Biolo…"},
             Row{"山田太郎", 7, "山田太…"},
             Row{"山田太郎", 6, "山田…"},
             Row{"e\u0301e\u0301e\u0301", 2, "e\u0301…"},
             Row{"Biology", 1, "…"},
         })
        EXPECT_EQ(fitted(row.text, row.columns), row.shown) << row.columns;
}

} // namespace
} // namespace ellwynd::cli
