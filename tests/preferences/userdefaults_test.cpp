#include "preferences/launcharguments.h"
#include "preferences/userdefaults.h"
#include "support/temporaryfolder.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using test::TemporaryFolder;
using testing::ElementsAre;
using namespace std::string_literals;

struct Store {
    TemporaryFolder folder;
    PreferenceMap arguments;

    [[nodiscard]] UserDefaults open() const { return open(arguments); }
    [[nodiscard]] UserDefaults open(const PreferenceMap &with) const {
        return {folder.path() / "Preferences.json", with};
    }
};

TEST(UserDefaults, SearchesTheDomainsInOrder) {
    Store store{.arguments = {{"DefaultPassingScore", std::int64_t{55}}}};
    UserDefaults defaults = store.open();
    EXPECT_EQ(defaults.value(preferences::sidebarTermLimit), 6);
    defaults.set(preferences::sidebarTermLimit, std::int64_t{3});
    EXPECT_EQ(defaults.value(preferences::sidebarTermLimit), 3);
    defaults.set(preferences::defaultPassingScore, 80.0);
    EXPECT_EQ(defaults.value(preferences::defaultPassingScore), 55);
    EXPECT_EQ(defaults.persistentDomain().at("DefaultPassingScore"), PreferenceValue(80.0));
    defaults.remove("SidebarTermLimit");
    EXPECT_EQ(defaults.value(preferences::sidebarTermLimit), 6);
    EXPECT_EQ(defaults.object("NoSuchKey"), std::nullopt);
}

TEST(UserDefaults, TypesSurviveTheFile) {
    const Store store;
    const PreferenceMap values{
        {"Flag", true},
        {"Five", std::int64_t{5}},
        {"FivePointZero", 5.0},
        {"Text", "\"quoted\" – ünï\n"s},
        {"List", IDList{1, -2, 9000000000000000000}},
        {"Course.42.PassingScore", 72.5}};
    {
        UserDefaults defaults = store.open();
        for (const auto &[key, value] : values)
            defaults.set(key, value);
    }
    EXPECT_EQ(store.open().persistentDomain(), values);
}

TEST(UserDefaults, ReadsStoredValuesWithinTheirLimits) {
    struct Row {
        PreferenceValue stored;
        double scale;
        std::int64_t terms;
        bool compact;
    };
    for (const Row &row :
         {Row{std::int64_t{-3}, 0.8, 0, false}, Row{2.5, 2.0, 6, false}, Row{0.5, 0.8, 6, false},
          Row{std::int64_t{1}, 1.0, 1, true}, Row{1.0, 1.0, 1, true}, Row{2.0, 2.0, 2, false},
          Row{-3.0, 0.8, 0, false}, Row{1e300, 2.0, 6, false}, Row{true, 1.0, 6, true},
          Row{"5"s, 1.0, 6, false}}) {
        const Store store;
        UserDefaults defaults = store.open();
        for (const char *key : {"TextScale", "SidebarTermLimit", "RosterCompactRows"})
            defaults.set(key, row.stored);
        EXPECT_EQ(defaults.value(preferences::textScale), row.scale) << toJSON(row.stored);
        EXPECT_EQ(defaults.value(preferences::sidebarTermLimit), row.terms) << toJSON(row.stored);
        EXPECT_EQ(defaults.value(preferences::rosterCompactRows), row.compact)
            << toJSON(row.stored);
    }
}

TEST(UserDefaults, AnUpdateOfSeveralValuesCanBeUndone) {
    const Store store;
    UserDefaults defaults = store.open();
    const PreferenceMap before{{"A", std::int64_t{1}}, {"B", "b"s}, {"Same", 5.0}};
    for (const auto &[key, value] : before)
        defaults.set(key, value);
    std::vector<std::string> notified;
    auto observing = defaults.observe([&](std::string_view key) {
        notified.emplace_back(key);
        EXPECT_EQ(defaults.object("C"), PreferenceValue(true)) << "all are in effect by now";
        EXPECT_EQ(store.open().persistentDomain(), defaults.persistentDomain());
    });
    const PreferenceChanges replaced = defaults.update(
        {{"A", PreferenceValue(std::int64_t{2})},
         {"B", std::nullopt},
         {"C", PreferenceValue(true)},
         {"Never", std::nullopt},
         {"Same", PreferenceValue(5.0)}});
    EXPECT_THAT(notified, testing::ElementsAre("A", "B", "C"));
    const PreferenceChanges expected{
        {"A", PreferenceValue(std::int64_t{1})}, {"B", PreferenceValue("b"s)}, {"C", std::nullopt}};
    EXPECT_EQ(replaced, expected);
    EXPECT_EQ(
        defaults.persistentDomain(),
        (PreferenceMap{{"A", std::int64_t{2}}, {"C", true}, {"Same", 5.0}}));
    observing.reset();
    defaults.update(replaced);
    EXPECT_EQ(store.open().persistentDomain(), before);
}

TEST(UserDefaults, PreservesValuesOfUnknownTypes) {
    const Store store;
    store.folder.write("Preferences.json", R"({"Future": {"a": [null, 1.5]}, "TextScale": 1.2})");
    UserDefaults defaults = store.open();
    EXPECT_EQ(defaults.object("Future"), std::nullopt);
    EXPECT_EQ(defaults.value(preferences::textScale), 1.2);
    defaults.set(preferences::rosterCompactRows, true);
    EXPECT_THAT(store.folder.read("Preferences.json"), testing::HasSubstr("\"Future\": {"));
}

TEST(UserDefaults, SetsAnUnreadableFileAside) {
    const std::string deep =
        R"({"a":)" + std::string(200'000, '[') + std::string(200'000, ']') + "}";
    const std::vector<std::string> files{"{\"TextScale\": 1.", "[1, 2]", "", "<html>",
                                         "\xff\xfe",           deep};
    for (const std::string &broken : files) {
        const Store store;
        store.folder.write("Preferences.json", broken);
        UserDefaults defaults = store.open();
        EXPECT_EQ(defaults.value(preferences::textScale), 1.0);
        defaults.set(preferences::textScale, 1.5);
        std::string kept;
        for (const auto &entry : std::filesystem::directory_iterator(store.folder.path())) {
            const std::string name = entry.path().filename();
            if (name.starts_with("Preferences.unreadable-"))
                kept = store.folder.read(name);
        }
        EXPECT_EQ(kept, broken);
        EXPECT_EQ(store.open().value(preferences::textScale), 1.5);
    }
}

TEST(UserDefaults, NotifiesObserversOfChangesOnly) {
    const Store store;
    std::vector<std::string> notified;
    std::shared_ptr<void> observing;
    {
        UserDefaults defaults = store.open();
        observing = defaults.observe([&](std::string_view key) { notified.emplace_back(key); });
        defaults.set(preferences::textScale, 1.5);
        defaults.set(preferences::textScale, 1.5);
        defaults.set("TextScale", std::int64_t{1});
        defaults.set("TextScale", 1.0);
        defaults.remove("TextScale");
        defaults.remove("TextScale");
        EXPECT_THAT(notified, ElementsAre("TextScale", "TextScale", "TextScale", "TextScale"));
        observing.reset();
        defaults.set(preferences::textScale, 1.1);
        EXPECT_EQ(notified.size(), 4U);
        observing = defaults.observe([](std::string_view) {});
    }
    observing.reset(); // after its store
}

TEST(UserDefaults, ChangesOfTwoProcessesAreMerged) {
    const Store store;
    UserDefaults window = store.open();
    UserDefaults commandLine = store.open();
    std::vector<std::string> notified;
    const auto observing =
        window.observe([&](std::string_view key) { notified.emplace_back(key); });
    commandLine.set("One", std::int64_t{1});
    window.set("Two", std::int64_t{2});
    commandLine.set("Three", std::int64_t{3});
    commandLine.remove("Two");
    EXPECT_THAT(notified, ElementsAre("One", "Two"));
    window.reloadIfChanged();
    EXPECT_THAT(notified, ElementsAre("One", "Two", "Three", "Two"));
    EXPECT_EQ(store.open().persistentDomain(), window.persistentDomain());
    EXPECT_EQ(window.persistentDomain().size(), 2U);

    // A missing file loses nothing.
    std::filesystem::remove(store.folder.path() / "Preferences.json");
    window.reloadIfChanged();
    window.set("Zero", std::int64_t{0});
    EXPECT_EQ(store.open().persistentDomain().size(), 3U);

    // A damaged file is set aside, and the in-memory state is saved.
    store.folder.write("Preferences.json", "{broken");
    window.set("Four", std::int64_t{4});
    EXPECT_EQ(store.open().persistentDomain().size(), 4U);

    // Another process may save a new file before it.
    PreferenceMap all = window.persistentDomain();
    store.folder.write("Preferences.json", "{broken");
    window.reloadIfChanged();
    EXPECT_FALSE(window.isSaved());
    store.open().set("One", std::int64_t{5});
    window.update({});
    all.insert_or_assign("One", std::int64_t{5});
    EXPECT_EQ(store.open().persistentDomain(), all);
}

TEST(UserDefaults, ASampleRunLeavesTheTeachersFileAlone) {
    const Store store;
    store.open().update(
        {{"TextScale", 1.5},
         {"Course.7.Icon", "book"s},
         {"SidebarTermLimit", std::int64_t{3}},
         {"Onboarding.step", std::int64_t{1}}});
    const std::string teachers = store.folder.read("Preferences.json");
    const PreferenceMap inSampleMode{{"SampleData", true}};
    {
        UserDefaults sample = store.open(inSampleMode);
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
        EXPECT_EQ(store.folder.read("Preferences.json"), teachers);
    }
    UserDefaults again = store.open(inSampleMode);
    EXPECT_EQ(again.value(preferences::textScale), 1.1);
    EXPECT_EQ(again.object("Course.7.Icon"), std::nullopt) << "the removal hides it";
    EXPECT_EQ(again.value(preferences::sidebarTermLimit), 3);
    EXPECT_EQ(again.persistentDomain().count("Course.7.Icon"), 0U);
    EXPECT_EQ(again.persistentDomain().at("TextScale"), PreferenceValue(1.1));
    EXPECT_THAT(again.persistentDomainJSON(), testing::Not(testing::HasSubstr("null")));
    EXPECT_EQ(store.open().value(preferences::textScale), 1.5);

    // Changes of other processes in either file are seen.
    std::vector<std::string> notified;
    const auto observing = again.observe([&](std::string_view key) { notified.emplace_back(key); });
    store.open().update({{"SidebarTermLimit", std::int64_t{4}}, {"TextScale", 1.6}});
    store.open(inSampleMode).set("TextScale", 1.2);
    again.reloadIfChanged();
    EXPECT_THAT(notified, testing::UnorderedElementsAre("SidebarTermLimit", "TextScale"));
    EXPECT_EQ(again.value(preferences::textScale), 1.2);

    // The step of the first-run setup and the mode itself are the teacher's.
    again.update({{"Onboarding.step", std::int64_t{2}}, {"SampleData", false}});
    EXPECT_EQ(store.open().value(preferences::onboardingStep), 2);
    EXPECT_EQ(store.open().object("SampleData"), PreferenceValue(false));
}

TEST(UserDefaults, AFileThatCannotBeReadForAMomentIsLeftAlone) {
    const Store store;
    const auto file = store.folder.path() / "Preferences.json";
    store.open().update({{"TextScale", 1.5}, {"SidebarTermLimit", std::int64_t{3}}});
    const auto away = store.folder.path() / "away";
    std::filesystem::rename(file, away);
    std::filesystem::create_symlink(file, file);
    UserDefaults defaults = store.open();
    EXPECT_TRUE(defaults.isSaved());
    defaults.set("TextScale", 1.2);
    defaults.remove("Never");
    EXPECT_FALSE(defaults.isSaved());
    EXPECT_EQ(defaults.value(preferences::textScale), 1.2) << "kept in memory";
    EXPECT_TRUE(std::filesystem::is_symlink(file));
    std::filesystem::remove(file);
    std::filesystem::rename(away, file);
    defaults.update({});
    EXPECT_TRUE(defaults.isSaved());
    const PreferenceMap expected{{"TextScale", 1.2}, {"SidebarTermLimit", std::int64_t{3}}};
    EXPECT_EQ(store.open().persistentDomain(), expected) << "neither side is lost";
}

TEST(UserDefaults, WhatCouldNotBeSavedIsSavedLater) {
    const Store store;
    const std::filesystem::path folder = store.folder.path();
    const std::filesystem::path away = folder.string() + ".away";
    {
        store.open().update({{"LateThreshold", std::int64_t{2}}, {"LateWeight", 1.0}});
        UserDefaults defaults = store.open();
        std::filesystem::rename(folder, away);
        std::ofstream(folder) << "in its place";
        defaults.update(
            {{"TextScale", 1.5}, {"LateThreshold", std::int64_t{5}}, {"LateWeight", std::nullopt}});
        EXPECT_FALSE(defaults.isSaved());
        std::filesystem::remove(folder);
        std::filesystem::rename(away, folder);
        // What another process saves after that is newer.
        store.open().update(
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
    EXPECT_EQ(store.open().persistentDomain(), expected) << "at the end of the program";
    // A number that is too large costs its key alone.
    store.folder.write("Preferences.json", R"({"TextScale": 1e999, "SidebarTermLimit": 4})");
    EXPECT_EQ(
        store.open().persistentDomain(), (PreferenceMap{{"SidebarTermLimit", std::int64_t{4}}}));
}

TEST(UserDefaults, AWatchedFileIsReread) {
    const Store store;
    UserDefaults window = store.open();
    window.watch();
    UserDefaults commandLine = store.open();
    commandLine.set(preferences::textScale, 1.5);
    QDeadlineTimer bound(10'000);
    while (window.value(preferences::textScale) != 1.5 && !bound.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    EXPECT_EQ(window.value(preferences::textScale), 1.5);
}

TEST(LaunchArguments, LeadingPairsArePreferences) {
    struct Row {
        std::vector<std::string> words;
        PreferenceMap domain;
        std::vector<std::string> rest;
    };
    for (const Row &row : std::vector<Row>{
             {{}, {}, {}},
             {{"-SampleData", "YES", "roster", "1"}, {{"SampleData", true}}, {"roster", "1"}},
             {{"-A1", "NO", "-B2", "-5", "-C3", "2.50"},
              {{"A1", false}, {"B2", std::int64_t{-5}}, {"C3", 2.5}},
              {}},
             {{"-Key", "a", "-Key", "b"}, {{"Key", "b"s}}, {}},
             {{"-Lonely"}, {}, {"-Lonely"}},
             {{"--sample", "-Key", "v"}, {}, {"--sample", "-Key", "v"}},
             {{"-o", "file"}, {}, {"-o", "file"}},
             {{"roster", "-Key", "v"}, {}, {"roster", "-Key", "v"}},
             {{"-Big", "9223372036854775808"}, {{"Big", 9223372036854775808.0}}, {}},
             {{"-Text", "nan", "-More", "inf", "-Hex", "0x10", "-Plus", "+5", "-Empty", ""},
              {{"Text", "nan"s},
               {"More", "inf"s},
               {"Hex", "0x10"s},
               {"Plus", "+5"s},
               {"Empty", ""s}},
              {}},
         }) {
        const LaunchArguments read = parseLaunchArguments(row.words);
        EXPECT_EQ(read.domain, row.domain) << testing::PrintToString(row.words);
        EXPECT_EQ(read.rest, row.rest) << testing::PrintToString(row.words);
    }
}

} // namespace
} // namespace ellwynd
