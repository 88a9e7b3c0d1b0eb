#include "app/sync/settingssync.h"
#include "base/log.h"
#include "platform/cloud/syncedfolder.h"
#include "support/temporaryfolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using Reason = CloudChange::Reason;

TEST(SyncedFolder, NamesItsFilesAndIgnoresConflictCopies) {
    for (const char *key : {"TextScale", "Course.4021.PassingScore", "Trend.12", "ünï %/..", "a b"})
        EXPECT_EQ(SyncedFolder::keyOf(SyncedFolder::fileName(key)), key);
    EXPECT_EQ(SyncedFolder::fileName("../x"), "..%2Fx.json");
    for (const char *name :
         {"TextScale (conflicted copy 2026-09-24).json", "TextScale.sync-conflict-20260924-A.json",
          "TextScale.json~", ".TextScale.json.tmp", ".json", "TextScale", "Text%2.json",
          "%41.json"})
        EXPECT_EQ(SyncedFolder::keyOf(name), std::nullopt) << name;
}

struct Machine {
    test::TemporaryFolder home;
    UserDefaults defaults;
    SyncedFolder store;
    SettingsSync sync;
    std::vector<CloudChange> changes;
    std::shared_ptr<void> observing;

    Machine(const test::TemporaryFolder &shared, PreferenceMap arguments = {})
        : defaults(home.path() / "Preferences.json", std::move(arguments)),
          store(shared.path() / "Ellwynd", home.path() / "Seen.json"),
          sync(defaults, store, std::chrono::milliseconds(1)),
          observing(
              store.observe([this](const CloudChange &change) { changes.push_back(change); })) {
        defaults.set(preferences::syncSettings, true);
    }
};

TEST(SyncedFolder, ReportsChangesOfOthersOnce) {
    const test::TemporaryFolder shared;
    Machine first(shared);
    first.store.set("TextScale", 1.5);
    first.store.set("Course.7.InactivityDays", std::int64_t{9});
    first.store.set("SidebarExpandedTerms", IDList{1, 2});
    first.store.synchronize();
    EXPECT_TRUE(first.changes.empty()) << "its own changes are not reported";

    Machine second(shared);
    second.store.synchronize();
    ASSERT_EQ(second.changes.size(), 1U);
    EXPECT_EQ(second.changes[0].reason, Reason::initialSync);
    EXPECT_EQ(second.changes[0].keys.size(), 3U);
    EXPECT_EQ(second.store.all(), first.store.all());
    EXPECT_EQ(second.store.object("TextScale"), PreferenceValue(1.5));
    second.store.synchronize();
    EXPECT_EQ(second.changes.size(), 1U);

    first.store.remove("TextScale");
    first.store.set("Course.7.InactivityDays", std::int64_t{10});
    // A later start of the second machine reports only the changes since.
    SyncedFolder again(shared.path() / "Ellwynd", second.home.path() / "Seen.json");
    std::vector<CloudChange> later;
    const auto observing =
        again.observe([&](const CloudChange &change) { later.push_back(change); });
    again.synchronize();
    EXPECT_THAT(
        later,
        ElementsAre(CloudChange{Reason::serverChange, {"Course.7.InactivityDays", "TextScale"}}));
}

TEST(SyncedFolder, EnforcesItsLimitsAndIgnoresInvalidFiles) {
    const test::TemporaryFolder shared;
    Machine machine(shared);
    machine.store.set("Large", std::string(SyncedFolder::maxBytes, 'x'));
    EXPECT_EQ(machine.store.object("Large"), std::nullopt);
    EXPECT_THAT(machine.changes, ElementsAre(CloudChange{Reason::quotaViolation, {"Large"}}));
    machine.store.set("Small", true);
    for (const char *junk : {"", "{", "[]", "{\"value\": {}}", "{\"value\": [\"a\"]}"}) {
        std::ofstream(shared.path() / "Ellwynd" / "Junk.json") << junk;
        EXPECT_EQ(machine.store.object("Junk"), std::nullopt) << junk;
    }
    EXPECT_EQ(machine.store.all(), (PreferenceMap{{"Small", true}}));
    // A folder that is temporarily missing is not reported as a removal of its keys.
    machine.store.synchronize();
    machine.changes.clear();
    std::filesystem::rename(shared.path() / "Ellwynd", shared.path() / "Unmounted");
    machine.store.synchronize();
    std::filesystem::rename(shared.path() / "Unmounted", shared.path() / "Ellwynd");
    machine.store.synchronize();
    EXPECT_TRUE(machine.changes.empty());
}

TEST(SettingsSync, TwoMachinesShareTheirSettings) {
    const test::TemporaryFolder shared;
    Machine desk(shared);
    Machine home(shared);
    desk.sync.start();
    home.sync.start();
    desk.defaults.set(preferences::textScale, 1.5);
    desk.defaults.set("Course.7.PassingScore", 60.0);
    desk.defaults.set(preferences::accentTheme, std::string("teal"));
    desk.sync.push();
    int told = 0;
    QObject::connect(
        &home.sync, &SettingsSync::settingsDidSyncExternally, &home.sync, [&] { ++told; });
    home.store.synchronize();
    EXPECT_EQ(told, 1);
    EXPECT_EQ(home.defaults.value(preferences::textScale), 1.5);
    EXPECT_EQ(home.defaults.object("Course.7.PassingScore"), PreferenceValue(60.0));
    EXPECT_EQ(home.defaults.value(preferences::accentTheme), "system") << "not a synced setting";
    EXPECT_EQ(home.store.all().size(), 2U);

    // "Use Defaults" on one machine applies to both; the other does not restore the value.
    home.defaults.remove("Course.7.PassingScore");
    home.sync.push();
    desk.store.synchronize();
    EXPECT_EQ(desk.defaults.object("Course.7.PassingScore"), std::nullopt);
    desk.sync.push();
    EXPECT_EQ(desk.store.object("Course.7.PassingScore"), std::nullopt);

    // A machine does not remove keys that it never had.
    desk.store.set("Course.8.InactivityDays", std::int64_t{3});
    home.defaults.set(preferences::sidebarTermLimit, std::int64_t{4});
    home.sync.push();
    EXPECT_TRUE(desk.store.object("Course.8.InactivityDays"));

    home.sync.removeSyncedSettings();
    EXPECT_TRUE(home.store.all().empty());
    EXPECT_EQ(home.defaults.value(preferences::sidebarTermLimit), 4);
}

TEST(SettingsSync, ABlankAddressDoesNotDisconnectAMachine) {
    const test::TemporaryFolder shared;
    Machine desk(shared);
    Machine home(shared);
    home.defaults.set(preferences::canvasBaseURL, std::string("https://h.example"));
    home.sync.start();
    desk.store.set("CanvasBaseURL", std::string());
    home.store.synchronize();
    desk.store.remove("CanvasBaseURL");
    home.store.synchronize();
    EXPECT_EQ(home.defaults.value(preferences::canvasBaseURL), "https://h.example");
    desk.store.set("CanvasBaseURL", std::string("https://other.example"));
    home.store.synchronize();
    EXPECT_EQ(home.defaults.value(preferences::canvasBaseURL), "https://other.example");
}

TEST(SettingsSync, StartsOnlyWhenAllowed) {
    const test::TemporaryFolder shared;
    struct Row {
        const char *what;
        PreferenceMap arguments;
        bool runs;
    };
    static std::string said;
    Log::setSink([](std::string_view, Log::Level, std::string_view line) { said = line; });
    for (const Row &row : std::vector<Row>{
             {"plain", {}, true},
             {"sample", {{"SampleData", true}}, false},
             {"switched off", {{"SyncSettingsViaICloud", false}}, false},
             {"another argument", {{"AccentTheme", std::string("teal")}}, true},
             {"forced", {{"TextScale", 1.1}, {"Course.7.Icon", std::string("x")}}, false}}) {
        Machine machine(shared, row.arguments);
        machine.sync.start();
        EXPECT_EQ(machine.sync.isRunning(), row.runs) << row.what;
        if (std::string_view(row.what) == "forced") {
            EXPECT_EQ(said, "Not syncing: launch arguments override 2 synced setting(s)");
        }
    }
    Log::setSink(nullptr);
}

TEST(SettingsSync, ManyChangesCauseOnePushAndRemoteChangesNone) {
    const test::TemporaryFolder shared;
    Machine desk(shared);
    Machine home(shared);
    desk.sync.start();
    home.sync.start();
    for (int i = 1; i <= 10; ++i)
        desk.defaults.set(preferences::sidebarTermLimit, std::int64_t{i});
    EXPECT_TRUE(desk.store.all().empty()) << "the push waits for the last change";
    QDeadlineTimer bound(10'000);
    while (desk.store.all().empty() && !bound.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(desk.store.object("SidebarTermLimit"), PreferenceValue(std::int64_t{10}));

    const auto stampOf = [&] {
        return std::filesystem::last_write_time(
            shared.path() / "Ellwynd" / SyncedFolder::fileName("SidebarTermLimit"));
    };
    const auto written = stampOf();
    home.store.synchronize();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 5);
    EXPECT_EQ(stampOf(), written) << "a remote change is not pushed back";
    EXPECT_EQ(home.defaults.value(preferences::sidebarTermLimit), 10);
}

} // namespace
} // namespace ellwynd
