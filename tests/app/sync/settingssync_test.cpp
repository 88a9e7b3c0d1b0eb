#include "app/sync/settingssync.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"
#include "support/logcapture.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

/// One of the teacher's computers. Its program can be started and killed.
struct Machine {
    test::TemporaryFolder home;
    fs::path folder;
    PreferenceMap arguments;
    test::DirectQueue queue;
    std::optional<UserDefaults> defaults;
    std::optional<SyncedFolder> store;
    std::optional<SettingsSync> sync;

    explicit Machine(fs::path folder, PreferenceMap arguments = {})
        : folder(std::move(folder)), arguments(std::move(arguments)) {
        UserDefaults(preferences(), {}).set(preferences::syncSettings, true);
        start();
    }

    [[nodiscard]] fs::path preferences() const { return home.path() / "Preferences.json"; }

    void start() {
        stop();
        defaults.emplace(preferences(), arguments);
        store.emplace(folder, queue, defaults->value(preferences::syncedFolderMark));
        sync.emplace(
            *defaults, *store, queue, home.path() / "Synced.json", std::chrono::milliseconds(1));
        sync->start();
    }

    /// What was not pushed yet is not pushed.
    void stop() {
        sync.reset();
        store.reset();
        defaults.reset();
    }
};

struct SettingsSyncTest : testing::Test {
    test::TemporaryFolder shared;
    fs::path folder = shared.path() / "Ellwynd";

    void SetUp() override { folderContents::create(folder); }

    void write(const std::string &key, const std::string &text) const {
        std::ofstream(folder / folderContents::fileName(key)) << text;
    }
};

TEST_F(SettingsSyncTest, AFirstMeetingTakesOverAndThenPushesWhatTheFolderLacks) {
    Machine desk(folder);
    desk.defaults->set(preferences::textScale, 1.5);
    desk.sync->push();

    Machine home(shared.path() / "Elsewhere");
    home.defaults->set(preferences::textScale, 1.2);
    home.defaults->set(preferences::sidebarTermLimit, std::int64_t{4});
    home.folder = folder;
    home.start();
    EXPECT_EQ(home.defaults->value(preferences::textScale), 1.5);
    EXPECT_EQ(home.store->object("SidebarTermLimit"), PreferenceValue(std::int64_t{4}));

    // The same after the preferences were lost.
    home.stop();
    fs::remove(home.preferences());
    UserDefaults(home.preferences(), {}).set(preferences::syncSettings, true);
    home.start();
    EXPECT_EQ(home.defaults->object("TextScale"), PreferenceValue(1.5));
    EXPECT_EQ(home.defaults->object("SidebarTermLimit"), PreferenceValue(std::int64_t{4}));
    EXPECT_EQ(home.store->all().size(), 2U);

    // And what was changed and pushed before is no change when another folder is met.
    home.defaults->set(preferences::textScale, 1.7);
    home.sync->push();
    fs::remove_all(folder);
    folderContents::create(folder);
    write("TextScale", R"({"value": 1.3})");
    home.sync->push();
    EXPECT_EQ(home.defaults->value(preferences::textScale), 1.3);
}

TEST_F(SettingsSyncTest, WhatCouldNotBeSavedIsNoChangeAtTheNextStart) {
    Machine desk(folder);
    Machine home(folder);
    desk.defaults->set(preferences::textScale, 1.5);
    desk.sync->push();
    home.sync->push();
    const fs::path away = home.home.path() / "away";
    fs::rename(home.preferences(), away);
    fs::create_symlink(home.preferences(), home.preferences());
    desk.defaults->set(preferences::textScale, 1.6);
    desk.sync->push();
    home.sync->push();
    EXPECT_EQ(home.defaults->value(preferences::textScale), 1.6) << "in memory";
    home.stop();
    fs::remove(home.preferences());
    fs::rename(away, home.preferences());
    home.start();
    EXPECT_EQ(home.defaults->object("TextScale"), PreferenceValue(1.6)) << "and not the old value";
    EXPECT_EQ(home.store->object("TextScale"), PreferenceValue(1.6));
}

TEST_F(SettingsSyncTest, ARunThatDoesNotSyncHidesNothingFromTheNextOne) {
    // An argument for what is not synced.
    Machine desk(folder, {{"AccentTheme", "teal"}});
    Machine home(folder);
    desk.defaults->set(preferences::textScale, 1.5);
    desk.sync->push();
    home.sync->push();
    const test::LogCapture log;
    for (const PreferenceMap &arguments :
         {PreferenceMap{{"TextScale", 1.1}, {"Course.7.Icon", "x"}},
          PreferenceMap{{"SampleData", true}}, PreferenceMap{{"SyncSettingsViaICloud", false}}}) {
        home.arguments = arguments;
        home.start();
        EXPECT_FALSE(home.sync->isRunning());
        const double next = desk.defaults->value(preferences::textScale) == 1.5 ? 1.6 : 1.5;
        desk.defaults->set(preferences::textScale, next);
        desk.sync->push();
        home.store->synchronize();
        home.arguments.clear();
        home.start();
        EXPECT_EQ(home.defaults->value(preferences::textScale), next);
        desk.sync->push();
        EXPECT_EQ(desk.defaults->value(preferences::textScale), next) << "and is not overwritten";
    }
    EXPECT_EQ(
        std::ranges::count(
            log.lines(), "sync: Not syncing: launch arguments override 2 synced setting(s)"),
        1);
}

TEST_F(SettingsSyncTest, ManyChangesCauseOnePushAndRemoteChangesNone) {
    Machine desk(folder);
    Machine home(folder);
    int told = 0;
    QObject::connect(
        &*home.sync, &SettingsSync::settingsDidSyncExternally, &*home.sync, [&] { ++told; });
    for (int i = 1; i <= 10; ++i)
        desk.defaults->set(preferences::sidebarTermLimit, std::int64_t{i});
    EXPECT_TRUE(desk.store->all().empty()) << "the push waits for the last change";
    ASSERT_TRUE(test::until([&] { return !desk.store->all().empty(); }));
    EXPECT_EQ(desk.store->object("SidebarTermLimit"), PreferenceValue(std::int64_t{10}));

    const auto stampOf = [&] {
        return fs::last_write_time(folder / folderContents::fileName("SidebarTermLimit"));
    };
    const auto written = stampOf();
    home.sync->push();
    EXPECT_FALSE(home.sync->isPushDue());
    home.sync->push();
    EXPECT_EQ(stampOf(), written) << "a remote change is not pushed back";
    EXPECT_EQ(home.defaults->value(preferences::sidebarTermLimit), 10);
    EXPECT_EQ(told, 1);

    // What a scan finds meanwhile does not push a change before its turn.
    home.defaults->set(preferences::textScale, 1.5);
    write("SidebarTermLimit", R"({"value": 9})");
    home.store->synchronize();
    EXPECT_EQ(home.defaults->value(preferences::sidebarTermLimit), 9);
    EXPECT_EQ(home.store->object("TextScale"), std::nullopt);
    EXPECT_TRUE(home.sync->isPushDue());

    // A push keeps what was not noticed yet.
    write("SidebarTermLimit", R"({"value": 8})");
    home.sync->push();
    EXPECT_EQ(home.store->object("SidebarTermLimit"), PreferenceValue(std::int64_t{8}));
    EXPECT_EQ(home.defaults->value(preferences::sidebarTermLimit), 8);
    EXPECT_EQ(home.store->object("TextScale"), PreferenceValue(1.5));
}

TEST_F(SettingsSyncTest, AFullStoreIsReportedOnceForEachPush) {
    const test::LogCapture log;
    Machine desk(folder);
    desk.defaults->set("Course.7.Icon", std::string(folderContents::maxBytes, 'x'));
    desk.defaults->set(preferences::textScale, 1.5);
    desk.sync->push();
    EXPECT_EQ(desk.store->object("TextScale"), PreferenceValue(1.5));
    EXPECT_EQ(
        std::ranges::count(
            log.lines(), "sync: iCloud key-value quota violated; settings sync is stalled"),
        1);
    desk.defaults->set("Course.7.Icon", "book");
    desk.sync->push();
    EXPECT_EQ(desk.store->object("Course.7.Icon"), PreferenceValue("book"));
}

} // namespace
} // namespace ellwynd
