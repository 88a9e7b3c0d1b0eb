#include "app/sync/settingsmerge.h"

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using Held = std::optional<PreferenceValue>;
/// A change to a value; absent for none.
using Change = std::optional<Held>;

const Held a = 1.1;
const Held b = 1.2;
const Held c = 1.3;
const Held none;
const Change removed = none;
/// Instead of the agreed value, where nothing was ever agreed; and of the stored one.
const Held never = "never";
const Held unreadable = "unreadable";

struct Row {
    const char *what;
    Held local;
    Held agreed;
    Held stored;
    Change toApply;
    Change toPush;
    Held nowAgreed;
    bool changedHere = false;
    const char *key = "TextScale";
};

const char *const limit = "SidebarTermLimit";
const char *const newer = "Course.7.OfANewerVersion";
const char *const address = "CanvasBaseURL";

template<class Map, class Value>
Map mapOf(const char *key, const Value &value) {
    return value ? Map{{key, *value}} : Map();
}

TEST(MergeSettings, DecidesEachKeyByWhatWasAgreed) {
    const Held here = "https://here.example";
    const Held there = "https://there.example";
    const Held blank = "";
    for (const Row &row : std::vector<Row>{
             {"nothing changed", a, a, a, {}, {}, a},
             {"changed here", b, a, a, {}, b, a},
             {"changed there", a, a, b, b, {}, b},
             {"changed on both sides", b, a, c, {}, b, a},
             {"changed alike", b, a, b, {}, {}, b},
             {"removed here", none, a, a, {}, removed, a},
             {"removed there", a, a, none, removed, {}, none},
             {"removed there, changed here", b, a, none, {}, b, a},
             {"added here", a, none, none, {}, a, none},
             {"added there", none, none, a, a, {}, a},
             {"removed there, never held here", none, none, none, {}, {}, none},
             {"cannot be read", a, a, unreadable, {}, {}, a},
             {"cannot be read, changed here", b, a, unreadable, {}, b, a},
             {"of the wrong type", a, a, "large", {}, {}, a},
             {"whole as a real", none, none, 5.0, std::int64_t{5}, {}, std::int64_t{5}, {}, limit},
             {"not synced", none, none, "teal", {}, {}, none, {}, "AccentTheme"},
             {"not synced", none, none, "{}", {}, {}, none, {}, "Trend.1"},
             {"of a newer version", none, none, a, a, {}, a, {}, newer},

             {"first meeting: the store's", a, never, b, b, {}, b},
             {"first meeting: what it lacks", a, never, none, {}, a, none},
             {"first meeting: changed since", a, never, b, {}, a, b, true},
             {"first meeting: removed since", none, never, b, {}, removed, b, true},
             {"first meeting: cannot be read", a, never, unreadable, {}, {}, a},

             {"a blank address there", here, here, blank, {}, {}, here, {}, address},
             {"no address there", here, here, none, {}, {}, here, {}, address},
             {"first meeting: a blank address", here, never, blank, {}, {}, here, {}, address},
             {"signed out here", blank, here, here, {}, blank, here, {}, address},
             {"another address there", here, here, there, there, {}, there, {}, address}}) {
        SCOPED_TRACE(row.what);
        std::optional<PreferenceMap> agreed;
        if (row.agreed != never)
            agreed = mapOf<PreferenceMap>(row.key, row.agreed);
        CloudContents stored;
        if (row.stored == unreadable)
            stored.unreadable = {row.key};
        else
            stored.values = mapOf<decltype(stored.values)>(row.key, row.stored);
        std::set<std::string, std::less<>> changedHere;
        if (row.changedHere)
            changedHere.insert(row.key);
        const SettingsMerge merge =
            mergeSettings(mapOf<PreferenceMap>(row.key, row.local), agreed, stored, changedHere);
        EXPECT_EQ(merge.toApply, mapOf<PreferenceChanges>(row.key, row.toApply));
        EXPECT_EQ(merge.toPush, mapOf<PreferenceChanges>(row.key, row.toPush));
        EXPECT_EQ(merge.agreed, mapOf<PreferenceMap>(row.key, row.nowAgreed));
    }
}

} // namespace
} // namespace ellwynd
