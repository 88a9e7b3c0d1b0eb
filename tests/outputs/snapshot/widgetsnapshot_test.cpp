#include "base/files.h"
#include "outputs/snapshot/snapshotfiles.h"
#include "support/logcapture.h"
#include "support/snapshots.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <sys/stat.h>

#include <algorithm>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

struct WidgetSnapshotTest : testing::Test {
    test::TemporaryFolder folder;
    std::filesystem::path container = folder.path() / "container";
    int reloads = 0;
    WidgetSnapshotWriter writer{container, [this] { ++reloads; }};

    test::LogCapture log;
    std::vector<std::string> &errors = test::LogCapture::errors();

    [[nodiscard]] std::string text(std::string_view name) const {
        return files::read(container / name, 100'000).value_or("no file");
    }
    [[nodiscard]] mode_t modeOf(std::string_view name) const {
        struct stat info {};
        EXPECT_EQ(::stat((container / name).c_str(), &info), 0);
        return info.st_mode & 0777U;
    }
};

TEST_F(WidgetSnapshotTest, WritesBothVersionsThenReloads) {
    WidgetSnapshotFile file = test::twoTerms();
    file.terms[1].courses[0].name.reset();
    writer.write(file);
    const std::string second = text("WidgetSnapshotV2.json");
    EXPECT_EQ(
        nlohmann::json::parse(second).dump(),
        R"({"automaticTermID":20,"terms":[)"
        R"({"courses":[)"
        R"({"atRisk":4,"concern":2,"id":4021,"name":"Bio","total":26,"watch":1},)"
        R"({"atRisk":0,"concern":0,"id":4022,"name":"Chem","total":24,"watch":0}],)"
        R"("id":20,"title":"Fall 2026"},)"
        R"({"courses":[{"atRisk":0,"concern":0,"id":3310,"total":12,"watch":1}],)"
        R"("id":10,"title":"Summer 2026"}],)"
        R"("updatedAt":"2026-09-24T12:00:00Z"})");
    EXPECT_THAT(second, StartsWith("{\n  \"automaticTermID\": 20,\n")) << "indented";
    EXPECT_THAT(text("WidgetSnapshot.json"), HasSubstr(R"(  "termTitle": "Fall 2026",
  "updatedAt": "2026-09-24T12:00:00Z"
})"));
    EXPECT_THAT(text("WidgetSnapshot.json"), testing::Not(HasSubstr("3310")));
    EXPECT_EQ(readWidgetSnapshot(container), file);
    EXPECT_EQ(reloads, 1);
    EXPECT_THAT(
        test::LogCapture::lines(),
        ElementsAre("widgets: Widget snapshot updated: 2 term(s), counts only"));
    EXPECT_TRUE(errors.empty());
    EXPECT_EQ(modeOf("."), 0700U);
    EXPECT_EQ(modeOf("WidgetSnapshot.json"), 0600U);
    EXPECT_EQ(modeOf("WidgetSnapshotV2.json"), 0600U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(container), {}), 2);
}

TEST_F(WidgetSnapshotTest, ClearingDeletesBothFiles) {
    writer.write(test::twoTerms());
    writer.clear();
    EXPECT_TRUE(std::filesystem::is_empty(container));
    EXPECT_EQ(readWidgetSnapshot(container), std::nullopt);
    EXPECT_EQ(reloads, 2);
    EXPECT_EQ(test::LogCapture::lines().back(), "widgets: Widget snapshot cleared");
    std::filesystem::remove(container);
    writer.clear();
    EXPECT_EQ(test::LogCapture::lines().back(), "widgets: Widget snapshot cleared")
        << "without any files";

    // What a killed writer left goes too, and one file that cannot be removed keeps no other.
    std::filesystem::create_directories(container / "WidgetSnapshotV2.json" / "full");
    for (const char *name : {"WidgetSnapshot.json", ".WidgetSnapshot.json.new-abc123"})
        files::replace(container / name, "{}");
    writer.clear();
    EXPECT_THAT(errors.back(), StartsWith("widgets: Widget snapshot failed: WidgetSnapshotV2"));
    EXPECT_EQ(std::ranges::count(test::LogCapture::lines(), "widgets: Widget snapshot cleared"), 2);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(container), {}), 1);
    EXPECT_EQ(reloads, 4);
}

TEST_F(WidgetSnapshotTest, NamesAreHiddenAndThoseThatAreKnownComeBack) {
    writer.write(test::twoTerms());
    const auto courses = [this] { return readWidgetSnapshot(container)->terms.front().courses; };
    ASSERT_GE(courses().size(), 2U);
    ASSERT_TRUE(courses()[0].name);
    writer.hideNames();
    EXPECT_TRUE(
        std::ranges::none_of(courses(), [](const auto &each) { return each.name.has_value(); }));
    writer.hideNames();
    EXPECT_EQ(reloads, 2) << "nothing has changed";
    writer.showNames({{courses()[0].id, "Biology"}});
    EXPECT_EQ(courses()[0].name, "Biology");
    EXPECT_FALSE(courses()[1].name);
    EXPECT_EQ(reloads, 3);
}

TEST_F(WidgetSnapshotTest, HidingNamesDeletesWhatIsNoSnapshot) {
    writer.hideNames();
    EXPECT_EQ(reloads, 0) << "without any files";
    writer.write(test::twoTerms());
    files::replace(container / "WidgetSnapshotV2.json", "[\"Bio\"]");
    writer.hideNames();
    EXPECT_TRUE(std::filesystem::is_empty(container));
    files::replace(container / "WidgetSnapshot.json", "{}");
    writer.hideNames();
    EXPECT_TRUE(std::filesystem::is_empty(container)) << "version 1 alone";

    // What cannot be read is kept, and reported.
    std::filesystem::create_symlink("WidgetSnapshotV2.json", container / "WidgetSnapshotV2.json");
    writer.hideNames();
    EXPECT_THAT(errors.back(), StartsWith("widgets: Widget snapshot failed: "));
    EXPECT_FALSE(std::filesystem::is_empty(container));
}

TEST_F(WidgetSnapshotTest, FailuresLeaveThePreviousFiles) {
    writer.write(test::twoTerms());
    const std::string before = text("WidgetSnapshotV2.json");
    WidgetSnapshotFile next = test::twoTerms();
    next.updatedAt += std::chrono::hours(1);

    // A folder in place of version 1, whose replacement is prepared after that of version 2.
    std::filesystem::remove(container / "WidgetSnapshot.json");
    std::filesystem::create_directory(container / "WidgetSnapshot.json");
    writer.write(next);
    EXPECT_EQ(text("WidgetSnapshotV2.json"), before);
    EXPECT_THAT(errors.back(), StartsWith("widgets: Widget snapshot failed: WidgetSnapshot.json"));
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(container), {}), 2);

    next.automaticTermID = 77;
    writer.write(next);
    EXPECT_EQ(text("WidgetSnapshotV2.json"), before);
    EXPECT_EQ(
        test::LogCapture::lines().back(),
        "widgets: Widget snapshot skipped: automatic term incomplete");

    const WidgetSnapshotWriter nowhere(folder.write("file", "") / "below", [this] { ++reloads; });
    nowhere.write(test::twoTerms());
    EXPECT_THAT(errors.back(), StartsWith("widgets: Widget snapshot failed: "));
    EXPECT_EQ(reloads, 1);
}

TEST_F(WidgetSnapshotTest, RejectsInvalidSnapshots) {
    const std::string whole = encode(test::twoTerms());
    ASSERT_EQ(decodeWidgetSnapshotFile(whole), test::twoTerms());
    const auto with = [&](const std::string &from, const std::string &to) {
        std::string text = whole;
        const auto place = text.find(from);
        EXPECT_NE(place, std::string::npos) << from;
        return text.replace(place, from.size(), to);
    };
    const auto withTerms = [](std::size_t count) {
        WidgetSnapshotFile file = test::twoTerms();
        file.terms.resize(count, file.terms.back());
        return encode(file);
    };
    EXPECT_TRUE(decodeWidgetSnapshotFile(withTerms(1000)));
    EXPECT_TRUE(decodeWidgetSnapshotFile(with("\"atRisk\": 4", "\"atRisk\": 1000000000")));
    const std::pair<const char *, std::string> rows[] = {
        {"truncated", whole.substr(0, whole.size() / 2)},
        {"an empty object", "{}"},
        {"version 1", encode(*automaticSnapshot(test::twoTerms()))},
        {"a count as text", with("\"atRisk\": 4", "\"atRisk\": \"4\"")},
        {"a count as a real", with("\"atRisk\": 4", "\"atRisk\": 4.0")},
        {"a negative count", with("\"atRisk\": 4", "\"atRisk\": -4")},
        {"a count above the limit", with("\"atRisk\": 4", "\"atRisk\": 1000000001")},
        {"more than a thousand terms", withTerms(1001)},
        {"a count missing", with("\"concern\": 2,", "")},
        {"a name of null", with("\"Bio\"", "null")},
        {"a title as a number", with("\"Fall 2026\"", "5")},
        {"a course as text", with("{\n          \"atRisk\": 0", "\"x\", {\"atRisk\": 0")},
        {"terms as an object",
         R"({"automaticTermID":1,"updatedAt":"2026-09-24T12:00:00Z","terms":{}})"},
        {"an invalid date", with("2026-09-24T12:00:00Z", "yesterday")},
    };
    for (const auto &[name, text] : rows)
        EXPECT_EQ(decodeWidgetSnapshotFile(text), std::nullopt) << name;
    // A number out of range costs its course or term.
    WidgetSnapshotFile withoutCourse = test::twoTerms();
    withoutCourse.terms[0].courses.erase(withoutCourse.terms[0].courses.begin());
    WidgetSnapshotFile withoutTerm = test::twoTerms();
    withoutTerm.terms.pop_back();
    WidgetSnapshotFile withoutAutomatic = test::twoTerms();
    withoutAutomatic.automaticTermID = 0;
    const std::pair<std::string, const WidgetSnapshotFile &> reduced[] = {
        {with("4021", "1e999"), withoutCourse},
        {with("\"atRisk\": 4", "\"atRisk\": 18446744073709551615"), withoutCourse},
        {with("\"id\": 10", "\"id\": 1e999"), withoutTerm},
        {with("ID\": 20", "ID\": 1e999"), withoutAutomatic}};
    for (const auto &[text, file] : reduced)
        EXPECT_EQ(decodeWidgetSnapshotFile(text), file) << text;
    // A newer version may add keys.
    EXPECT_EQ(
        decodeWidgetSnapshotFile(with("\"total\": 26", "\"new\": [{}], \"total\": 26")),
        test::twoTerms());

    const auto file = container / widgetFiles::versionTwo;
    constexpr std::size_t limit = 4UL * 1024 * 1024;
    for (const std::size_t size : {limit, limit + 1}) {
        files::replace(file, whole + std::string(size - whole.size(), ' '));
        EXPECT_EQ(readWidgetSnapshot(container).has_value(), size == limit);
    }
    EXPECT_THAT(errors, ElementsAre(StartsWith("widgets: ")));
    std::filesystem::remove(file);
    std::filesystem::create_symlink(file.filename(), file);
    EXPECT_THROW((void)readWidgetSnapshot(container), FileUnavailable) << "no news";
}

} // namespace
} // namespace ellwynd
