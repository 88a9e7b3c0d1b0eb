#include "app/shell/stores.h"
#include "app/undo/preferenceedit.h"
#include "app/undo/storeedits.h"
#include "app/undo/undotexts.h"
#include "support/instants.h"
#include "support/rosters.h"
#include "support/temporaryfolder.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::noon;
using test::row;
using testing::ElementsAre;

struct UndoTest : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    /// Another process with the same file.
    UserDefaults elsewhere{folder.path() / "Preferences.json", {}};
    UndoStack undo;
    /// What was announced last.
    std::string note;

    UndoTest() {
        QObject::connect(&undo, &UndoStack::undoDidEnd, &undo, [this](const QString &text) {
            note = text.toStdString();
        });
    }

    [[nodiscard]] std::string name() const {
        return undo.newest() != nullptr ? undo.newest()->texts.name : "";
    }
};

TEST_F(UndoTest, TheNewestStepIsUndoneFirst) {
    std::vector<int> undone;
    constexpr int steps = 103;
    for (int i = 0; i < steps; ++i) {
        undo.push(
            {.texts = {.name = "Step " + std::to_string(i), .note = {}}, .undo = [&undone, i] {
                 undone.push_back(i);
                 return UndoResult::all;
             }});
    }
    EXPECT_EQ(name(), "Step 102");
    undo.undo();
    undo.undo();
    EXPECT_THAT(undone, ElementsAre(102, 101));
    while (undo.newest() != nullptr)
        undo.undo();
    EXPECT_EQ(undone.back(), 3) << "a hundred are kept";
    undo.push({.texts = {.name = "Step", .note = {}}, .undo = [] { return UndoResult::all; }});
    undo.clear();
    undo.undo();
    EXPECT_EQ(undone.size(), 100U);
    EXPECT_EQ(undo.newestID(), 0U);
}

TEST_F(UndoTest, TextsNameTheStudents) {
    using namespace undotexts;
    for (const auto &[texts, name, note] :
         std::vector<std::tuple<UndoTexts, const char *, const char *>>{
             {markedContacted({"Ada", "Grace", "Joan"}), "Mark 3 Students as Contacted",
              "Marked Ada, Grace and Joan as contacted."},
             {markedContacted({"Ada", "Grace", "Joan", "Mary"}), "Mark 4 Students as Contacted",
              "Marked Ada, Grace and 2 others as contacted."},
             {removedMarks({"Ada\nLovelace"}), "Remove Contact Mark of Ada Lovelace",
              "Removed the contact mark of Ada Lovelace."},
             {removedMarks({"Ada", "Grace"}), "Remove Contact Marks of 2 Students",
              "Removed the contact marks of Ada and Grace."},
             {deletedTemplate("ééééééééééééééééééééééééééééééééééééééé é"),
              "Delete “ééééééééééééééééééééééééééééééééééééééé…”",
              "Deleted “ééééééééééééééééééééééééééééééééééééééé…”."}}) {
        EXPECT_EQ(texts.name, name);
        EXPECT_EQ(texts.note, note);
    }
}

TEST_F(UndoTest, AChangedPreferenceIsRestoredUnlessItHasChangedSince) {
    const PreferenceMap original{{"Course.7.PassingScore", 60.0}};
    // Another process changed something since.
    for (const auto &[why, since, expected, announced] :
         std::vector<std::tuple<const char *, PreferenceChanges, PreferenceMap, const char *>>{
             {"unchanged", {}, original, "Undone: Change Thresholds of CS 101."},
             {"one of two",
              {{"Course.7.InactivityDays", std::int64_t{9}}},
              {{"Course.7.PassingScore", 60.0}, {"Course.7.InactivityDays", std::int64_t{9}}},
              "Undone in part: Change Thresholds of CS 101. The rest has changed since."},
             {"both",
              {{"Course.7.InactivityDays", std::nullopt}, {"Course.7.PassingScore", 66.0}},
              {{"Course.7.PassingScore", 66.0}},
              "Not undone: Change Thresholds of CS 101. It has changed since."}}) {
        PreferenceChanges all{{"Course.7.PassingScore", 60.0}, {"Course.7.InactivityDays", {}}};
        defaults.update(all);
        PreferenceEdit edit;
        edit.add(defaults, defaults.update({{"Course.7.PassingScore", 61.0}}));
        edit.add(
            defaults,
            defaults.update(
                {{"Course.7.PassingScore", std::nullopt},
                 {"Course.7.InactivityDays", std::int64_t{5}}}));
        pushEdit(undo, defaults, edit, undotexts::changedThresholds("CS 101"));
        elsewhere.update(since);
        undo.undo();
        EXPECT_EQ(defaults.persistentDomain(), expected) << why;
        EXPECT_EQ(note, announced) << why;
    }
    PreferenceEdit nothing;
    nothing.add(defaults, defaults.update({{"Course.7.PassingScore", 61.0}}));
    nothing.add(defaults, defaults.update({{"Course.7.PassingScore", 66.0}}));
    pushEdit(undo, defaults, nothing, undotexts::changedThresholds("CS 101"));
    EXPECT_EQ(undo.newest(), nullptr) << "the value is what it was";
}

TEST_F(UndoTest, ConsecutiveChangesInAnEditorAreOneStep) {
    const std::string_view key = preferences::defaultPassingScore.name;
    const auto saved = [&] { return defaults.value(preferences::defaultPassingScore); };
    PreferenceEditor editor(defaults, undo, undotexts::changedDefaultPassingScore());
    for (const double score : {71.0, 72.0, 73.0})
        editor.save(key, score);
    EXPECT_EQ(name(), "Change Default Passing Score");
    editor.finish();
    editor.save(key, 74.0);
    undo.undo();
    EXPECT_EQ(saved(), 73);
    undo.undo();
    EXPECT_EQ(defaults.object(key), PreferenceValue(70.0));
    EXPECT_TRUE(defaults.persistentDomain().empty());

    editor.save(key, 75.0);
    undo.push({.texts = {.name = "Between", .note = {}}, .undo = [] { return UndoResult::all; }});
    editor.save(key, 76.0);
    undo.undo();
    EXPECT_EQ(saved(), 75) << "another step came between them";
    undo.undo();
    editor.finish();
    editor.save(key, 77.0);
    editor.save(key, 75.0);
    EXPECT_EQ(saved(), 75);
    undo.undo();
    EXPECT_EQ(saved(), 70) << "a change and its reversal are no step";
}

TEST_F(UndoTest, AMemoryThatWasSwitchedOffIsRestored) {
    Stores stores(defaults, folder.path(), test::noonClock);
    setRemembersLevels(defaults, stores.history, undo, false);
    EXPECT_EQ(undo.newest(), nullptr) << "nothing was deleted";
    setRemembersLevels(defaults, stores.history, undo, true);
    stores.history.record({row(1, "Watch"), row(2, "OK")}, 7, noon);
    stores.contacts.noteContacts(7, {2, 1}, noon);
    const auto entries = stores.history.entries();
    const auto records = stores.contacts.records();
    setRemembersLevels(defaults, stores.history, undo, false);
    setRemembersContacts(defaults, stores.contacts, undo, false);
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "RosterHistory.json"));
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "ContactLog.json"));
    undo.undo();
    undo.undo();
    const Stores reopened(defaults, folder.path(), test::noonClock);
    EXPECT_EQ(reopened.history.entries(), entries);
    EXPECT_EQ(reopened.contacts.records(), records);
}

} // namespace
} // namespace ellwynd
