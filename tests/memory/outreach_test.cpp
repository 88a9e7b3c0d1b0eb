#include "memory/outreach.h"
#include "memory/trendsync.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using std::chrono::days;
using std::chrono::seconds;
using test::at;
using test::entry;
using test::noon;
using test::noonClock;
using test::row;
using testing::ElementsAre;
using testing::Pair;

struct ContactsTest : testing::Test {
    test::TemporaryFolder folder;
    test::LogCapture log;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};

    [[nodiscard]] std::filesystem::path data() const { return folder.path() / "data"; }
    [[nodiscard]] std::string saved() const { return folder.read("data/ContactLog.json"); }
    void write(const std::string &bytes) const {
        std::filesystem::create_directories(data());
        folder.write("data/ContactLog.json", bytes);
    }
};

TEST_F(ContactsTest, KeepsOneRecordPerStudentAndCourse) {
    ContactLog contacts(defaults, data(), noonClock);
    contacts.noteContact(7, 1, at("2026-09-01T12:00:00Z"));
    contacts.noteContacts(7, {2, 3}, at("2026-09-02T12:00:00Z"));
    contacts.noteContact(8, 1, at("2026-09-03T12:00:00Z"));
    const std::uint64_t ofSeven = contacts.revision(7);
    const std::uint64_t ofEight = contacts.revision(8);
    contacts.noteContact(7, 1, at("2026-09-04T12:00:00.25Z"));
    EXPECT_NE(contacts.revision(7), ofSeven);
    EXPECT_EQ(contacts.revision(8), ofEight);
    EXPECT_EQ(
        saved(),
        R"([{"courseID":7,"studentID":1,"contactedAt":810216000.25},)"
        R"({"courseID":7,"studentID":2,"contactedAt":810043200.0},)"
        R"({"courseID":7,"studentID":3,"contactedAt":810043200.0},)"
        R"({"courseID":8,"studentID":1,"contactedAt":810129600.0}])");
    EXPECT_EQ(contactsStatus(contacts), "4 students recorded.");
    EXPECT_EQ(
        std::ranges::count(test::LogCapture::lines(), "contacts: Noted a contact in course 7"), 4);
    const ContactLog reopened(defaults, data(), noonClock);
    EXPECT_EQ(reopened.records(), contacts.records());
    EXPECT_EQ(reopened.lastContact(7, 1)->contactedAt, at("2026-09-04T12:00:00.25Z"));
    EXPECT_EQ(reopened.lastContact(9, 1), std::nullopt);
    contacts.noteContacts(9, {30, 10, 20}, noon);
    for (const std::int64_t student : {10, 20, 30})
        EXPECT_EQ(contacts.lastContact(9, student)->contactedAt, noon) << student;
    EXPECT_EQ(contacts.lastContact(9, 15), std::nullopt);
}

TEST_F(ContactsTest, DropsOldContactsAndIgnoresUnreadableFiles) {
    const auto record = [](std::int64_t course, Date date) {
        return R"({"courseID":)" + std::to_string(course) + R"(,"studentID":1,"contactedAt":)" +
            std::to_string((date - at("2001-01-01T00:00:00Z")).count() / 1'000'000) + "}";
    };
    const Date cutoff = noon - seconds(31'536'000);
    write(
        "[" + record(1, cutoff) + "," + record(2, cutoff - seconds(1)) + "," +
        record(900'000, noon) + "," + record(920'000, noon) + "]");
    {
        const ContactLog contacts(defaults, data(), noonClock);
        ASSERT_EQ(contacts.records().size(), 2U);
        EXPECT_EQ(contacts.records()[1].courseID, 920'000);
    }
    EXPECT_EQ(std::ranges::count(saved(), '{'), 2);
    write("[" + record(900'001, noon) + "]");
    const ContactLog pruned(defaults, data(), noonClock);
    EXPECT_EQ(saved(), "[]") << "saved at once";
    write("[ ]");
    const ContactLog unchanged(defaults, data(), noonClock);
    EXPECT_EQ(saved(), "[ ]") << "not saved without a reason";

    for (const char *bytes :
         {"", "{}", "[1]", R"([{"courseID":1}])",
          R"([{"courseID":1,"studentID":"x","contactedAt":1}])",
          R"([{"courseID":1,"studentID":1.5,"contactedAt":1}])",
          R"([{"courseID":1,"studentID":1,"contactedAt":"2026"}])"}) {
        write(bytes);
        test::LogCapture::lines().clear();
        ContactLog contacts(defaults, data(), noonClock);
        EXPECT_TRUE(contacts.records().empty()) << bytes;
        EXPECT_THAT(
            test::LogCapture::lines(),
            ElementsAre(testing::StartsWith("contacts: Couldn't read the contact log: ")));
        EXPECT_EQ(saved(), bytes) << "left in place until the next save";
    }
    ContactLog contacts(defaults, data(), noonClock);
    contacts.noteContact(7, 1, noon);
    EXPECT_EQ(std::ranges::count(saved(), '{'), 1);
}

TEST_F(ContactsTest, ANumberOutOfRangeCostsItsRecord) {
    write(R"([{"courseID":7,"studentID":1,"contactedAt":1e999},
              {"courseID":7,"studentID":2,"contactedAt":1e300},
              {"courseID":7,"studentID":3,"contactedAt":300000000000},
              {"courseID":18446744073709551615,"studentID":4,"contactedAt":810216000},
              {"courseID":7,"studentID":1e999,"contactedAt":810216000},
              {"courseID":7,"studentID":5,"contactedAt":810216000,"ofALaterVersion":1}])");
    const ContactLog contacts(defaults, data(), noonClock);
    EXPECT_THAT(contacts.records(), ElementsAre(ContactRecord{7, 5, at("2026-09-04T12:00:00Z")}));
    EXPECT_THAT(test::LogCapture::lines(), testing::IsEmpty());
}

TEST_F(ContactsTest, OfTwoRecordsOfAStudentTheLaterCounts) {
    write(R"([{"courseID":7,"studentID":1,"contactedAt":810216000},
              {"courseID":7,"studentID":2,"contactedAt":810216000},
              {"courseID":7,"studentID":1,"contactedAt":810129600},
              {"courseID":8,"studentID":1,"contactedAt":810043200},
              {"courseID":7,"studentID":2,"contactedAt":810216001}])");
    const ContactLog contacts(defaults, data(), noonClock);
    EXPECT_THAT(
        contacts.records(),
        ElementsAre(
            ContactRecord{7, 1, at("2026-09-04T12:00:00Z")},
            ContactRecord{7, 2, at("2026-09-04T12:00:01Z")},
            ContactRecord{8, 1, at("2026-09-02T12:00:00Z")}));
}

TEST_F(ContactsTest, AnUnsavedContactDoesNotReplaceALaterOne) {
    ContactLog window(defaults, data(), noonClock);
    folder.write("data", "in the way");
    window.noteContacts(7, {1, 2}, noon);
    EXPECT_FALSE(window.isSaved());
    std::filesystem::remove(data());
    ContactLog commandLine(defaults, data(), noonClock);
    commandLine.noteContact(7, 1, noon + seconds(60));
    commandLine.noteContact(7, 2, noon - seconds(60));
    window.saveUnsaved();
    EXPECT_TRUE(window.isSaved());
    EXPECT_EQ(window.lastContact(7, 1)->contactedAt, noon + seconds(60));
    EXPECT_EQ(window.lastContact(7, 2)->contactedAt, noon);
    EXPECT_EQ(ContactLog(defaults, data(), noonClock).records(), window.records());
}

TEST_F(ContactsTest, EachChangeIsSignalledOnceAndLogged) {
    ContactLog contacts(defaults, data(), noonClock);
    int signalled = 0;
    QObject::connect(&contacts, &ContactLog::contactsDidChange, &contacts, [&] { ++signalled; });
    ContactChange removed;
    struct Row {
        const char *what;
        std::function<void()> change;
        int signalled;
        std::size_t records;
    };
    for (const Row &each : std::vector<Row>{
             {"a student twice",
              [&] {
                  contacts.noteContacts(7, {1, 1, 2}, noon);
              },
              1, 2},
             {"nobody", [&] { contacts.noteContacts(7, {}, noon); }, 0, 2},
             {"removed",
              [&] {
                  removed = contacts.removeContacts({{7, 1}});
              },
              1, 1},
             {"not recorded",
              [&] {
                  contacts.removeContacts({{9, 9}});
              },
              0, 1},
             {"restored", [&] { contacts.undo(removed); }, 1, 2},
             {"nothing to save", [&] { contacts.saveUnsaved(); }, 0, 2},
             {"another setting", [&] { defaults.set(preferences::textScale, 1.5); }, 0, 2},
             {"switched on", [&] { defaults.set(preferences::rememberContacts, true); }, 1, 2},
             {"deleted", [&] { contacts.deleteAll(); }, 1, 0}}) {
        signalled = 0;
        each.change();
        EXPECT_EQ(signalled, each.signalled) << each.what;
        EXPECT_EQ(contacts.records().size(), each.records) << each.what;
    }
    EXPECT_THAT(
        test::LogCapture::lines(),
        testing::IsSupersetOf(
            {"contacts: Removed contacts", "contacts: Restored contacts",
             "contacts: Deleted the contact log"}));
}

TEST_F(ContactsTest, CopiesGoWithTheRecords) {
    for (const bool isDeleted : {false, true}) {
        write("[]");
        const auto copy = folder.write("data/ContactLog.unreadable-1790251200.json", "old");
        ContactLog contacts(defaults, data(), noonClock);
        const auto unfinished = folder.write("data/.ContactLog.json.new-abc123", "killed");
        if (isDeleted)
            contacts.deleteAll();
        else
            ContactLog(defaults, data(), noonClock);
        EXPECT_EQ(std::filesystem::exists(copy), !isDeleted);
        EXPECT_FALSE(std::filesystem::exists(unfinished)) << isDeleted;
    }
}

TEST_F(ContactsTest, ChangesOfAnotherProcessAreTakenOver) {
    ContactLog window(defaults, data(), noonClock);
    window.noteContact(7, 1, noon);
    write("[broken");
    window.noteContact(7, 2, noon);
    EXPECT_EQ(window.records().size(), 2U) << "a damaged file empties nothing";
    EXPECT_EQ(ContactLog(defaults, data(), noonClock).records(), window.records());
    ContactLog(defaults, data(), noonClock).deleteAll();
    window.noteContact(7, 3, noon);
    EXPECT_THAT(window.records(), ElementsAre(ContactRecord{7, 3, noon})) << "none comes back";
    ContactLog(defaults, data(), noonClock).noteContact(7, 4, noon);
    EXPECT_EQ(window.deleteAll().entries.size(), 2U);
}

TEST_F(ContactsTest, SwitchingOffDeletesRecordsAndStopsRecording) {
    ContactLog window(defaults, data(), noonClock);
    window.noteContact(7, 1, noon);
    defaults.set(preferences::rememberContacts, false);
    EXPECT_TRUE(window.records().empty());
    EXPECT_FALSE(std::filesystem::exists(data() / "ContactLog.json"));
    window.noteContact(7, 1, noon);
    EXPECT_EQ(contactsStatus(window), "Nothing recorded.");

    // Switched off for one run, in which nothing is read, and by another process.
    defaults.set(preferences::rememberContacts, true);
    window.noteContact(7, 1, noon);
    const auto file = folder.path() / "Preferences.json";
    UserDefaults forOneRun(file, {{"RememberContacts", false}});
    EXPECT_TRUE(ContactLog(forOneRun, data(), noonClock).records().empty());
    UserDefaults(file, {}).set(preferences::rememberContacts, false);
    EXPECT_TRUE(std::filesystem::exists(data() / "ContactLog.json"));
    defaults.reloadIfChanged();
    EXPECT_FALSE(std::filesystem::exists(data() / "ContactLog.json"));
}

TEST_F(ContactsTest, ChangesAreUndoneExactly) {
    ContactLog contacts(defaults, data(), noonClock);
    using Change = std::function<ContactChange(ContactLog &)>;
    const Change mark = [](ContactLog &log) { return log.noteContacts(7, {1, 4, 3}, noon); };
    const Change markTwice = [](ContactLog &log) {
        ContactChange change = log.noteContacts(7, {4, 1}, noon);
        change.append(log.noteContacts(7, {4, 3}, noon + seconds(1)));
        return change;
    };
    const Change remove = [](ContactLog &log) {
        return log.removeContacts({{7, 3}, {7, 2}, {9, 9}});
    };
    const Change deleteAll = [](ContactLog &log) { return log.deleteAll(); };
    const Change nothing = [](ContactLog &) { return ContactChange(); };
    const Change noteLater = [](ContactLog &log) { return log.noteContact(7, 3, noon + days(1)); };
    struct Row {
        const char *why;
        Change change;
        /// What another process does meanwhile.
        Change since;
        /// How many students' records have changed since.
        std::size_t left;
    };
    for (const Row &each : std::vector<Row>{
             {"marks", mark, nothing, 0},
             {"marks, one newer", mark, noteLater, 1},
             {"marks in two steps", markTwice, nothing, 0},
             {"marks in two steps, one newer", markTwice, noteLater, 1},
             {"removed", remove, nothing, 0},
             {"removed, one newer", remove, noteLater, 1},
             {"deleted", deleteAll, nothing, 0},
             {"deleted, one newer", deleteAll, noteLater, 1}}) {
        contacts.deleteAll();
        contacts.noteContacts(7, {3, 1, 2}, noon - days(9));
        contacts.noteContact(8, 1, noon - days(8));
        std::vector<ContactRecord> expected = contacts.records();
        const ContactChange change = each.change(contacts);
        ContactLog elsewhere(defaults, data(), noonClock);
        if (!each.since(elsewhere).entries.empty())
            expected[0].contactedAt = noon + days(1);
        EXPECT_EQ(contacts.undo(change), each.left) << each.why;
        if (each.left == 0) {
            EXPECT_EQ(contacts.records(), expected) << each.why;
        }
        EXPECT_THAT(contacts.records(), testing::UnorderedElementsAreArray(expected)) << each.why;
        EXPECT_EQ(ContactLog(defaults, data(), noonClock).records(), contacts.records());
    }
    EXPECT_EQ(contactsContents(contacts), "4 contacts in 2 courses");
    EXPECT_THAT(
        test::LogCapture::lines(), testing::Each(testing::Not(testing::HasSubstr("student"))));

    const ContactChange removed = contacts.removeContacts({{8, 1}});
    defaults.set(preferences::rememberContacts, false);
    EXPECT_EQ(contacts.undo(removed), 1U);
    EXPECT_EQ(contactsContents(contacts), "");
}

struct OutreachTest : ContactsTest {
    RosterHistory history{defaults, std::nullopt, noonClock};
    ContactLog contacts{defaults, std::nullopt, noonClock};
};

TEST_F(OutreachTest, OutcomesCompareTheLevelsThenAndNow) {
    struct Row {
        std::int64_t daysAgo;
        /// Empty when the history has no entry of the student.
        std::string then;
        std::string now;
        std::string text;
        bool awaiting;
        std::string word;
    };
    for (const Row &each : std::vector<Row>{
             {0, "Watch", "Watch", "Wrote today — still Watch", false, "no change"},
             {1, "Watch", "Concern", "Wrote yesterday — slipped to Concern since", false, "worse"},
             {6, "Concern", "Concern", "Wrote 6 days ago — still Concern", false, "no change"},
             {7, "Concern", "Concern", "Wrote 7 days ago — still Concern", true, "no change"},
             {9, "At Risk", "Watch", "Wrote 9 days ago — improved to Watch since", false,
              "improved"},
             {10, "Watch", "At Risk", "Wrote 10 days ago — slipped to At Risk since", true,
              "worse"},
             {10, "OK", "Watch", "Wrote 10 days ago — slipped to Watch since", true, "worse"},
             {10, "At Risk", "OK", "Wrote 10 days ago — no longer flagged since", false,
              "improved"},
             {10, "OK", "OK", "Wrote 10 days ago — not flagged", false, "no change"},
             {10, "", "Watch", "Wrote 10 days ago — still Watch", true, "no change"},
             {10, "Purple", "Watch", "Wrote 10 days ago — still Watch", true, "no change"},
             {10, "", "OK", "Wrote 10 days ago — not flagged", false, "no change"}}) {
        const Date contactedAt = noon - days(each.daysAgo);
        history.fill({});
        if (!each.then.empty())
            history.fill({entry(7, 1, contactedAt, each.then)});
        const auto since = outcome({7, 1, contactedAt}, row(1, each.now), history, noon);
        EXPECT_EQ(outreachText(since), each.text);
        EXPECT_EQ(isAwaitingFollowUp(since), each.awaiting) << each.text;
        EXPECT_EQ(outcomeWord(since), each.word) << each.text;
    }
    history.fill({entry(7, 1, noon + days(1), "At Risk")});
    EXPECT_FALSE(
        outcome({7, 1, noon - days(8)}, row(1, "Watch"), history, noon).levelThen.isKnown())
        << "an entry later than today";
    for (const auto &[recorded, isKnown] :
         {std::pair{noon + seconds(3600), true}, std::pair{at("2026-09-25T05:00:00Z"), false}}) {
        history.fill({entry(7, 1, recorded, "At Risk")});
        const auto levelThen =
            outcome({7, 1, noon - days(8)}, row(1, "Watch"), history, noon).levelThen;
        EXPECT_EQ(levelThen.isKnown(), isKnown) << "today ends at midnight";
    }
    const auto future = outcome({7, 1, noon + days(2)}, row(1, "OK"), history, noon);
    EXPECT_EQ(future.daysSince, 0) << "a clock that was set back";
}

TEST_F(OutreachTest, TheLevelThenIsTheLastBeforeOrTheFirstAfter) {
    const Date written = noon - days(8);
    const auto then = [&](std::vector<RosterSnapshot> entries) {
        history.fill(std::move(entries));
        return outcome({7, 1, written}, row(1, "Watch"), history, noon).levelThen;
    };
    EXPECT_EQ(
        then(
            {entry(7, 1, written - days(1), "Concern"), entry(7, 1, written - days(2), "OK"),
             entry(7, 1, written + seconds(1), "At Risk")}),
        RecordedLevel(RiskLevel::concern));
    EXPECT_EQ(
        then({entry(7, 1, written + days(2), "OK"), entry(7, 1, written + days(1), "At Risk")}),
        RecordedLevel(RiskLevel::atRisk));
    EXPECT_EQ(
        then({entry(7, 1, written - days(1), "OK"), entry(7, 1, written, "Concern")}),
        RecordedLevel(RiskLevel::concern));
    EXPECT_EQ(
        then({entry(7, 1, written + days(1), "At Risk"), entry(7, 1, written + days(2), "OK")}),
        RecordedLevel(RiskLevel::atRisk));
    for (const Date either : {written - days(1), written + days(1)}) {
        EXPECT_EQ(
            then({entry(7, 1, either, "Concern"), entry(7, 1, either, "OK")}),
            RecordedLevel(RiskLevel::concern))
            << "the first of equal instants in a visit";
        EXPECT_EQ(
            then(
                {entry(7, 1, either, "Concern"), entry(8, 1, either, "OK"),
                 entry(7, 1, either, "OK")}),
            RecordedLevel(RiskLevel::concern))
            << "the first of visits at the same time";
    }
    EXPECT_EQ(then({entry(7, 2, written, "OK"), entry(8, 1, written, "OK")}), RecordedLevel());
}

TEST_F(OutreachTest, CountsTheFlaggedStudents) {
    const std::vector<RiskRow> rows{
        row(1, "At Risk"), row(2, "Watch"), row(3, "Watch"), row(4, "OK")};
    contacts.fill({{7, 1, noon - days(8)}, {7, 2, noon - days(1)}, {7, 4, noon - days(9)}});
    const OutreachCounts counts = outreachCounts(rows, contacts, history, noon);
    EXPECT_EQ(counts, (OutreachCounts{.flagged = 3, .contacted = 2, .awaitingFollowUp = 1}));
    EXPECT_EQ(outreachLine(counts, true), "2 contacted · 1 awaiting follow-up · 1 not yet reached");
    EXPECT_EQ(outreachLine({}, true), "No students flagged — nothing to reach out about.");
    EXPECT_EQ(outreachLine(counts, false), "Contact marks are turned off in Settings.");
}

struct TrendSyncTest : ContactsTest {
    std::filesystem::path cloud = folder.path() / "cloud";
    test::DirectQueue queue;
    SyncedFolder here{cloud, queue, {}};
    TrendSync trends{defaults};

    TrendSyncTest() {
        folderContents::create(cloud);
        defaults.set(preferences::syncSettings, true);
        trends.setStore(&here);
        trends.start();
    }
};

TEST_F(TrendSyncTest, SharesTwoWeeksOfCounts) {
    for (const char *day : {"2024-09-05", "2024-09-06", "2024-09-19"})
        trends.publish(4512, 3, at(std::string(day) + "T12:00:00Z"));
    trends.publish(4512, 4, at("2024-09-20T12:00:00Z"));
    trends.publish(4512, 5, at("2024-09-20T20:00:00Z"));
    EXPECT_EQ(
        here.object("Trend.4512"),
        PreferenceValue(std::string(R"({"2024-09-06":3,"2024-09-19":3,"2024-09-20":5})")));
    EXPECT_THAT(
        trends.remoteCounts(4512, at("2024-09-20T12:00:00Z")),
        ElementsAre(Pair("2024-09-06", 3), Pair("2024-09-19", 3)));
    for (const char *broken : {"x", "[]", R"({"2024-09-20":"many"})"}) {
        here.set("Trend.1", std::string(broken));
        EXPECT_TRUE(trends.remoteCounts(1, noon).empty()) << broken;
    }
    trends.publish(1, 2, noon);
    EXPECT_EQ(here.object("Trend.1"), PreferenceValue(std::string(R"({"2026-09-24":2})")));
}

TEST_F(TrendSyncTest, DoesNothingWhileSwitchedOffOrInTheSampleCollege) {
    trends.publish(1, 2, noon);
    for (const auto &[key, value] :
         {std::pair{preferences::syncSettings, false}, std::pair{preferences::sampleData, true}}) {
        defaults.set(key, value);
        trends.publish(1, 3, noon + days(1));
        EXPECT_TRUE(trends.remoteCounts(1, noon + days(3)).empty());
        defaults.remove(key.name);
        defaults.set(preferences::syncSettings, true);
    }
    here.synchronize();
    EXPECT_THAT(trends.remoteCounts(1, noon + days(3)), ElementsAre(Pair("2026-09-24", 2)));
}

TEST_F(TrendSyncTest, SignalsOtherMachinesCounts) {
    int signalled = 0;
    QObject::connect(&trends, &TrendSync::trendCountsDidSync, &trends, [&] { ++signalled; });
    trends.start();
    EXPECT_EQ(std::ranges::count(test::LogCapture::lines(), "trendsync: Trend sync started"), 1);
    trends.publish(3, 1, noon);
    here.synchronize();
    EXPECT_EQ(signalled, 0) << "its own counts";
    SyncedFolder there{cloud, queue, {}};
    there.synchronize();
    there.set("TrendX.1", std::string("{}"));
    here.synchronize();
    EXPECT_EQ(signalled, 0);
    // A later count of the same day is not replaced by the one that was published.
    const PreferenceValue later = std::string(R"({"2026-09-24":4})");
    there.update({{"Trend.12", "{}"}, {"Trend.3", later}});
    here.synchronize();
    EXPECT_EQ(signalled, 1);
    EXPECT_EQ(here.object("Trend.3"), later);
    trends.setStore(nullptr);
    there.update({{"Trend.12", "{ }"}});
    here.synchronize();
    EXPECT_EQ(signalled, 1);
}

TEST_F(TrendSyncTest, GivesUpInAFullStore) {
    here.set("A", std::string(folderContents::maxBytes - 40, 'x'));
    trends.publish(1, 2, noon);
    EXPECT_EQ(here.object("Trend.1"), std::nullopt);
}

TEST_F(TrendSyncTest, PublishesOnceTheFolderIsThereAndKeepsWhatOthersWrote) {
    const auto away = folder.path() / "unmounted";
    std::filesystem::rename(cloud, away);
    trends.publish(1, 2, noon);
    trends.publish(1, 3, noon + days(1));
    EXPECT_FALSE(std::filesystem::exists(cloud)) << "a folder that is away is not created";
    SyncedFolder there{away, queue, {}};
    there.synchronize();
    there.set("Trend.1", std::string(R"({"2026-09-23":7})"));
    std::filesystem::rename(away, cloud);
    here.synchronize();
    EXPECT_EQ(
        here.object("Trend.1"),
        PreferenceValue(std::string(R"({"2026-09-23":7,"2026-09-24":2,"2026-09-25":3})")));
}

} // namespace
} // namespace ellwynd
