#include "historytest.h"
#include "memory/outreach.h"
#include "memory/trendsync.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"

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

struct ContactsTest : test::StoreTest {
    ContactsTest() : StoreTest("ContactLog.json") {}

    [[nodiscard]] ContactLog open() { return {defaults, data, noonClock}; }
};

TEST_F(ContactsTest, KeepsOneRecordPerStudentAndCourse) {
    ContactLog contacts = open();
    contacts.noteContact(7, 1, at("2026-09-01T12:00:00Z"));
    contacts.noteContacts(7, {5, 3}, at("2026-09-02T12:00:00Z"));
    contacts.noteContact(8, 1, at("2026-09-03T12:00:00Z"));
    const std::uint64_t ofSeven = contacts.revision(7);
    const std::uint64_t ofEight = contacts.revision(8);
    contacts.noteContact(7, 1, at("2026-09-04T12:00:00.25Z"));
    EXPECT_NE(contacts.revision(7), ofSeven);
    EXPECT_EQ(contacts.revision(8), ofEight);
    EXPECT_EQ(
        saved(),
        R"([{"courseID":7,"studentID":1,"contactedAt":810216000.25},)"
        R"({"courseID":7,"studentID":5,"contactedAt":810043200.0},)"
        R"({"courseID":7,"studentID":3,"contactedAt":810043200.0},)"
        R"({"courseID":8,"studentID":1,"contactedAt":810129600.0}])");
    EXPECT_EQ(contactsStatus(contacts), "4 students recorded.");
    EXPECT_EQ(
        std::ranges::count(test::LogCapture::lines(), "contacts: Noted a contact in course 7"), 4);
    const ContactLog reopened = open();
    EXPECT_EQ(reopened.records(), contacts.records());
    for (const ContactRecord &record : contacts.records())
        EXPECT_EQ(reopened.lastContact(record.courseID, record.studentID), record);
    for (const auto &[course, student] : {std::pair{7, 4}, {9, 1}})
        EXPECT_EQ(reopened.lastContact(course, student), std::nullopt);
}

TEST_F(ContactsTest, DropsOldContactsAndIgnoresUnreadableFiles) {
    // The oldest contact that is kept, with one that is a second older or of the sample college.
    for (const char *dropped :
         {R"({"courseID":2,"studentID":1,"contactedAt":780407999})",
          R"({"courseID":900000,"studentID":1,"contactedAt":810216000})"}) {
        write(
            R"([{"courseID":1,"studentID":1,"contactedAt":780408000},)" + std::string(dropped) +
            "]");
        EXPECT_THAT(open().records(), ElementsAre(ContactRecord{1, 1, noon - days(365)}));
        EXPECT_EQ(std::ranges::count(saved(), '{'), 1) << "saved at once";
    }

    for (const auto &[bytes, problem] : std::vector<std::pair<const char *, const char *>>{
             {"", "The file is empty."},
             {R"([{"courseID":1,"studentID":1,"contactedAt":"2026"}])",
              "Entry 0: contactedAt has another type."}}) {
        write(bytes);
        test::LogCapture::lines().clear();
        EXPECT_TRUE(open().records().empty()) << bytes;
        EXPECT_THAT(
            test::LogCapture::lines(),
            ElementsAre(std::string("contacts: Couldn't read the contact log: ") + problem));
        EXPECT_EQ(saved(), bytes) << "left in place until the next save";
    }
    std::filesystem::resize_file(file, (std::uintmax_t{64} << 20) + 1);
    EXPECT_TRUE(open().records().empty());
    EXPECT_THAT(
        test::LogCapture::lines(), testing::Contains(testing::HasSubstr("larger than 64 MiB")));
    open().noteContact(7, 1, noon);
    EXPECT_EQ(std::ranges::count(saved(), '{'), 1);
}

TEST_F(ContactsTest, ANumberOutOfRangeCostsItsRecord) {
    const std::string text = R"([{"courseID":7,"studentID":1,"contactedAt":1e999},
              {"courseID":7,"studentID":3,"contactedAt":300000000000},
              {"courseID":18446744073709551615,"studentID":4,"contactedAt":810216000},
              {"courseID":7,"studentID":1e999,"contactedAt":810216000},
              {"courseID":7,"studentID":5,"contactedAt":810216000,"ofALaterVersion":1}])";
    write(text);
    EXPECT_THAT(open().records(), ElementsAre(ContactRecord{7, 5, at("2026-09-04T12:00:00Z")}));
    EXPECT_EQ(saved(), text) << "left in place until the next save";
    EXPECT_THAT(test::LogCapture::lines(), testing::IsEmpty());
}

TEST_F(ContactsTest, OfTwoRecordsOfAStudentTheLaterCounts) {
    write(R"([{"courseID":7,"studentID":1,"contactedAt":810216000},
              {"courseID":7,"studentID":2,"contactedAt":810216000},
              {"courseID":7,"studentID":1,"contactedAt":810129600},
              {"courseID":8,"studentID":1,"contactedAt":810043200},
              {"courseID":7,"studentID":2,"contactedAt":810216001}])");
    const Date first = at("2026-09-04T12:00:00Z");
    EXPECT_THAT(
        open().records(),
        ElementsAre(
            ContactRecord{7, 1, first}, ContactRecord{7, 2, first + seconds(1)},
            ContactRecord{8, 1, first - days(2)}));
}

TEST_F(ContactsTest, AnUnsavedContactDoesNotReplaceALaterOne) {
    ContactLog window = open();
    folder.write("data", "in the way");
    window.noteContacts(7, {1, 2}, noon);
    EXPECT_FALSE(window.isSaved());
    std::filesystem::remove(data);
    open().noteContact(7, 1, noon + seconds(60));
    open().noteContact(7, 2, noon - seconds(60));
    window.saveUnsaved();
    EXPECT_TRUE(window.isSaved());
    EXPECT_THAT(
        window.records(),
        ElementsAre(ContactRecord{7, 1, noon + seconds(60)}, ContactRecord{7, 2, noon}));
    EXPECT_EQ(open().records(), window.records());
}

TEST_F(ContactsTest, EachChangeIsSignalledOnceAndLogged) {
    ContactLog contacts = open();
    int signalled = 0;
    QObject::connect(&contacts, &ContactLog::contactsDidChange, &contacts, [&] { ++signalled; });
    const auto expect = [&](const char *what, int times, std::size_t records) {
        EXPECT_EQ(std::exchange(signalled, 0), times) << what;
        EXPECT_EQ(contacts.records().size(), records) << what;
    };
    contacts.noteContacts(7, {1, 1, 2}, noon);
    expect("a student twice", 1, 2);
    contacts.noteContacts(7, {}, noon);
    expect("nobody", 0, 2);
    const ContactChange removed = contacts.removeContacts({{7, 1}});
    expect("removed", 1, 1);
    contacts.removeContacts({{9, 9}});
    expect("not recorded", 0, 1);
    contacts.undo(removed);
    expect("restored", 1, 2);
    contacts.undo(removed);
    expect("restored before", 0, 2);
    contacts.saveUnsaved();
    expect("nothing to save", 0, 2);
    defaults.set(preferences::textScale, 1.5);
    expect("another setting", 0, 2);
    defaults.set(preferences::rememberContacts, true);
    expect("switched on", 1, 2);
    contacts.deleteAll();
    expect("deleted", 1, 0);
    EXPECT_THAT(
        test::LogCapture::lines(),
        testing::IsSupersetOf(
            {"contacts: Removed contacts", "contacts: Restored contacts",
             "contacts: Deleted the contact log"}));
}

TEST_F(ContactsTest, ChangesOfAnotherProcessAreTakenOver) {
    ContactLog window = open();
    window.noteContact(7, 1, noon);
    write("[broken");
    window.noteContact(7, 2, noon);
    EXPECT_EQ(window.records().size(), 2U) << "a damaged file empties nothing";
    open().deleteAll();
    window.noteContact(7, 3, noon);
    EXPECT_THAT(window.records(), ElementsAre(ContactRecord{7, 3, noon})) << "none comes back";
    open().noteContact(7, 4, noon);
    EXPECT_EQ(window.deleteAll().entries.size(), 2U);
}

TEST_F(ContactsTest, SwitchingOffDeletesRecordsAndStopsRecording) {
    ContactLog window = open();
    window.noteContact(7, 1, noon);
    // For one run, in which nothing is read.
    UserDefaults forOneRun(folder.path() / "Preferences.json", {{"RememberContacts", false}});
    EXPECT_TRUE(ContactLog(forOneRun, data, noonClock).records().empty());
    EXPECT_TRUE(std::filesystem::exists(file));
    defaults.set(preferences::rememberContacts, false);
    EXPECT_TRUE(window.records().empty());
    EXPECT_FALSE(std::filesystem::exists(file));
    window.noteContact(7, 1, noon);
    EXPECT_EQ(contactsStatus(window), "Nothing recorded.");
}

TEST_F(ContactsTest, ChangesAreUndoneExactly) {
    ContactLog contacts = open();
    const std::vector<std::pair<const char *, std::function<ContactChange()>>> changes{
        {"marks",
         [&] {
             return contacts.noteContacts(7, {1, 4, 3}, noon);
         }},
        {"marks in two steps",
         [&] {
             ContactChange change = contacts.noteContacts(7, {4, 1}, noon);
             change.append(contacts.noteContacts(7, {4, 3}, noon + seconds(1)));
             return change;
         }},
        {"removed",
         [&] {
             return contacts.removeContacts({{7, 3}, {7, 2}, {9, 9}});
         }},
        {"deleted", [&] { return contacts.deleteAll(); }}};
    for (const auto &[what, change] : changes) {
        for (const bool isOneNewer : {false, true}) {
            contacts.deleteAll();
            contacts.noteContacts(7, {3, 1, 2}, noon - days(9));
            contacts.noteContact(8, 1, noon - days(8));
            std::vector<ContactRecord> expected = contacts.records();
            const ContactChange made = change();
            if (isOneNewer) {
                // By another process.
                expected[0].contactedAt = noon + days(1);
                open().noteContact(7, 3, noon + days(1));
            }
            EXPECT_EQ(contacts.undo(made), isOneNewer ? 1U : 0U) << what;
            EXPECT_THAT(contacts.records(), testing::UnorderedElementsAreArray(expected)) << what;
            EXPECT_TRUE(isOneNewer || contacts.records() == expected) << what;
            EXPECT_EQ(open().records(), contacts.records());
        }
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
    // The level then is empty when the history has no entry of the student.
    for (const auto &[daysAgo, then, now, text, isAwaiting, word] : std::vector<
             std::tuple<std::int64_t, std::string, std::string, std::string, bool, std::string>>{
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
        const Date contactedAt = noon - days(daysAgo);
        history.fill({entry(7, then.empty() ? 2 : 1, contactedAt, then)});
        const auto since = outcome({7, 1, contactedAt}, row(1, now), history, noon);
        EXPECT_EQ(outreachText(since), text);
        EXPECT_EQ(isAwaitingFollowUp(since), isAwaiting) << text;
        EXPECT_EQ(outcomeWord(since), word) << text;
    }
    const auto future = outcome({7, 1, noon + days(2)}, row(1, "OK"), history, noon);
    EXPECT_EQ(future.daysSince, 0) << "a clock that was set back";
}

TEST_F(OutreachTest, TheLevelThenIsTheLastBeforeOrTheFirstAfter) {
    const Date written = noon - days(8);
    const Date before = written - days(1);
    const Date after = written + days(1);
    const Date midnight = at("2026-09-25T05:00:00Z");
    for (const auto &[entries, then] :
         std::vector<std::pair<std::vector<RosterSnapshot>, std::string>>{
             {{entry(7, 1, before, "Concern"), entry(7, 1, before - days(1), "OK"),
               entry(7, 1, written + seconds(1), "At Risk")},
              "Concern"},
             {{entry(7, 1, after + days(1), "OK"), entry(7, 1, after, "At Risk")}, "At Risk"},
             {{entry(7, 1, before, "OK"), entry(7, 1, written, "Concern")}, "Concern"},
             {{entry(7, 1, after, "At Risk"), entry(7, 1, after + days(1), "OK")}, "At Risk"},
             // The first of equal instants in a visit, and of visits at the same time.
             {{entry(7, 1, before, "Concern"), entry(7, 1, before, "OK")}, "Concern"},
             {{entry(7, 1, after, "Concern"), entry(7, 1, after, "OK")}, "Concern"},
             {{entry(7, 1, before, "Concern"), entry(8, 1, before, "OK"),
               entry(7, 1, before, "OK")},
              "Concern"},
             {{entry(7, 1, after, "Concern"), entry(8, 1, after, "OK"), entry(7, 1, after, "OK")},
              "Concern"},
             {{entry(7, 2, written, "OK"), entry(8, 1, written, "OK")}, "unknown"},
             {{entry(7, 1, midnight - seconds(1), "At Risk")}, "At Risk"},
             // Later than today.
             {{entry(7, 1, midnight, "At Risk")}, "unknown"}}) {
        history.fill(entries);
        const auto level = outcome({7, 1, written}, row(1, "Watch"), history, noon).levelThen;
        EXPECT_EQ(level.isKnown() ? levelName(level.level()) : "unknown", then)
            << test::historyText(entries);
    }
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
    for (const char *broken : {"x", "[]", R"({"2024-09-19":1,"2024-09-20":"many"})"}) {
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
    SyncedFolder second{cloud, queue, {}};
    trends.setStore(&second);
    trends.start();
    second.synchronize();
    EXPECT_EQ(signalled, 2);
    trends.setStore(nullptr);
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
