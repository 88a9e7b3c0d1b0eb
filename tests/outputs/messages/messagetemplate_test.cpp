#include "outputs/messages/messagetemplate.h"
#include "support/instants.h"

#include <gtest/gtest.h>

namespace ellwynd {
namespace {

MessageTemplate templateWith(std::string body) {
    return newTemplate("Test", std::move(body), test::noon);
}

RiskRow student(
    std::optional<RiskLevel> level, std::optional<double> score, std::vector<std::string> missing) {
    RiskRow row{
        .id = 7,
        .name = "Ana María Ruiz",
        .courseName = "Biology",
        .level = level,
        .currentScore = score,
        .missingCount = std::int64_t(missing.size()),
        .courseID = 4021};
    std::vector<ReasonLine> reasons;
    if (!missing.empty()) {
        ReasonLine line{.text = "missing work"};
        std::int64_t id = 0;
        for (std::string &name : missing)
            line.links.push_back({{0, line.text.size()}, AssignmentRef{++id, std::move(name)}});
        reasons.push_back(std::move(line));
    }
    if (score)
        reasons.push_back({.text = "Current score", .links = {{{0, 13}, GradesTarget{}}}});
    row.reasonLines = std::move(reasons);
    return row;
}

const RiskRow everything = student(RiskLevel::atRisk, 48.6, {"Essay 1", "Quiz 3"});
const RiskRow nothing = student(std::nullopt, std::nullopt, {});

TEST(MessageTemplate, DefaultTemplatesOmitMissingValues) {
    const auto templates = defaultTemplates(test::noon);
    ASSERT_EQ(templates.size(), 3U);
    const RiskRow noLevel = student(std::nullopt, 72.49, {"Essay 1"});
    const auto emailWith = [](const std::string &lines) {
        return "Subject: Checking in — Bio 101\n\nHi Ana,\n\n"
               "I was going through how everyone is doing in Bio 101 and wanted to check in. Here "
               "is what I am seeing:\n\n" +
            lines +
            "\nIf something is getting in the way, reply and let me know — we can work out a plan "
            "to catch up.";
    };
    for (const auto &[name, index, row, text] :
         std::vector<std::tuple<const char *, std::size_t, RiskRow, std::string>>{
             {"email, everything", 0, everything,
              emailWith("• 2 assignment(s) showing as missing:\n    – Essay 1\n    – Quiz 3\n"
                        "• Your current score is 49%, and passing is 70%.\n")},
             {"email, nothing", 0, nothing, emailWith("")},
             {"short, everything", 1, everything,
              "Hi Ana — quick check-in on Bio 101.\n\nMissing (2):\n    – Essay 1\n    – Quiz 3\n\n"
              "Current score: 49%, passing is 70%\n\n"
              "If something is getting in the way, let me know and we'll sort out a plan."},
             {"short, nothing", 1, nothing,
              "Hi Ana — quick check-in on Bio 101.\n\n\n\n"
              "If something is getting in the way, let me know and we'll sort out a plan."},
             {"referral, everything", 2, everything,
              "Ana María Ruiz — Bio 101\nFlag: At Risk\nCurrent score: 49% (passing 70%)\n"
              "Missing (2):\n    – Essay 1\n    – Quiz 3"},
             {"referral, nothing", 2, nothing, "Ana María Ruiz — Bio 101"},
             {"referral, no level", 2, noLevel,
              "Ana María Ruiz — Bio 101\nCurrent score: 72% (passing 70%)\n"
              "Missing (1):\n    – Essay 1"},
         })
        EXPECT_EQ(fill(templates[index], row, "Bio 101", 69.5), text) << name;
}

TEST(MessageTemplate, FillsPlaceholdersInTheirOrder) {
    const auto named = [](std::string name) {
        RiskRow row = everything;
        row.name = std::move(name);
        return row;
    };
    RiskRow braces = named("{flag} {first_name} O'Neil {missing_count");
    RiskRow loop = named("{name}");
    RiskRow unflagged = named("Bo {flag}");
    unflagged.level.reset();
    RiskRow list = student(RiskLevel::watch, 70, {"a {missing_lines}", "50% | \"b\"\r\nc, {name}"});
    for (const auto &[body, row, text] :
         std::vector<std::tuple<const char *, RiskRow, const char *>>{
             {"", everything, ""},
             {" \u00A0\t\r\nHi\n\n ", everything, "Hi"},
             {"{score} {score}{passing}", everything, "49% 49%70%"},
             {"{Name} {unknown} {name", everything, "{Name} {unknown} {name"},
             {"{{name}}", everything, "{Ana María Ruiz}"},
             {"a\n{flag} and {nothing}\nb", nothing, "a\nb"},
             {"a\n\n{score}\n\nb", nothing, "a\n\n\nb"},
             {"{missing_list}", everything, "Essay 1, Quiz 3"},
             {"{missing_list}\r\nb", nothing, "b"},
             {"{first_name}", named("  Ana  María Ruiz"), "Ana"},
             {"x{first_name}x", named("  "), "x  x"},
             {"a\n{first_name}", named(""), "a"},
             {"{first_name}", named("Ana\u00A0María Ruiz"), "Ana\u00A0María"},
             {"{name}", named("\u202Eevil <b>"), "\u202Eevil <b>"},
             // A value may contain a later placeholder.
             {"{name}", braces, "At Risk {first_name} O'Neil {missing_count"},
             {"{first_name} {name}", loop, "{name} {name}"},
             {"a\n{name}", unflagged, "a"},
             {"{missing_list}", list,
              "a     – a {missing_lines}\n    – 50% | \"b\"\r\nc, {name}, 50% | \"b\"\r\nc, "
              "{name}"},
         })
        EXPECT_EQ(fill(templateWith(body), row, std::nullopt, 70), text) << body;
}

TEST(MessageTemplate, SeveralRowsMayBeOfDifferentCourses) {
    RiskRow other = nothing;
    other.name = "Bo";
    other.courseName = "Chemistry";
    other.courseID = 5;
    const std::vector<RiskRow> rows{everything, other};
    const auto passing = [](std::int64_t course) { return course == 5 ? 60.5 : 70; };
    const MessageTemplate message = templateWith("{first_name}: {course} {passing}\n{score}");
    EXPECT_EQ(
        fillAll(message, rows, std::nullopt, passing),
        "Ana: Biology 70%\n49%\n\nBo: Chemistry 61%");
    EXPECT_EQ(fillAll(message, rows, "Lab", passing), "Ana: Lab 70%\n49%\n\nBo: Lab 61%");
    EXPECT_EQ(fillAll(message, {}, "Lab", passing), "");
}

TEST(MessageTemplates, BracesAroundOtherTextAreFound) {
    for (const auto &[text, unknown, unfinished] :
         std::vector<std::tuple<const char *, std::vector<TextRange>, const char *>>{
             {"", {}, ""},
             {"{name} {missing_lines}", {}, ""},
             {"{Name}", {{0, 6}}, ""},
             {"é {firstname}{name}{ score}", {{2, 13}, {19, 27}}, ""},
             {"{{name}", {}, ""},
             {"{a\nb}", {}, ""},
             {"{a\u2028b} {a\u2029b}", {}, ""},
             {"} {}", {{2, 4}}, ""},
             {"{abcdefghijklmnopqrstuvwxyzabcdefghijkl}", {{0, 40}}, ""},
             {"{abcdefghijklmnopqrstuvwxyzabcdefghijklm}", {}, ""},
             {"{azAZ", {}, "{azAZ"},
             {"{this is a sentence in braces, which is no placeholder}", {}, ""},
             {"Hi {", {}, "{"},
             {"{name} {Mis_", {}, "{Mis_"},
             {"{not one", {}, ""}}) {
        EXPECT_EQ(unknownPlaceholders(QString::fromUtf8(text)), unknown) << text;
        EXPECT_EQ(unfinishedPlaceholder(text), unfinished) << text;
    }
    EXPECT_EQ(titleOf({.name = " \n "}), "(no name)");
    EXPECT_EQ(titleOf({.name = "A\n b"}), "A b");
}

} // namespace
} // namespace ellwynd
