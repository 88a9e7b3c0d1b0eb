#include "base/files.h"
#include "historytest.h"
#include "memory/historyfile.h"

namespace ellwynd {
namespace {

using std::chrono::hours;
using std::chrono::seconds;
using test::at;
using test::entry;
using test::historyEntries;
using test::HistoryTest;
using test::historyText;
using test::noon;
using test::row;
using testing::ElementsAre;

TEST_F(HistoryTest, RoundTripsThroughItsFile) {
    open().record({row(2, "Concern", 3), row(1, "OK")}, 7, at("2026-09-24T12:00:00.75Z"));
    EXPECT_EQ(
        saved(),
        R"([{"courseID":7,"studentID":2,"recordedAt":"2026-09-24T12:00:00Z","level":"Concern","missingCount":3},)"
        R"({"courseID":7,"studentID":1,"recordedAt":"2026-09-24T12:00:00Z","level":"OK","missingCount":0}])");
    const RosterHistory reopened = open();
    EXPECT_THAT(
        reopened.entries(), ElementsAre(entry(7, 2, noon, "Concern", 3), entry(7, 1, noon, "OK")));
    EXPECT_EQ(historyStatus(reopened), "1 day recorded.");
}

TEST_F(HistoryTest, ALaterVisitOfTheDayReplacesTheEarlier) {
    RosterHistory history = open();
    const Date yesterday = at("2026-09-24T04:59:59Z"); // 23:59:59 in Chicago
    const Date midnight = at("2026-09-24T05:00:00Z");
    const Date evening = at("2026-09-25T04:59:59Z");
    // As recorded before the clock was set back, or in a zone further east.
    const Date nextDay = at("2026-09-25T05:00:00Z");
    history.record({row(1, "Concern")}, 7, nextDay);
    history.record({row(1, "Watch")}, 7, yesterday);
    history.record({row(1, "Watch"), row(2, "OK")}, 7, midnight);
    history.record({row(1, "Concern")}, 8, noon);
    history.record({row(1, "OK")}, 8, midnight);
    const std::uint64_t ofSeven = history.revision(7);
    const std::uint64_t ofEight = history.revision(8);
    history.record({row(1, "At Risk", 2)}, 7, evening);
    EXPECT_NE(history.revision(7), ofSeven);
    EXPECT_EQ(history.revision(8), ofEight);
    history.record({}, 7, evening);
    history.record({row(1, "OK")}, 7, noon, EntriesOfDay::kept);
    history.record({row(1, "OK")}, 9, noon, EntriesOfDay::kept);
    EXPECT_THAT(
        history.entries(),
        ElementsAre(
            entry(7, 1, nextDay, "Concern"), entry(7, 1, yesterday, "Watch"),
            entry(8, 1, midnight, "OK"), entry(7, 1, evening, "At Risk", 2),
            entry(9, 1, noon, "OK")));
    EXPECT_EQ(history.dayCount(), 3);
    EXPECT_EQ(history.entries(7, 1).size(), 3U);
    EXPECT_TRUE(history.entries(7, 2).empty()) << "has left the roster";
}

TEST_F(HistoryTest, DropsOldEntriesAndThoseOfTheSampleCollege) {
    const Date cutoff = noon - seconds(31'536'000);
    std::vector<RosterSnapshot> entries{
        entry(7, 1, cutoff, "OK"),        entry(7, 2, cutoff - seconds(1), "OK"),
        entry(899'999, 3, noon, "OK"),    entry(900'000, 4, noon, "OK"),
        entry(919'999, 5, noon, "Watch"), entry(920'000, 6, noon, "Purple")};
    write(historyText(entries));
    const RosterHistory history = open();
    EXPECT_THAT(history.entries(), ElementsAre(entries[0], entries[2], entries[5]));
    EXPECT_EQ(savedEntries(), history.entries());
    write(historyText({entry(900'001, 1, noon, "OK")}));
    static_cast<void>(open());
    EXPECT_EQ(saved(), "[]") << "saved at once";
    write("[ ]");
    static_cast<void>(open());
    EXPECT_EQ(saved(), "[ ]") << "not saved without a reason";
}

/// An entry in a file, in which a value is replaced by this JSON.
std::string entryWith(std::string_view key, std::string_view value) {
    std::string text =
        R"({"courseID":7,"studentID":1,"recordedAt":"2026-09-24T12:00:00Z","level":"OK","missingCount":0})";
    const std::size_t begin = text.find(":", text.find(key)) + 1;
    const std::size_t end = text.find_first_of(",}", begin);
    return text.replace(begin, end - begin, value);
}

TEST_F(HistoryTest, SetsAnUnreadableFileAside) {
    const auto with = [](std::string_view key, std::string_view value) {
        return "[" + entryWith(key, value) + "]";
    };
    for (const auto &[bytes, problem] : std::vector<std::pair<std::string, std::string>>{
             {"", "The file is empty."},
             {"{}", "Expected an array."},
             {"[" + entryWith("courseID", "7"), ""},
             {"[" + entryWith("courseID", "7") + ",", ""},
             {"[7]", "Entry 0: the entry has another type."},
             {with("level", "1"), "Entry 0: level has another type."},
             {with("level", "\"OK\",\"x\":"), ""},
             {with("courseID", "7.0"), "Entry 0: courseID has another type."},
             {with("missingCount", "true"), "Entry 0: missingCount has another type."},
             {with("studentID", "\"9\""), "Entry 0: studentID has another type."},
             {"[1e999,]", "It is not valid JSON."},
             {with("recordedAt", "\"2026-09-24\""), "Entry 0: recordedAt is not an instant."},
             {with("recordedAt", "\"\""), "Entry 0: recordedAt is not an instant."},
             {R"([{"recordedAt":"2026-09-24T12:00:00Z"}])", "Entry 0: courseID is missing."},
             {std::string(200, '[') + std::string(200, ']'), ""}}) {
        std::filesystem::remove_all(data);
        test::LogCapture::lines().clear();
        write(bytes);
        RosterHistory history = open();
        EXPECT_TRUE(history.entries().empty());
        EXPECT_THAT(
            test::LogCapture::lines(),
            ElementsAre(
                testing::StartsWith("history: Couldn't read roster history: " + problem),
                "history: Set it aside at RosterHistory.unreadable-1790251200.json"));
        EXPECT_EQ(folder.read("data/RosterHistory.unreadable-1790251200.json"), bytes);
        history.record({row(1, "OK")}, 7, noon);
        EXPECT_EQ(savedEntries().size(), 1U);
    }
    write("again");
    static_cast<void>(open());
    EXPECT_EQ(folder.read("data/RosterHistory.unreadable-1790251201.json"), "again")
        << "one set aside in the same second is not overwritten";
    write("");
    std::filesystem::resize_file(file, (std::uintmax_t{1024} << 20) + 1);
    EXPECT_TRUE(open().entries().empty());
    EXPECT_THAT(
        test::LogCapture::lines(), testing::Contains(testing::HasSubstr("larger than 1024 MiB")));
}

TEST_F(HistoryTest, ANumberOutOfRangeCostsItsEntry) {
    for (const char *number :
         {"1e999", "-1e999", "1e300", "9223372036854775808", "99999999999999999999999", "null"}) {
        write(
            "[" + entryWith("courseID", number) + "," + entryWith("studentID", "2") + "," +
            entryWith("studentID", number) + "," + entryWith("missingCount", number) + "]");
        EXPECT_THAT(open().entries(), ElementsAre(entry(7, 2, noon, "OK"))) << number;
    }
    EXPECT_THAT(test::LogCapture::lines(), testing::IsEmpty());
}

TEST_F(HistoryTest, AFileOfSeveralPartsIsReadAsAWhole) {
    constexpr std::int64_t students = 9'000; // a megabyte
    for (const char *level : {"Concern", "of another version", "},{"}) {
        std::vector<RosterSnapshot> entries;
        for (std::int64_t id = 0; id < students; ++id)
            entries.push_back(entry(id / 2'500, id, noon, level, id % 3));
        const HistoryVisits visits = visitsOf(entries);
        const std::string text = encodeHistory(visits);
        EXPECT_TRUE(historyEntries(text) == entries) << level;
        EXPECT_EQ(decodeHistory(text).size(), visits.size()) << "a visit is not divided";
        EXPECT_THROW(static_cast<void>(decodeHistory(text + "]")), FileError) << level;
        std::string wrong = text;
        wrong.replace(wrong.rfind("T12:00"), 1, "x");
        EXPECT_THROW(static_cast<void>(decodeHistory(wrong)), FileError) << level;
        std::string huge = text;
        huge.replace(huge.rfind(":2}"), 3, ":1e999}");
        EXPECT_EQ(historyEntries(huge).size(), entries.size() - 1) << level;
    }
}

TEST_F(HistoryTest, AFileThatIsUnavailableIsNeitherSetAsideNorReplaced) {
    open().record({row(1, "Watch")}, 7, noon);
    const std::string before = saved();
    // A link to itself stands for a file that can be replaced but not read.
    std::filesystem::rename(file, data / "elsewhere");
    std::filesystem::create_symlink(file.filename(), file);
    RosterHistory history = open();
    EXPECT_THAT(
        test::LogCapture::lines(),
        ElementsAre(testing::StartsWith("history: Couldn't read roster history: ")));
    history.record({row(2, "OK")}, 8, noon);
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    EXPECT_FALSE(history.isSaved());
    EXPECT_THAT(history.entries(), ElementsAre(entry(8, 2, noon, "OK")));
    history.saveUnsaved();
    EXPECT_FALSE(history.isSaved());

    std::filesystem::rename(data / "elsewhere", file);
    EXPECT_EQ(saved(), before);
    history.saveUnsaved();
    EXPECT_TRUE(history.isSaved());
    EXPECT_THAT(savedEntries(), ElementsAre(entry(7, 1, noon, "Watch"), entry(8, 2, noon, "OK")));
    EXPECT_FALSE(files::hasSetAside(file));
}

TEST_F(HistoryTest, CopiesSetAsideGoWithTheHistory) {
    write("broken");
    // A year before noon, and a second more.
    const auto kept = folder.write("data/RosterHistory.unreadable-1758715200.json", "old");
    const auto expired = folder.write("data/RosterHistory.unreadable-1758715199.json", "old");
    RosterHistory history = open();
    EXPECT_TRUE(std::filesystem::exists(kept));
    EXPECT_FALSE(std::filesystem::exists(expired));
    EXPECT_TRUE(std::filesystem::exists(data / "RosterHistory.unreadable-1790251200.json"));
    history.record({row(1, "Watch")}, 7, noon);
    const auto unfinished = [&] {
        return folder.write("data/.RosterHistory.json.new-abc123", "of a killed writer");
    };
    const auto atOpen = unfinished();
    static_cast<void>(open());
    EXPECT_FALSE(std::filesystem::exists(atOpen));
    const auto atDelete = unfinished();
    history.deleteAll();
    EXPECT_FALSE(files::hasSetAside(file));
    EXPECT_FALSE(std::filesystem::exists(atDelete));
    // Of a first save, with nothing else to delete.
    const auto alone = unfinished();
    history.deleteAll();
    EXPECT_FALSE(std::filesystem::exists(alone));
    // A file that breaks while it is open is set aside as well.
    history.record({row(4, "OK")}, 8, noon);
    write("broken");
    history.record({row(5, "OK")}, 9, noon);
    EXPECT_EQ(savedEntries().size(), 2U);
    EXPECT_TRUE(files::hasSetAside(file));
}

TEST_F(HistoryTest, AFileThatCannotBeRemovedIsEmptiedAtTheEnd) {
    const std::filesystem::path elsewhere = folder.path() / "elsewhere";
    {
        RosterHistory history = open();
        history.record({row(1, "Watch")}, 7, noon);
        std::filesystem::rename(data, elsewhere);
        std::filesystem::create_symlink(data, data);
        history.deleteAll();
        EXPECT_TRUE(history.entries().empty());
        EXPECT_FALSE(history.isSaved());
        std::filesystem::remove(data);
        std::filesystem::rename(elsewhere, data);
    }
    EXPECT_EQ(saved(), "[]");
}

TEST_F(HistoryTest, UnsavedVisitsAreSavedWithTheNextAndReplaceNoLaterOne) {
    RosterHistory window = open();
    window.record({row(1, "Watch")}, 6, noon);
    // The folder is moved away and replaced by a file.
    const std::filesystem::path elsewhere = folder.path() / "elsewhere";
    std::filesystem::rename(data, elsewhere);
    folder.write("data", "in the way");
    window.record({row(1, "Watch")}, 7, noon);
    window.record({row(1, "Watch")}, 8, noon);
    EXPECT_FALSE(window.isSaved());
    EXPECT_THAT(
        test::LogCapture::lines().back(),
        testing::StartsWith("history: Couldn't save roster history: "));
    EXPECT_EQ(window.entries().size(), 3U);
    // It is moved back, and another process records visits.
    std::filesystem::remove(data);
    std::filesystem::rename(elsewhere, data);
    const Date later = noon + seconds(60);
    open().record({row(2, "At Risk")}, 7, later);
    open().record({row(2, "At Risk")}, 8, noon - seconds(60));
    window.record({row(3, "OK")}, 9, noon);
    EXPECT_THAT(
        savedEntries(),
        ElementsAre(
            entry(6, 1, noon, "Watch"), entry(7, 2, later, "At Risk"), entry(8, 1, noon, "Watch"),
            entry(9, 3, noon, "OK")));
    EXPECT_EQ(savedEntries(), window.entries());
    // Removing the whole folder clears nothing in memory.
    std::filesystem::remove_all(data);
    window.record({row(4, "OK")}, 10, noon);
    EXPECT_EQ(savedEntries().size(), 5U);
}

TEST_F(HistoryTest, DeletedEntriesAreRestoredExceptThoseRecordedSince) {
    RosterHistory history = open();
    history.record({row(1, "Watch"), row(2, "OK")}, 7, noon - hours(24));
    history.record({row(1, "At Risk"), row(3, "OK")}, 7, noon - hours(2));
    history.record({row(1, "OK")}, 8, noon - hours(1));
    EXPECT_EQ(historyContents(history), "levels of 3 students in 2 courses");
    EXPECT_EQ(historyStatus(history), "2 days recorded.");
    const std::vector<RosterSnapshot> before = history.entries();
    // Another process records a visit that this one has not read yet.
    open().record({row(4, "OK")}, 9, noon - hours(1));
    const HistoryVisits deleted = history.deleteAll();
    EXPECT_EQ(snapshotsOf(deleted).size(), before.size() + 1);
    EXPECT_EQ(historyContents(history), "");
    EXPECT_FALSE(std::filesystem::exists(file));

    history.record({row(1, "Concern")}, 7, noon);
    EXPECT_TRUE(history.restore(deleted));
    EXPECT_EQ(test::LogCapture::lines().back(), "history: Roster history restored");
    EXPECT_THAT(
        history.entries(),
        ElementsAre(
            before[0], before[1], before[4], entry(9, 4, noon - hours(1), "OK"),
            entry(7, 1, noon, "Concern")));
    EXPECT_EQ(open().entries(), history.entries());
    defaults.set(preferences::rememberRosterHistory, false);
    EXPECT_FALSE(history.restore(deleted));
    EXPECT_TRUE(history.entries().empty());
}

TEST_F(HistoryTest, SwitchingOffDeletesEntriesAndStopsRecording) {
    RosterHistory history = open();
    int signalled = 0;
    QObject::connect(&history, &RosterHistory::historyDidChange, &history, [&] { ++signalled; });
    history.record({row(1, "Watch")}, 7, noon);
    defaults.set(preferences::rememberRosterHistory, true);
    EXPECT_FALSE(history.entries().empty());
    defaults.set(preferences::rememberRosterHistory, false);
    EXPECT_TRUE(history.entries().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
    EXPECT_EQ(test::LogCapture::lines().back(), "history: Roster history deleted");
    history.record({row(1, "Watch")}, 7, noon);
    EXPECT_EQ(signalled, 2);
    EXPECT_EQ(historyStatus(history), "Nothing recorded.");
    defaults.set("RememberRosterHistory", std::string("neither"));
    EXPECT_TRUE(history.isEnabled());
}

} // namespace
} // namespace ellwynd
