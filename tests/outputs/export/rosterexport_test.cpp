#include "outputs/export/rosterexport.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using std::chrono::days;
using test::noon;
using testing::ElementsAre;
using testing::HasSubstr;

constexpr std::int64_t course = 4021;

struct RosterExport : testing::Test {
    UserDefaults defaults{{}, {}};
    ContactLog contacts{defaults, std::nullopt, test::noonClock};
    RosterHistory history{defaults, std::nullopt, test::noonClock};
    ExportSource source{contacts, history, noon};
};

TEST_F(RosterExport, EveryValueHasItsCell) {
    RiskRow row{
        .id = 1,
        .name = "Ana",
        .courseName = "Bio",
        .level = RiskLevel::concern,
        .currentScore = 72.5,
        .currentGrade = "C−",
        .missingCount = 1,
        // The previous day in Chicago.
        .lastActivityAt = test::at("2026-09-20T04:59:59Z"),
        .courseID = course};
    ReasonLine missing{.text = "Missing these:"};
    missing.links = {{{0, 14}, AssignmentRef{1, "Essay"}}, {{0, 14}, AssignmentRef{2, "Quiz"}}};
    row.reasonLines = {missing, {.text = "1 past-due unsubmitted"}};
    contacts.noteContact(course, 1, noon - days(8));
    history.record({row}, course, noon - days(8));
    source.wholeTerm = true;
    EXPECT_THAT(
        exportRow(row, source),
        ElementsAre(
            "Concern", "Ana", "Bio", "73%", "C−", "1", "2026-09-19",
            "Missing these: Essay, Quiz; 1 past-due unsubmitted", "2026-09-16",
            "no change — awaiting follow-up"));
    EXPECT_EQ(outcomeLabel({}), "no change");
}

TEST_F(RosterExport, CSVQuotesCellsWithSeparators) {
    const std::vector<RiskRow> rows{
        {.id = 1, .name = "Ruiz, Ana"},
        {.id = 2, .name = "Bo \"Q\""},
        {.id = 3, .name = "a\nb"},
        {.id = 4, .name = "a\rb"},
        {.id = 5, .name = " 'x'|;\t\u202E "}};
    EXPECT_EQ(
        exportText(ExportFormat::csv, "x", rows, source),
        "Risk,Student,Current score,Grade,Missing,Last active,Why,Contacted,Since contact\n"
        ",\"Ruiz, Ana\",,,,never,,,\n"
        ",\"Bo \"\"Q\"\"\",,,,never,,,\n"
        ",\"a\nb\",,,,never,,,\n"
        ",\"a\rb\",,,,never,,,\n"
        ", 'x'|;\t\u202E ,,,,never,,,\n");
}

TEST_F(RosterExport, MarkdownKeepsARowOnOneLine) {
    source.wholeTerm = true;
    const std::vector<RiskRow> rows{
        {.id = 1,
         .name = "\r\na|b\\|c\r\nd\ne\rf\r\n",
         .courseName = "# *x*",
         .level = RiskLevel::watch}};
    EXPECT_EQ(
        exportText(ExportFormat::markdown, "Fall | 2026\n# x", rows, source),
        "# Fall | 2026 # x\n"
        "\n"
        "Exported from Ellwynd on 2026-09-24.\n"
        "\n"
        "| Risk | Student | Course | Current score | Grade | Missing | Last active | Why | "
        "Contacted | Since contact |\n"
        "| --- | --- | --- | --- | --- | --- | --- | --- | --- | --- |\n"
        "| Watch |  a\\|b\\\\|c d e f  | # *x* |  |  |  | never |  |  |  |\n");
    EXPECT_THAT(markdown("Empty", {}, source), testing::EndsWith(" --- |\n"));
}

TEST_F(RosterExport, TheFileNameHasNoSeparators) {
    EXPECT_EQ(
        exportFileName(ExportFormat::csv, "Bio 101: Lab/Field", noon),
        "Ellwynd — Bio 101- Lab-Field — 2026-09-24.csv");
    EXPECT_THAT(
        exportFileName(ExportFormat::markdown, "x", test::at("2026-09-24T04:00:00Z")),
        HasSubstr("2026-09-23.md"));
    constexpr std::size_t limit = 240;
    const auto named = [](std::size_t length) {
        return exportFileName("csv", std::string(length, 'x'), noon);
    };
    const std::size_t room = limit - named(0).size();
    EXPECT_THAT(named(room), testing::AllOf(testing::SizeIs(limit), HasSubstr("xx — 2026")));
    EXPECT_THAT(named(room + 1), testing::AllOf(testing::SizeIs(limit), HasSubstr("x… — 2026")));
}

} // namespace
} // namespace ellwynd
