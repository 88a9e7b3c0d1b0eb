#include "app/sync/syncservice.h"
#include "base/calendar.h"
#include "platform/cloud/foldercontents.h"
#include "support/instants.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;
using test::until;
using testing::HasSubstr;
using testing::StartsWith;

struct SyncServiceTest : testing::Test {
    test::TemporaryFolder home;
    fs::path parent = home.path() / "Cloud";
    fs::path folder = parent / "Ellwynd";
    std::optional<UserDefaults> defaults;
    std::optional<TrendSync> trends;
    std::optional<SyncService> service;

    SyncServiceTest() {
        fs::create_directory(parent);
        start();
    }

    void start(PreferenceMap arguments = {}) {
        service.reset();
        trends.reset();
        defaults.emplace(home.path() / "Preferences.json", std::move(arguments));
        trends.emplace(*defaults);
        service.emplace(*defaults, *trends, home.path() / "Synced.json", test::noonClock);
    }

    [[nodiscard]] bool statusBecomes(const std::string &start) {
        return until([&] { return service->status().starts_with(start); });
    }

    /// The text scale 1.5 is in the folder then.
    void switchOn() {
        defaults->set(preferences::syncSettings, true);
        service->chooseFolder(parent);
        defaults->set(preferences::textScale, 1.5);
        ASSERT_TRUE(until([&] { return has("TextScale"); })) << service->status();
    }

    [[nodiscard]] bool has(const std::string &key) const {
        return fs::exists(folder / folderContents::fileName(key));
    }
};

TEST_F(SyncServiceTest, TheStatusTellsTheTruth) {
    EXPECT_EQ(service->status(), "Settings stay on this computer.");
    defaults->set(preferences::syncSettings, true);
    EXPECT_THAT(service->status(), StartsWith("Choose a folder"));
    service->chooseFolder(parent);
    ASSERT_TRUE(statusBecomes("In step")) << service->status();
    EXPECT_EQ(
        service->status(),
        "In step with this folder; last looked at " + calendar::shortTime(test::noon) + ".");
    EXPECT_EQ(defaults->value(preferences::cloudStoreFolder), folder.string());

    fs::rename(folder, home.path() / "Away");
    service->scan();
    ASSERT_TRUE(statusBecomes("Not in step."));
    EXPECT_THAT(service->status(), HasSubstr("The folder “Ellwynd” is not there."));
    fs::rename(home.path() / "Away", folder);
    service->scan();
    ASSERT_TRUE(statusBecomes("In step"));

    start({{"TextScale", 1.1}});
    EXPECT_THAT(service->status(), StartsWith("Not syncing: Ellwynd was started with settings"));
    start({{"SampleData", true}});
    EXPECT_THAT(service->status(), StartsWith("Settings are not synced while the sample"));
    EXPECT_FALSE(service->canRemove());
}

TEST_F(SyncServiceTest, AFolderThatCannotBeUsedSaysWhyAndIsNotChosen) {
    std::ofstream(parent / "Ellwynd") << "a file";
    service->chooseFolder(parent);
    ASSERT_TRUE(until([&] {
        return service->status().find("cannot be used") != std::string::npos;
    })) << service->status();
    EXPECT_EQ(defaults->value(preferences::cloudStoreFolder), "");
}

TEST_F(SyncServiceTest, TheFolderOfAnotherComputerIsUsedAsItIs) {
    EXPECT_EQ(syncedFolderIn(parent), folder);
    folderContents::create(folder);
    EXPECT_EQ(syncedFolderIn(parent), folder);
    EXPECT_EQ(syncedFolderIn(folder), folder);
    fs::rename(folder, parent / "Settings");
    EXPECT_EQ(syncedFolderIn(parent / "Settings"), parent / "Settings") << "it has the mark";
    fs::create_directory(folder);
    EXPECT_EQ(syncedFolderIn(folder), folder) << "the mark has not arrived";
}

TEST_F(SyncServiceTest, FollowsTheSwitchAndTheFolder) {
    switchOn();
    EXPECT_NE(defaults->value(preferences::syncedFolderMark), "");

    defaults->set(preferences::syncSettings, false);
    ASSERT_TRUE(statusBecomes("Settings stay on this computer."));
    ASSERT_TRUE(until([&] { return defaults->value(preferences::syncedFolderMark).empty(); }));
    defaults->set(preferences::textScale, 1.2);
    defaults->set(preferences::rosterCompactRows, true);
    defaults->set(preferences::syncSettings, true);
    ASSERT_TRUE(until([&] { return has("RosterCompactRows"); }));
    EXPECT_EQ(defaults->value(preferences::textScale), 1.5) << "the folder's value is taken over";

    const fs::path other = parent / "Other";
    fs::create_directory(other);
    service->chooseFolder(other);
    ASSERT_TRUE(until([&] { return fs::exists(other / "Ellwynd" / "TextScale.json"); }));
    EXPECT_TRUE(has("TextScale")) << "the first folder keeps its files";
}

TEST_F(SyncServiceTest, PushesAtTheEndWhatWasChangedInTheLastSecond) {
    switchOn();
    defaults->set(preferences::rosterCompactRows, true);
    trends->publish(7, 3, test::noon);
    service.reset();
    EXPECT_TRUE(has("RosterCompactRows"));
    EXPECT_TRUE(has("Trend.7"));
}

TEST_F(SyncServiceTest, RemovingSwitchesOffAndKeepsWhatIsHere) {
    switchOn();
    trends->publish(7, 3, test::noon);
    ASSERT_TRUE(until([&] { return has("Trend.7"); }));
    fs::rename(folder, home.path() / "Away");
    service->removeSyncedSettings();
    ASSERT_TRUE(statusBecomes("The synced settings could not be removed."));
    EXPECT_TRUE(defaults->value(preferences::syncSettings));
    fs::rename(home.path() / "Away", folder);

    service->removeSyncedSettings();
    ASSERT_TRUE(statusBecomes("Removed the synced settings from the folder.")) << service->status();
    EXPECT_FALSE(defaults->value(preferences::syncSettings));
    EXPECT_FALSE(has("TextScale"));
    EXPECT_TRUE(has("Trend.7")) << "it is no setting";
    EXPECT_EQ(defaults->value(preferences::textScale), 1.5);
    EXPECT_THAT(removalWarning(), HasSubstr("lose theirs"));
}

} // namespace
} // namespace ellwynd
