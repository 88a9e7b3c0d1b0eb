#include "base/observerlist.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <utility>

namespace ellwynd {
namespace {

/// Three observers that record their numbers; the first one also runs `action`.
struct Observed {
    std::optional<ObserverList<int>> list{std::in_place};
    std::string called;
    std::function<void()> action = [] {};
    std::shared_ptr<void> first = list->add([this](int) {
        called += "1";
        action();
    });
    std::shared_ptr<void> second = list->add([this](int) { called += "2"; });
    std::shared_ptr<void> third = list->add([this](int) { called += "3"; });
    std::shared_ptr<void> late;
};

TEST(ObserverList, ObserversMayChangeTheListWhileCalled) {
    struct Row {
        const char *what;
        void (*action)(Observed &);
        const char *called;
        const char *calledNext;
    };
    for (const Row &row : std::vector<Row>{
             {"nothing", [](Observed &) {}, "123", "123"},
             {"drops a later handle", [](Observed &o) { o.second.reset(); }, "13", "13"},
             {"drops its own handle", [](Observed &o) { o.first.reset(); }, "123", "23"},
             {"drops all handles",
              [](Observed &o) { o.first.reset(), o.second.reset(), o.third.reset(); }, "1", ""},
             {"adds an observer",
              [](Observed &o) { o.late = o.list->add([&o](int) { o.called += "4"; }); }, "123",
              "1234"},
             {"drops its own handle and notifies",
              [](Observed &o) { o.first.reset(), o.list->notify(2); }, "12323", "23"},
             {"destroys the list", [](Observed &o) { o.list.reset(); }, "1", ""}}) {
        Observed observed;
        bool acted = false;
        observed.action = [&] {
            // Only once, so that the second notification shows the effect.
            if (!std::exchange(acted, true))
                row.action(observed);
        };
        observed.list->notify(1);
        EXPECT_EQ(std::exchange(observed.called, ""), row.called) << row.what;
        if (observed.list)
            observed.list->notify(1);
        EXPECT_EQ(observed.called, row.calledNext) << row.what;
    }
}

TEST(ObserverList, HandlesOwnTheirObserversAndMayOutliveTheList) {
    const auto held = std::make_shared<int>(0);
    std::optional<ObserverList<std::string_view, int>> list(std::in_place);
    auto handle = list->add([held](std::string_view, int value) { *held += value; });
    auto other = list->add([held](std::string_view, int value) { *held += value; });
    list->notify("key", 3);
    EXPECT_EQ(*held, 6);
    other.reset();
    EXPECT_EQ(held.use_count(), 2);
    list.reset();
    handle.reset();
    EXPECT_EQ(held.use_count(), 1);
}

} // namespace
} // namespace ellwynd
