#include "preferences/launcharguments.h"
#include "preferences/userdefaults.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using namespace std::string_literals;

struct UserDefaultsTest : testing::Test {
    test::TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "Preferences.json";
    /// The keys of the changes that `observe` was told of.
    std::vector<std::string> notified;

    [[nodiscard]] UserDefaults open(PreferenceMap arguments = {}) const {
        return {file, std::move(arguments)};
    }
    /// What the next run of the program finds.
    [[nodiscard]] PreferenceMap saved() const { return open().persistentDomain(); }

    [[nodiscard]] std::shared_ptr<void> observe(UserDefaults &defaults) {
        return defaults.observe([this](std::string_view key) { notified.emplace_back(key); });
    }
};

TEST_F(UserDefaultsTest, ReadsStoredValuesWithinTheirLimits) {
    struct Row {
        PreferenceValue stored;
        double scale;
        std::int64_t terms;
        bool compact;
    };
    UserDefaults defaults = open();
    for (const Row &row :
         {Row{std::int64_t{-3}, 0.8, 0, false}, Row{2.5, 2.0, 6, false}, Row{0.5, 0.8, 6, false},
          Row{std::int64_t{1}, 1.0, 1, true}, Row{1.0, 1.0, 1, true}, Row{2.0, 2.0, 2, false},
          Row{1e300, 2.0, 6, false}, Row{true, 1.0, 6, true}, Row{"5"s, 1.0, 6, false}}) {
        SCOPED_TRACE(toJSON(row.stored));
        for (const char *key : {"TextScale", "SidebarTermLimit", "RosterCompactRows"})
            defaults.set(key, row.stored);
        EXPECT_EQ(defaults.value(preferences::textScale), row.scale);
        EXPECT_EQ(defaults.value(preferences::sidebarTermLimit), row.terms);
        EXPECT_EQ(defaults.value(preferences::rosterCompactRows), row.compact);
    }
}

TEST_F(UserDefaultsTest, AnUpdateOfSeveralValuesCanBeUndone) {
    UserDefaults defaults = open();
    const PreferenceMap before{
        {"A", std::int64_t{1}}, {"B", "b"s}, {"Five", std::int64_t{5}}, {"Same", 5.0}};
    defaults.update({before.begin(), before.end()});
    const PreferenceMap after{{"A", std::int64_t{2}}, {"C", true}, {"Five", 5.0}, {"Same", 5.0}};
    auto observing = defaults.observe([&](std::string_view key) {
        notified.emplace_back(key);
        EXPECT_EQ(defaults.persistentDomain(), after) << "all are in effect by now";
        EXPECT_EQ(saved(), after);
    });
    const PreferenceChanges replaced = defaults.update(
        {{"A", PreferenceValue(std::int64_t{2})},
         {"B", std::nullopt},
         {"C", PreferenceValue(true)},
         {"Five", PreferenceValue(5.0)},
         {"Never", std::nullopt},
         {"Same", PreferenceValue(5.0)}});
    EXPECT_THAT(notified, ElementsAre("A", "B", "C", "Five"));
    const PreferenceChanges expected{
        {"A", PreferenceValue(std::int64_t{1})},
        {"B", PreferenceValue("b"s)},
        {"C", std::nullopt},
        {"Five", PreferenceValue(std::int64_t{5})}};
    EXPECT_EQ(replaced, expected);
    observing.reset();
    defaults.update(replaced);
    EXPECT_EQ(saved(), before);
}

TEST_F(UserDefaultsTest, PreservesValuesOfUnknownTypes) {
    folder.write("Preferences.json", R"({"Future": {"a": [null, 1.5]}, "TextScale": 1.2})");
    UserDefaults defaults = open();
    EXPECT_EQ(defaults.object("Future"), std::nullopt);
    EXPECT_EQ(defaults.value(preferences::textScale), 1.2);
    defaults.set(preferences::rosterCompactRows, true);
    EXPECT_THAT(folder.read("Preferences.json"), testing::HasSubstr("\"Future\": {"));
    // A number that is too large costs its key alone.
    folder.write("Preferences.json", R"({"TextScale": 1e999, "SidebarTermLimit": 4})");
    EXPECT_EQ(saved(), (PreferenceMap{{"SidebarTermLimit", std::int64_t{4}}}));
}

TEST_F(UserDefaultsTest, SetsAnUnreadableFileAside) {
    for (const std::string broken : {"{\"TextScale\": 1.", "[1, 2]", "", "\xff\xfe"}) {
        const test::TemporaryFolder other;
        const std::filesystem::path path = other.write("Preferences.json", broken);
        UserDefaults defaults(path, {});
        EXPECT_EQ(defaults.value(preferences::textScale), 1.0);
        defaults.set(preferences::textScale, 1.5);
        std::string kept;
        for (const auto &entry : std::filesystem::directory_iterator(other.path())) {
            const std::string name = entry.path().filename();
            if (name.starts_with("Preferences.unreadable-"))
                kept = other.read(name);
        }
        EXPECT_EQ(kept, broken);
        EXPECT_EQ(UserDefaults(path, {}).value(preferences::textScale), 1.5);
    }
}

TEST_F(UserDefaultsTest, ChangesOfTwoProcessesAreMerged) {
    UserDefaults window = open();
    UserDefaults commandLine = open();
    const auto observing = observe(window);
    commandLine.set("One", std::int64_t{1});
    window.set("Two", std::int64_t{2});
    commandLine.set("Three", std::int64_t{3});
    commandLine.remove("Two");
    EXPECT_THAT(notified, ElementsAre("One", "Two"));
    window.reloadIfChanged();
    EXPECT_THAT(notified, ElementsAre("One", "Two", "Three", "Two"));
    EXPECT_EQ(saved(), window.persistentDomain());
    EXPECT_EQ(saved().size(), 2U);

    // A missing file loses nothing.
    std::filesystem::remove(file);
    window.reloadIfChanged();
    window.set("Zero", std::int64_t{0});
    EXPECT_EQ(saved().size(), 3U);

    // A damaged file is set aside, and the in-memory state is saved.
    folder.write("Preferences.json", "{broken");
    window.set("Four", std::int64_t{4});
    EXPECT_EQ(saved().size(), 4U);

    // Another process may save a new file before it.
    PreferenceMap all = window.persistentDomain();
    folder.write("Preferences.json", "{broken");
    window.reloadIfChanged();
    EXPECT_FALSE(window.isSaved());
    open().set("One", std::int64_t{5});
    window.update({});
    all.insert_or_assign("One", std::int64_t{5});
    EXPECT_EQ(saved(), all);
}

TEST_F(UserDefaultsTest, ASampleRunLeavesTheTeachersFileAlone) {
    open().update(
        {{"TextScale", 1.5},
         {"Course.7.Icon", "book"s},
         {"SidebarTermLimit", std::int64_t{3}},
         {"Onboarding.step", std::int64_t{1}}});
    const std::string teachers = folder.read("Preferences.json");
    const PreferenceMap inSampleMode{{"SampleData", true}};
    {
        UserDefaults sample = open(inSampleMode);
        EXPECT_EQ(sample.value(preferences::textScale), 1.5) << "the teacher's value comes second";
        const PreferenceChanges replaced = sample.update(
            {{"TextScale", 1.1},
             {"Course.7.Icon", std::nullopt},
             {"Never", std::nullopt},
             {"RosterCompactRows", true}});
        EXPECT_EQ(
            replaced,
            (PreferenceChanges{
                {"TextScale", 1.5},
                {"Course.7.Icon", "book"s},
                {"RosterCompactRows", std::nullopt}}));
        EXPECT_EQ(folder.read("Preferences.json"), teachers);
    }
    UserDefaults again = open(inSampleMode);
    const PreferenceMap expected{
        {"TextScale", 1.1},
        {"RosterCompactRows", true},
        {"SidebarTermLimit", std::int64_t{3}},
        {"Onboarding.step", std::int64_t{1}}};
    EXPECT_EQ(again.persistentDomain(), expected) << "the removal hides the teacher's value";
    EXPECT_EQ(again.object("Course.7.Icon"), std::nullopt);
    EXPECT_THAT(again.persistentDomainJSON(), testing::Not(testing::HasSubstr("null")));

    // Changes of other processes in either file are seen.
    const auto observing = observe(again);
    open().update({{"SidebarTermLimit", std::int64_t{4}}, {"TextScale", 1.6}});
    open(inSampleMode).set("TextScale", 1.2);
    again.reloadIfChanged();
    EXPECT_THAT(notified, testing::UnorderedElementsAre("SidebarTermLimit", "TextScale"));
    EXPECT_EQ(again.value(preferences::textScale), 1.2);

    // The step of the first-run setup and the mode itself are the teacher's.
    again.update({{"Onboarding.step", std::int64_t{2}}, {"SampleData", false}});
    EXPECT_EQ(open().value(preferences::onboardingStep), 2);
    EXPECT_EQ(open().object("SampleData"), PreferenceValue(false));
}

TEST_F(UserDefaultsTest, AFileThatCannotBeReadForAMomentLosesNothing) {
    open().update({{"TextScale", 1.5}, {"SidebarTermLimit", std::int64_t{3}}});
    const std::filesystem::path away = folder.path() / "away";
    std::filesystem::rename(file, away);
    std::filesystem::create_symlink(file, file);
    UserDefaults defaults = open();
    defaults.update({{"TextScale", 1.2}, {"Never", std::nullopt}});
    EXPECT_FALSE(defaults.isSaved());
    EXPECT_EQ(defaults.value(preferences::textScale), 1.2) << "kept in memory";
    std::filesystem::rename(away, file);
    defaults.update({});
    const PreferenceMap expected{{"TextScale", 1.2}, {"SidebarTermLimit", std::int64_t{3}}};
    EXPECT_EQ(saved(), expected);
}

TEST_F(UserDefaultsTest, WhatCouldNotBeSavedIsSavedLater) {
    const std::filesystem::path away = folder.path().string() + ".away";
    {
        open().update({{"LateThreshold", std::int64_t{2}}, {"LateWeight", 1.0}});
        UserDefaults defaults = open();
        std::filesystem::rename(folder.path(), away);
        std::ofstream(folder.path()) << "in its place";
        defaults.update(
            {{"TextScale", 1.5}, {"LateThreshold", std::int64_t{5}}, {"LateWeight", std::nullopt}});
        EXPECT_FALSE(defaults.isSaved());
        std::filesystem::remove(folder.path());
        std::filesystem::rename(away, folder.path());
        // What another process saves after that is newer.
        open().update(
            {{"SidebarTermLimit", std::int64_t{3}},
             {"LateThreshold", std::int64_t{4}},
             {"LateWeight", 2.0}});
        defaults.reloadIfChanged();
        EXPECT_EQ(defaults.object("TextScale"), PreferenceValue(1.5));
        EXPECT_EQ(defaults.object("LateThreshold"), PreferenceValue(std::int64_t{4}));
        EXPECT_EQ(defaults.object("LateWeight"), PreferenceValue(2.0));
    }
    const PreferenceMap expected{
        {"TextScale", 1.5},
        {"SidebarTermLimit", std::int64_t{3}},
        {"LateThreshold", std::int64_t{4}},
        {"LateWeight", 2.0}};
    EXPECT_EQ(saved(), expected) << "at the end of the program";
}

TEST_F(UserDefaultsTest, AWatchedFileIsReread) {
    UserDefaults window = open();
    window.watch();
    open().set(preferences::textScale, 1.5);
    EXPECT_TRUE(test::until([&] { return window.value(preferences::textScale) == 1.5; }));
}

TEST(LaunchArguments, LeadingPairsArePreferences) {
    const PreferenceMap values{
        {"YES", true},
        {"NO", false},
        {"-5", std::int64_t{-5}},
        {"2.50", 2.5},
        {"9223372036854775808", 9223372036854775808.0},
        {"nan", "nan"s},
        {"inf", "inf"s},
        {"0x10", "0x10"s},
        {"+5", "+5"s},
        {"", ""s}};
    for (const auto &[word, value] : values) {
        const std::vector<std::string> words{"-Key", "a", "-Key", word, "find", "-B", "v"};
        const LaunchArguments read = parseLaunchArguments(words);
        EXPECT_EQ(read.domain, (PreferenceMap{{"Key", value}})) << word;
        EXPECT_THAT(read.rest, ElementsAre("find", "-B", "v"));
    }
    for (const std::vector<std::string> &rest : std::vector<std::vector<std::string>>{
             {}, {"-Lonely"}, {"--sample", "-Key", "v"}, {"-o", "file"}}) {
        const LaunchArguments without = parseLaunchArguments(rest);
        EXPECT_TRUE(without.domain.empty()) << testing::PrintToString(rest);
        EXPECT_EQ(without.rest, rest);
    }
}

} // namespace
} // namespace ellwynd
