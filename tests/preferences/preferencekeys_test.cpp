// The table of preferences, and that the sources use its constants.
#include "preferences/preferencekeys.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <regex>

namespace ellwynd {
namespace {

/// The JSON that is saved when a word is entered for a key; absent when it is rejected.
std::optional<std::string> saved(const Preference &row, const std::string &key, const char *word) {
    try {
        return toJSON(row.accept(key, parsePreferenceValue(word)));
    } catch (const InvalidPreference &error) {
        EXPECT_THAT(error.what(), testing::StartsWith(key + " takes "));
        EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("\n")));
        return std::nullopt;
    }
}

TEST(Preferences, EnteredValuesAreConvertedOrRejected) {
    struct Row {
        const char *key;
        const char *word;
        std::optional<std::string> saved;
    };
    for (const Row &row : std::vector<Row>{
             {"TextScale", "5", "2.0"},
             {"TextScale", "1.25", "1.25"},
             {"SidebarTermLimit", "-3", "0"},
             {"SidebarTermLimit", "5.0", "5"},
             {"SidebarTermLimit", "2.5", std::nullopt},
             {"DefaultPassingScore", "65", "65.0"},
             {"DefaultPassingScore", "70.3", "70.5"},
             {"DefaultPassingScore", "100.1", std::nullopt},
             {"DefaultInactivityDays", "7.4", "7"},
             {"DefaultInactivityDays", "60.4", std::nullopt},
             {"Course.7.PassingScore", "65.2", "65.0"},
             {"Course.7.InactivityDays", "60", "60"},
             {"DashboardTermID", "9001", "9001"},
             {"RosterCompactRows", "YES", "true"},
             {"RosterCompactRows", "1", "true"},
             {"CanvasBaseURL", "", "\"\""},
             {"Course.7.Icon", "flask", "\"flask\""}}) {
        const Preference *found = preferences::find(row.key);
        ASSERT_NE(found, nullptr) << row.key;
        EXPECT_EQ(saved(*found, row.key, row.word), row.saved) << row.key << " " << row.word;
    }
    for (const char *key :
         {"Icon", "Unknown", "textScale", "Course..Icon", "Course.x.Icon", "Course.7.Icon.",
          "Course.7.Other", "Course.{id}.Icon"})
        EXPECT_EQ(preferences::find(key), nullptr) << key;
}

TEST(Preferences, EveryRowRejectsInvalidValues) {
    using Type = Preference::Type;
    for (const Preference &row : preferences::table) {
        const std::string key(row.key);
        EXPECT_EQ(saved(row, key, row.type == Type::text ? "5" : "no such value"), std::nullopt);
        if (!row.choices.empty()) {
            EXPECT_EQ(saved(row, key, "no such choice"), std::nullopt);
            EXPECT_NE(saved(row, key, std::string(row.choices.back()).c_str()), std::nullopt);
        }
        if (row.type == Type::integer || row.type == Type::real) {
            for (const double limit : {row.range.minimum - 1, row.range.maximum + 1})
                EXPECT_EQ(
                    saved(row, key, std::to_string(limit).c_str()).has_value(),
                    row.range.outside == NumberRange::Outside::clamped && std::isfinite(limit))
                    << key << " " << limit;
        }
    }
}

TEST(Preferences, OnlyTheAllowListIsSynced) {
    std::vector<std::string_view> synced;
    for (const Preference &row : preferences::table) {
        if (row.synced)
            synced.push_back(row.key);
    }
    EXPECT_THAT(
        synced,
        testing::ElementsAre(
            "CanvasBaseURL", "DefaultPassingScore", "DefaultInactivityDays", "Appearance",
            "TextScale", "SidebarExpandedTerms", "SidebarTermLimit", "RosterCompactRows",
            "Course.{id}.PassingScore", "Course.{id}.InactivityDays", "Course.{id}.Icon",
            "Course.{id}.IconColor"));
    for (const char *key : {"Course.7.Icon", "Course.7.OfALaterVersion"})
        EXPECT_TRUE(preferences::isSynced(key)) << key;
    for (const char *key : {"AccentTheme", "Unknown", "Trend.7"})
        EXPECT_FALSE(preferences::isSynced(key)) << key;
}

/// The keys that a source has as literals instead of constants. QStringLiterals are excluded, since
/// a text on the screen may equal a key.
std::vector<std::string> namedKeys(const std::string &text) {
    static const std::regex literal("(QStringLiteral\\()?\"([^\"\\\\\n]*)\"");
    static const std::regex access(
        R"(efaults(\(\))?(\.|->)(object|set|remove|update)\(\s*\{*\s*"([^"]*)\")");
    std::vector<std::string> keys;
    for (std::sregex_iterator at(text.begin(), text.end(), literal), end; at != end; ++at) {
        if (!(*at)[1].matched && preferences::find((*at)[2].str()) != nullptr)
            keys.push_back((*at)[2]);
    }
    for (std::sregex_iterator at(text.begin(), text.end(), access), end; at != end; ++at)
        keys.push_back((*at)[4]);
    return keys;
}

TEST(Preferences, SourcesUseTheConstantsOfKeys) {
    namespace fs = std::filesystem;
    std::size_t files = 0;
    for (const auto &entry : fs::recursive_directory_iterator(ELLWYND_SOURCE_DIR "/src")) {
        const std::string extension = entry.path().extension();
        if ((extension != ".h" && extension != ".cpp") ||
            entry.path().filename() == "preferencekeys.h")
            continue;
        std::ifstream stream(entry.path());
        std::string code;
        for (std::string line; std::getline(stream, line);)
            code += line.substr(0, line.find("//")) + "\n";
        EXPECT_THAT(namedKeys(code), testing::IsEmpty()) << entry.path();
        ++files;
    }
    EXPECT_GT(files, 100U) << "the sources were not found";
    EXPECT_THAT(
        namedKeys("f(\"TextScale\", \"Course.7.Icon\"); defaults().set(\"New\", true);"),
        testing::ElementsAre("TextScale", "Course.7.Icon", "New"));
}

} // namespace
} // namespace ellwynd
