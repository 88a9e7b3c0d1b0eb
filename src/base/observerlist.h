// Observers of a change, each called for as long as its handle lives.
#pragma once

#include <functional>
#include <memory>
#include <vector>

namespace ellwynd {

/// Calls observers in the order in which they were added. Observers may drop handles, their own
/// included, add others, notify again, or destroy the list while they are called. Not thread-safe.
///
/// @tparam Args what observers are called with; each receives the same values.
template<class... Args>
class ObserverList {
  public:
    using Observer = std::function<void(Args...)>;

    ObserverList() = default;
    ObserverList(const ObserverList &) = delete;
    ObserverList &operator=(const ObserverList &) = delete;

    /// @return the handle; the observer is never called once it is dropped. It may outlive the
    /// list.
    [[nodiscard]] std::shared_ptr<void> add(Observer observer) {
        auto entry = std::make_shared<Entry>(Entry{std::move(observer)});
        entries->push_back(entry);
        return {entry.get(), [entry, weakEntries = std::weak_ptr(entries)](void *) {
                    entry->isObserving = false;
                    if (const auto list = weakEntries.lock())
                        std::erase(*list, entry);
                }};
    }

    /// Calls every observer. One that is added meanwhile is first called the next time; when the
    /// list is destroyed meanwhile, the rest are not called.
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
