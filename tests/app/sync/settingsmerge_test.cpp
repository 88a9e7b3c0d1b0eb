#include "app/sync/settingsmerge.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

const PreferenceValue a = 1.1;
const PreferenceValue b = 1.2;
const PreferenceValue c = 1.3;

constexpr const char *key = "TextScale";
constexpr const char *unknownKey = "Course.7.OfANewerVersion";
constexpr const char *address = "CanvasBaseURL";

struct Row {
    const char *what;
    PreferenceMap local;
    std::optional<PreferenceMap> agreed;
    CloudContents stored;
    std::set<std::string, std::less<>> changedHere;
    SettingsMerge expected;
};

TEST(MergeSettings, DecidesEachKeyByWhatWasAgreed) {
    const PreferenceMap none;
    const PreferenceValue here = "https://here.example";
    const PreferenceValue there = "https://there.example";
    const std::vector<Row> rows{
        {"nothing changed",
         {{key, a}},
         {{{key, a}}},
         {.values = {{key, a}}},
         {},
         {.agreed = {{key, a}}}},
        {"changed here",
         {{key, b}},
         {{{key, a}}},
         {.values = {{key, a}}},
         {},
         {.toPush = {{key, b}}, .agreed = {{key, a}}}},
        {"changed there",
         {{key, a}},
         {{{key, a}}},
         {.values = {{key, b}}},
         {},
         {.toApply = {{key, b}}, .agreed = {{key, b}}}},
        {"changed on both sides",
         {{key, b}},
         {{{key, a}}},
         {.values = {{key, c}}},
         {},
         {.toPush = {{key, b}}, .agreed = {{key, a}}}},
        {"changed alike",
         {{key, b}},
         {{{key, a}}},
         {.values = {{key, b}}},
         {},
         {.agreed = {{key, b}}}},
        {"removed here",
         none,
         {{{key, a}}},
         {.values = {{key, a}}},
         {},
         {.toPush = {{key, std::nullopt}}, .agreed = {{key, a}}}},
        {"removed there", {{key, a}}, {{{key, a}}}, {}, {}, {.toApply = {{key, std::nullopt}}}},
        {"removed there, changed here",
         {{key, b}},
         {{{key, a}}},
         {},
         {},
         {.toPush = {{key, b}}, .agreed = {{key, a}}}},
        {"added here", {{key, a}}, none, {}, {}, {.toPush = {{key, a}}}},
        {"added there",
         none,
         none,
         {.values = {{key, a}}},
         {},
         {.toApply = {{key, a}}, .agreed = {{key, a}}}},
        {"removed there, never held here", none, none, {}, {}, {}},
        {"cannot be read",
         {{key, a}},
         {{{key, a}}},
         {.unreadable = {key}},
         {},
         {.agreed = {{key, a}}}},
        {"cannot be read, changed here",
         {{key, b}},
         {{{key, a}}},
         {.unreadable = {key}},
         {},
         {.toPush = {{key, b}}, .agreed = {{key, a}}}},
        {"of the wrong type",
         {{key, a}},
         {{{key, a}}},
         {.values = {{key, "large"}}},
         {},
         {.agreed = {{key, a}}}},
        {"a whole number as a real",
         none,
         none,
         {.values = {{"SidebarTermLimit", 5.0}}},
         {},
         {.toApply = {{"SidebarTermLimit", std::int64_t{5}}},
          .agreed = {{"SidebarTermLimit", std::int64_t{5}}}}},
        {"not synced",
         none,
         none,
         {.values = {{"AccentTheme", "teal"}, {"Trend.1", "{}"}}},
         {},
         {}},
        {"of a newer version",
         none,
         none,
         {.values = {{unknownKey, a}}},
         {},
         {.toApply = {{unknownKey, a}}, .agreed = {{unknownKey, a}}}},

        {"first meeting: the store's",
         {{key, a}},
         {},
         {.values = {{key, b}}},
         {},
         {.toApply = {{key, b}}, .agreed = {{key, b}}}},
        {"first meeting: what it lacks", {{key, a}}, {}, {}, {}, {.toPush = {{key, a}}}},
        {"first meeting: changed since",
         {{key, a}},
         {},
         {.values = {{key, b}}},
         {key},
         {.toPush = {{key, a}}, .agreed = {{key, b}}}},
        {"first meeting: removed since",
         none,
         {},
         {.values = {{key, b}}},
         {key},
         {.toPush = {{key, std::nullopt}}, .agreed = {{key, b}}}},
        {"first meeting: cannot be read",
         {{key, a}},
         {},
         {.unreadable = {key}},
         {},
         {.agreed = {{key, a}}}},

        {"a blank address there",
         {{address, here}},
         {{{address, here}}},
         {.values = {{address, ""}}},
         {},
         {.agreed = {{address, here}}}},
        {"no address there",
         {{address, here}},
         {{{address, here}}},
         {},
         {},
         {.agreed = {{address, here}}}},
        {"first meeting: a blank address",
         {{address, here}},
         {},
         {.values = {{address, ""}}},
         {},
         {.agreed = {{address, here}}}},
        {"signed out here",
         {{address, ""}},
         {{{address, here}}},
         {.values = {{address, here}}},
         {},
         {.toPush = {{address, ""}}, .agreed = {{address, here}}}},
        {"another address there",
         {{address, here}},
         {{{address, here}}},
         {.values = {{address, there}}},
         {},
         {.toApply = {{address, there}}, .agreed = {{address, there}}}},
    };
    for (const Row &row : rows) {
        SCOPED_TRACE(row.what);
        const SettingsMerge merge =
            mergeSettings(row.local, row.agreed, row.stored, row.changedHere);
        EXPECT_EQ(merge.toApply, row.expected.toApply);
        EXPECT_EQ(merge.toPush, row.expected.toPush);
        EXPECT_EQ(merge.agreed, row.expected.agreed);
    }
}

} // namespace
} // namespace ellwynd
