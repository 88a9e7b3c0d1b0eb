#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;
using folderContents::fileName;
using folderContents::keyOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using Reason = CloudChange::Reason;

TEST(FolderContents, NamesItsFilesAndIgnoresConflictCopies) {
    for (const char *key : {"TextScale", "Course.4021.PassingScore", "Trend.12", "ünï %/..", "a b"})
        EXPECT_EQ(keyOf(fileName(key)), key);
    EXPECT_EQ(fileName("../x"), "..%2Fx.json");
    for (const char *name :
         {"TextScale (conflicted copy 2026-09-24).json", "TextScale.sync-conflict-20260924-A.json",
          "TextScale.json~", ".TextScale.json.tmp", ".json", "TextScale", "Text%2.json",
          "Text%zz.json", "%41.json", "Ellwynd.folder"})
        EXPECT_EQ(keyOf(name), std::nullopt) << name;
}

/// One machine's view of the folder.
struct View {
    test::DirectQueue queue;
    SyncedFolder store;
    std::vector<CloudChange> changes;
    std::shared_ptr<void> observing;

    explicit View(const fs::path &folder, std::string knownMark = {})
        : store(folder, queue, std::move(knownMark)),
          observing(
              store.observe([this](const CloudChange &change) { changes.push_back(change); })) {
        store.synchronize();
    }

    /// What a scan reports now.
    std::vector<CloudChange> scan() {
        changes.clear();
        store.synchronize();
        return changes;
    }
};

struct SyncedFolderTest : testing::Test {
    test::TemporaryFolder home;
    fs::path folder = home.path() / "Ellwynd";

    void SetUp() override { folderContents::create(folder); }

    void write(const std::string &name, const std::string &text) const {
        std::ofstream(folder / name) << text;
    }
};

TEST_F(SyncedFolderTest, ReportsChangesOfOthersOnce) {
    View first(folder);
    EXPECT_THAT(first.changes, ElementsAre(CloudChange{.reason = Reason::initialSync}));
    first.changes.clear();
    first.store.update(
        {{"TextScale", 1.5}, {"Course.7.InactivityDays", std::int64_t{9}}, {"List", IDList{1, 2}}});
    EXPECT_THAT(first.changes, ElementsAre(CloudChange{.followsWrite = true}))
        << "its own changes are not reported";

    View second(folder);
    ASSERT_EQ(second.changes.size(), 1U);
    EXPECT_EQ(second.changes[0].reason, Reason::initialSync);
    EXPECT_EQ(second.changes[0].keys.size(), 3U);
    EXPECT_EQ(second.store.all(), first.store.all());
    EXPECT_EQ(second.store.object("TextScale"), PreferenceValue(1.5));
    EXPECT_THAT(second.scan(), ElementsAre(CloudChange{}));

    first.store.update(
        {{"TextScale", std::nullopt}, {"Course.7.InactivityDays", std::int64_t{10}}});
    EXPECT_THAT(
        second.scan(), ElementsAre(CloudChange{.keys = {"Course.7.InactivityDays", "TextScale"}}));
}

TEST_F(SyncedFolderTest, WhatCannotBeReadIsNeitherChangedNorRemoved) {
    View view(folder);
    view.store.set("TextScale", 1.5);
    const fs::path file = folder / fileName("TextScale");
    for (const char *text :
         {"", "{", R"({"value": 1.)", "[]", R"({"value": {}})", R"({"value": ["a"]})", "{}",
          R"({"version": 2, "value": 9.0})"}) {
        write("TextScale.json", text);
        EXPECT_THAT(view.scan(), ElementsAre(CloudChange{})) << text;
        EXPECT_THAT(view.store.contents()->unreadable, ElementsAre("TextScale")) << text;
    }
    view.store.set("TextScale", 1.6);
    EXPECT_EQ(home.read("Ellwynd/TextScale.json"), R"({"version": 2, "value": 9.0})")
        << "a newer version's file is left alone";
    write("TextScale.json", "{");
    view.scan();
    view.store.set("TextScale", 1.6);
    EXPECT_EQ(view.store.object("TextScale"), std::nullopt) << "the rest of it may be on its way";
    fs::last_write_time(file, fs::file_time_type::clock::now() - std::chrono::hours(2));
    view.scan();
    view.store.set("TextScale", 1.6);
    EXPECT_EQ(view.store.object("TextScale"), PreferenceValue(1.6)) << "it never came";
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_THAT(view.scan(), ElementsAre(CloudChange{}));
    write("Large.json", "{\"value\": \"" + std::string(folderContents::maxBytes, 'x') + "\"}");
    EXPECT_THAT(view.scan(), ElementsAre(CloudChange{}));
}

TEST_F(SyncedFolderTest, AFolderThatIsAwayIsWaitedFor) {
    const fs::path away = home.path() / "Unmounted";
    View view(folder);
    view.store.set("TextScale", 1.5);
    const std::string mark = view.store.contents()->mark;
    for (const auto &[what, prepare, problem] :
         std::vector<std::tuple<const char *, std::function<void()>, const char *>>{
             {"not there", [] {}, "is not there"},
             {"an empty mount point", [&] { fs::create_directory(folder); }, "is not there"},
             {"a loop", [&] { fs::create_symlink(folder, folder); }, "could not be read"},
             {"a file", [&] { std::ofstream(folder) << "x"; }, "is not there"},
             {"a torn mark",
              [&] {
                  fs::create_directory(folder);
                  write("Ellwynd.folder", "{");
              },
              "cannot be read at present"}}) {
        SCOPED_TRACE(what);
        fs::rename(folder, away);
        prepare();
        EXPECT_THAT(view.scan(), IsEmpty());
        EXPECT_THAT(view.store.problem(), HasSubstr(problem));
        view.store.set("TextScale", 2.0);
        EXPECT_THAT(View(folder, mark).changes, IsEmpty()) << "at a start";
        fs::remove_all(folder);
        fs::rename(away, folder);
        EXPECT_THAT(view.scan(), ElementsAre(CloudChange{}));
        EXPECT_EQ(view.store.problem(), "");
        EXPECT_EQ(view.store.object("TextScale"), PreferenceValue(1.5));
    }
    EXPECT_EQ(View(away).changes.size(), 0U);
    EXPECT_FALSE(fs::exists(away)) << "it is never created";
}

TEST_F(SyncedFolderTest, AnotherFolderIsReportedWhole) {
    View view(folder);
    view.store.set("TextScale", 1.5);
    fs::remove(folder / folderContents::markName);
    fs::rename(folder / fileName("TextScale"), folder / fileName("RosterCompactRows"));
    EXPECT_THAT(view.scan(), ElementsAre(CloudChange{Reason::initialSync, {"RosterCompactRows"}}));
    folderContents::create(folder);
    EXPECT_THAT(view.scan(), ElementsAre(CloudChange{Reason::initialSync, {"RosterCompactRows"}}));
}

TEST_F(SyncedFolderTest, DoesNotOverwriteWhatItHasNotSeen) {
    View here(folder);
    here.store.set("TextScale", 1.0);
    View there(folder);
    there.store.update({{"TextScale", 1.5}, {"SidebarTermLimit", std::int64_t{3}}});
    here.changes.clear();
    here.store.update({{"TextScale", 1.1}, {"SidebarTermLimit", std::int64_t{1}}});
    EXPECT_THAT(
        here.changes,
        ElementsAre(CloudChange{.keys = {"SidebarTermLimit", "TextScale"}, .followsWrite = true}));
    EXPECT_EQ(here.store.all(), there.store.all());
    here.store.remove("TextScale");
    EXPECT_EQ(here.store.object("TextScale"), std::nullopt);
}

TEST_F(SyncedFolderTest, AFullStoreRefusesWhatDoesNotFit) {
    View view(folder);
    view.changes.clear();
    view.store.update({{"Large", std::string(folderContents::maxBytes, 'x')}, {"Small", true}});
    EXPECT_THAT(
        view.changes,
        ElementsAre(
            CloudChange{Reason::quotaViolation, {"Large"}}, CloudChange{.followsWrite = true}));
    EXPECT_EQ(view.store.all(), (PreferenceMap{{"Small", true}}));
    // Written again, a key takes the place of its old value.
    for (const char c : {'x', 'y'}) {
        const std::string half(folderContents::maxBytes / 2 + 100, c);
        view.store.update({{"Half", half}});
        EXPECT_EQ(view.store.object("Half"), PreferenceValue(half)) << c;
    }
    view.store.update({{"Half", std::nullopt}});
    PreferenceChanges many;
    for (std::size_t i = 0; i < folderContents::maxKeys; ++i)
        many.emplace("Key" + std::to_string(10'000 + i), true);
    view.changes.clear();
    view.store.update(std::move(many));
    EXPECT_EQ(view.changes.front().keys.size(), 1U) << "one key too many";
    EXPECT_EQ(view.store.all().size(), folderContents::maxKeys);
    view.store.update({{"Small", false}});
    EXPECT_EQ(view.store.object("Small"), PreferenceValue(false)) << "no further key";
}

TEST_F(SyncedFolderTest, RemovesTheTemporaryFilesOfKilledPrograms) {
    write(".TextScale.json.new-abc123", "{");
    write(".TextScale.json.new-def456", "{");
    write(".other.new", "x");
    fs::last_write_time(
        folder / ".TextScale.json.new-abc123",
        fs::file_time_type::clock::now() - std::chrono::hours(25));
    View view(folder);
    EXPECT_FALSE(fs::exists(folder / ".TextScale.json.new-abc123"));
    EXPECT_TRUE(fs::exists(folder / ".TextScale.json.new-def456")) << "it may be in use";
    EXPECT_TRUE(fs::exists(folder / ".other.new"));
}

} // namespace
} // namespace ellwynd
