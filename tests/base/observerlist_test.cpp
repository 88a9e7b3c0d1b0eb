#include "base/observerlist.h"

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <utility>

namespace ellwynd {
namespace {

/// Three observers that record their names; the first one also runs `action`.
struct Observed {
    std::optional<ObserverList<int>> list{std::in_place};
    std::vector<std::string> called;
    std::function<void()> action = [] {};
    std::shared_ptr<void> first = list->add([this](int) {
        called.emplace_back("first");
        action();
    });
    std::shared_ptr<void> second = list->add([this](int) { called.emplace_back("second"); });
    std::shared_ptr<void> third = list->add([this](int) { called.emplace_back("third"); });
    std::shared_ptr<void> late;
};

TEST(ObserverList, ObserversMayChangeTheListWhileCalled) {
    struct Row {
        const char *what;
        void (*action)(Observed &);
        std::vector<std::string> called;
        std::vector<std::string> calledNext;
    };
    for (const Row &row : std::vector<Row>{
             {"nothing",
              [](Observed &) {},
              {"first", "second", "third"},
              {"first", "second", "third"}},
             {"drops a later handle",
              [](Observed &o) { o.second.reset(); },
              {"first", "third"},
              {"first", "third"}},
             {"drops its own handle",
              [](Observed &o) { o.first.reset(); },
              {"first", "second", "third"},
              {"second", "third"}},
             {"drops all handles",
              [](Observed &o) { o.first.reset(), o.second.reset(), o.third.reset(); },
              {"first"},
              {}},
             {"adds an observer",
              [](Observed &o) {
                  o.late = o.list->add([&o](int) { o.called.emplace_back("late"); });
              },
              {"first", "second", "third"},
              {"first", "second", "third", "late"}},
             {"drops its own handle and notifies",
              [](Observed &o) { o.first.reset(), o.list->notify(2); },
              {"first", "second", "third", "second", "third"},
              {"second", "third"}},
             {"destroys the list", [](Observed &o) { o.list.reset(); }, {"first"}, {}}}) {
        Observed observed;
        bool acted = false;
        observed.action = [&] {
            // Only once, so that the second notification shows the effect.
            if (!std::exchange(acted, true))
                row.action(observed);
        };
        observed.list->notify(1);
        EXPECT_EQ(observed.called, row.called) << row.what;
        observed.called.clear();
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
