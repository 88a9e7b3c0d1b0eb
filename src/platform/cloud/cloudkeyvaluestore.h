// A small key-value store that is synchronised between a teacher's machines.
#pragma once

#include "preferences/preferencevalue.h"

#include <memory>
#include <set>

namespace ellwynd {

/// The store as one scan found it.
struct CloudContents {
    /// Identifies the store; empty if it has no mark yet, which the first write adds.
    std::string mark;
    PreferenceMap values;
    /// Keys with a value that cannot be read at present, such as one that is still being delivered.
    /// They are neither changed nor removed.
    std::set<std::string, std::less<>> unreadable;

    bool operator==(const CloudContents &) const = default;
};

/// What a scan found.
struct CloudChange {
    enum class Reason {
        /// The keys were changed by other machines since the last scan. There may be none.
        serverChange,
        /// The first scan of this process, or the first of another store; the keys are all keys of
        /// the store.
        initialSync,
        /// The store is full, and the keys were not written.
        quotaViolation,
    };

    Reason reason = Reason::serverChange;
    std::vector<std::string> keys;
    /// Whether the scan followed a write of this process. What it did not write is then not to be
    /// written again unless there are news.
    bool followsWrite = false;

    bool operator==(const CloudChange &) const = default;
};

/// Values by key, shared by all of a teacher's machines. Scans and writes run in the background;
/// everything else on the main thread.
class CloudKeyValueStore {
  public:
    using Observer = std::function<void(const CloudChange &)>;

    CloudKeyValueStore() = default;
    CloudKeyValueStore(const CloudKeyValueStore &) = delete;
    CloudKeyValueStore &operator=(const CloudKeyValueStore &) = delete;
    virtual ~CloudKeyValueStore() = default;

    /// The contents at the last scan that succeeded; null before the first. Valid until the event
    /// loop runs.
    [[nodiscard]] virtual const CloudContents *contents() const = 0;

    /// The value of a key at the last scan; absent if there is none.
    [[nodiscard]] std::optional<PreferenceValue> object(std::string_view key) const;
    /// All values at the last scan.
    [[nodiscard]] PreferenceMap all() const;

    /// Writes and removes values, and then scans. A key that another machine has changed since the
    /// last scan is left alone; so is one whose value only a newer version can read. Does nothing
    /// while the store cannot be read.
    virtual void update(PreferenceChanges changes) = 0;
    void set(const std::string &key, PreferenceValue value) { update({{key, std::move(value)}}); }
    void remove(const std::string &key) { update({{key, std::nullopt}}); }

    /// Scans, and notifies the observers.
    virtual void synchronize() = 0;

    /// Calls `observer` after each scan that succeeded, for as long as the handle lives. This
    /// process's own writes are not among the changed keys.
    [[nodiscard]] virtual std::shared_ptr<void> observe(Observer observer) = 0;
};

} // namespace ellwynd
