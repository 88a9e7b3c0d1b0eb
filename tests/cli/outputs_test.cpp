// Messages and exports on the command line, with the sample college.
#include "base/files.h"
#include "commandline.h"
#include "outputs/messages/templatefile.h"
#include "platform/folders/directories.h"
#include "support/instants.h"

#include <gmock/gmock.h>

namespace ellwynd::cli {
namespace {

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

struct OutputsTest : CommandLineTest {
    void SetUp() override {
        std::filesystem::remove_all(directories::data());
        files::replace(
            directories::data() / "MessageTemplates.json",
            encodeTemplates(
                {newTemplate(
                     "Mine", "{first_name} {score}/{passing}, {course}\n{flag}", test::noon),
                 newTemplate("Mine", "the second of that name", test::noon)}));
    }

    [[nodiscard]] Outcome call(const std::string &line) const {
        return CommandLineTest::call("--sample " + line);
    }
};

TEST_F(OutputsTest, TheSampleUsesTheTeachersOwnTemplates) {
    const json list = json::parse(call("templates --json").out);
    ASSERT_EQ(list.size(), 2U);
    EXPECT_EQ(list[0].size(), 3U);
    EXPECT_EQ(list[0]["id"].get<std::string>().size(), 36U);
    EXPECT_EQ(list[0]["name"], "Mine");
    EXPECT_EQ(list[0]["body"], "{first_name} {score}/{passing}, {course}\n{flag}");
    EXPECT_THAT(call("templates").out, HasSubstr("\nMine      {first_name} {score}"));
}

TEST_F(OutputsTest, MessagesFollowTheOrderOfTheRoster) {
    const std::string jordan = "Jordan 38%/70%, CS 101  4021 - Intro to Programming\nAt Risk";
    const std::string sam = "Sam 41%/70%, CS 101  4021 - Intro to Programming\nAt Risk";
    const Outcome two =
        call("message 900101 --student 5001 --student 5002 --student 5001 --template Mine --note");
    EXPECT_EQ(two.status, 0) << two.err;
    EXPECT_EQ(two.out, sam + "\n\n" + jordan + "\n");
    const Outcome flagged = call("message 900101 --template Mine");
    EXPECT_THAT(flagged.out, StartsWith(sam + "\n\n" + jordan + "\n\n"));
    EXPECT_THAT(flagged.out, testing::EndsWith("\nWatch\n")) << "only flagged students";
    EXPECT_EQ(json::parse(call("message 900101 --template Mine --student 5002 --json").out), sam);
    EXPECT_FALSE(std::filesystem::exists(directories::data() / "ContactLog.json"))
        << "contacts of the sample college are not saved";
}

TEST_F(OutputsTest, RostersAndTermsAreExported) {
    const auto lines = [](const std::string &text) { return std::ranges::count(text, '\n'); };
    const std::string csv = call("roster 900101 --csv").out;
    EXPECT_THAT(
        csv,
        StartsWith("Risk,Student,Current score,Grade,Missing,Last active,Why,Contacted,Since "
                   "contact\nAt Risk,Sam,41%,F,4,never,4 of 16 assignments missing"));
    EXPECT_EQ(lines(csv), 27) << "the whole roster, flagged or not";
    const std::string file = folder.path() / "out.csv";
    EXPECT_THAT(call("roster 900101 --csv -o " + file).out, IsEmpty());
    EXPECT_EQ(folder.read("out.csv"), csv);

    const std::string markdown = call("term 9001 --markdown").out;
    EXPECT_THAT(markdown, StartsWith("# Fall 2026\n\nExported from Ellwynd on "));
    EXPECT_THAT(markdown, HasSubstr("\n| At Risk | Sam | CS 101  4021 - Intro to Programming |"));
    EXPECT_EQ(json::parse(call("term 9001 --json").out).size(), std::size_t(lines(markdown) - 6));
    EXPECT_THAT(
        call("roster 900101 --markdown").out,
        StartsWith("# CS 101  4021 - Intro to Programming\n"));
}

} // namespace
} // namespace ellwynd::cli
