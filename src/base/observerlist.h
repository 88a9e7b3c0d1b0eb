// A list of callbacks, each called for as long as its handle lives.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace ellwynd {

/// Calls observers in the order in which they were added. While they are called, observers may drop
/// handles, including their own, add observers, notify again, or destroy the list. Not thread-safe.
///
/// @tparam Args what observers are called with; each receives the same values.
template<class... Args>
class ObserverList {
  public:
    using Observer = std::function<void(Args...)>;

    ObserverList() = default;
    ObserverList(const ObserverList &) = delete;
    ObserverList &operator=(const ObserverList &) = delete;

    /// @return a handle; once it is dropped, the observer is not called any more. It may outlive
    /// the list.
    [[nodiscard]] std::shared_ptr<void> add(Observer observer) {
        auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
        entries->push_back(entry);
        return {entry.get(), [entry, weakEntries = std::weak_ptr(entries)](void *) {
                    entry->isObserving = false;
                    if (const auto list = weakEntries.lock())
                        std::erase(*list, entry);
                }};
    }

    /// Calls every observer. An observer that is added during the call is first called the next
    /// time; if the list is destroyed during the call, the remaining observers are not called.
    void notify(Args... args) const {
        const std::weak_ptr<const Entries> weakEntries = entries;
        const Entries current = *entries;
        for (const auto &entry : current) {
            if (weakEntries.expired())
                return;
            if (entry->isObserving)
                entry->observer(args...);
        }
    }

  private:
    struct Entry {
        Observer observer;
        bool isObserving = true;
    };
    using Entries = std::vector<std::shared_ptr<Entry>>;

    /// Shared so that handles and a running notification can tell whether the list still exists.
    std::shared_ptr<Entries> entries = std::make_shared<Entries>();
};

} // namespace ellwynd
