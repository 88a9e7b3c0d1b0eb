#include "app/mainwindowcontroller.h"
#include "app/shell/unsavedchanges.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/resourcelimit.h"
#include "support/rosters.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

using test::noon;
using test::noonClock;
using test::row;

TEST(Stores, AtStartTheValueInEffectDecides) {
    for (const auto &[argument, saved, deletes] :
         std::vector<std::tuple<std::optional<bool>, bool, bool>>{
             {std::nullopt, true, false},
             {std::nullopt, false, true},
             {true, false, false},
             {false, true, true}}) {
        const test::TemporaryFolder folder;
        const fs::path preferencesFile = folder.path() / "Preferences.json";
        {
            UserDefaults defaults(preferencesFile, {});
            Stores stores(defaults, folder.path(), noonClock);
            stores.history.record({row(1, "Watch")}, 7, noon);
            stores.contacts.noteContact(7, 1, noon);
        }
        folder.write("RosterHistory.unreadable-1790251200.json", "old");
        // Of a store without a file.
        const test::TemporaryFolder copies;
        const fs::path copy = copies.write("ContactLog.unreadable-1790251200.json", "old");
        PreferenceMap arguments;
        for (const auto *key :
             {&preferences::rememberRosterHistory, &preferences::rememberContacts}) {
            UserDefaults(preferencesFile, {}).set(*key, saved);
            if (argument)
                arguments.emplace(key->name, *argument);
        }
        UserDefaults defaults(preferencesFile, arguments);
        const Stores stores(defaults, folder.path(), noonClock);
        for (const char *name :
             {"RosterHistory.json", "ContactLog.json", "RosterHistory.unreadable-1790251200.json"})
            EXPECT_EQ(fs::exists(folder.path() / name), !deletes) << name;
        const Stores others(defaults, copies.path(), noonClock);
        EXPECT_EQ(fs::exists(copy), !deletes);
        EXPECT_EQ(stores.history.entries().empty(), deletes);
        EXPECT_EQ(stores.contacts.records().empty(), deletes);
    }
}

TEST(UnsavedChanges, NamesWhatIsNotSaved) {
    test::Core core{{}, noonClock};
    UnsavedChanges unsaved{core.stores, core.defaults};
    int changes = 0;
    QObject::connect(&unsaved, &UnsavedChanges::noteDidChange, &unsaved, [&] { ++changes; });
    core.folder.write("data", "in the way");
    core.stores.contacts.noteContact(7, 1, noon);
    EXPECT_EQ(unsaved.note(), "Couldn’t save the contacts. Ellwynd will try again.");
    core.stores.contacts.noteContact(7, 2, noon);
    EXPECT_EQ(changes, 1);
    core.stores.history.record({row(1, "Watch")}, 7, noon);
    (void)core.stores.templates.addUntitled();
    {
        const test::ResourceLimit noDescriptor(RLIMIT_NOFILE, 0);
        core.defaults.set(preferences::textScale, 1.25);
    }
    EXPECT_EQ(
        unsaved.note(),
        "Couldn’t save the history, the contacts, the templates and the settings. Ellwynd will try "
        "again.");
    core.defaults.set(preferences::textScale, 1.5);
    unsaved.saveAgain();
    EXPECT_TRUE(unsaved.note()) << "still blocked";
    fs::remove(core.folder.path() / "data");
    unsaved.saveAgain();
    EXPECT_EQ(unsaved.note(), std::nullopt);
    const Stores reopened(core.defaults, core.folder.path() / "data", noonClock);
    EXPECT_EQ(reopened.contacts.records().size(), 2U);
    EXPECT_EQ(reopened.history.entries().size(), 1U);
    EXPECT_EQ(reopened.templates.templates().size(), 4U);
}

TEST(UnsavedChanges, TheStatusTellsItAndThePassSavesAgain) {
    test::Core core{{{"SampleData", true}}, noonClock};
    MainWindowController controller{core.defaults, core.connector, core.stores,
                                    core.trends,   core.sinks,     noonClock};
    controller.refresh();
    EXPECT_EQ(controller.status(), "Sample college · 7 courses");
    int changes = 0;
    QObject::connect(
        &controller, &MainWindowController::statusDidChange, &controller, [&] { ++changes; });
    // The templates are the teacher's own in the sample college, too.
    core.folder.write("data", "in the way");
    (void)core.stores.templates.addUntitled();
    EXPECT_EQ(
        controller.status(),
        "Sample college · 7 courses\nCouldn’t save the templates. Ellwynd will try again.");
    EXPECT_EQ(changes, 1);
    fs::remove(core.folder.path() / "data");
    controller.refresh();
    EXPECT_EQ(controller.status(), "Sample college · 7 courses");
    EXPECT_TRUE(fs::exists(core.folder.path() / "data" / "MessageTemplates.json"));
}

} // namespace
} // namespace ellwynd
