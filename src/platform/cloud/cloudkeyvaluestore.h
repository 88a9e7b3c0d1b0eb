// A small key-value store that is synchronised between a teacher's machines.
#pragma once

#include "preferences/preferencevalue.h"

#include <memory>

namespace ellwynd {

/// A change that this machine did not make.
struct CloudChange {
    enum class Reason {
        /// Another machine changed the keys.
        serverChange,
        /// The first scan on this machine; the keys are all keys of the store.
        initialSync,
        /// The store is full, and the last write failed.
        quotaViolation,
    };

    Reason reason = Reason::serverChange;
    std::vector<std::string> keys;

    bool operator==(const CloudChange &) const = default;
};

/// Values by key, shared by all of a teacher's machines. Used on the main thread.
class CloudKeyValueStore {
  public:
    using Observer = std::function<void(const CloudChange &)>;

    CloudKeyValueStore() = default;
    CloudKeyValueStore(const CloudKeyValueStore &) = delete;
    CloudKeyValueStore &operator=(const CloudKeyValueStore &) = delete;
    virtual ~CloudKeyValueStore() = default;

    [[nodiscard]] virtual std::optional<PreferenceValue> object(const std::string &key) const = 0;
    virtual void set(const std::string &key, const PreferenceValue &value) = 0;
    virtual void remove(const std::string &key) = 0;
    [[nodiscard]] virtual PreferenceMap all() const = 0;

    /// Checks for changes of other machines and notifies the observers.
    virtual void synchronize() = 0;

    /// Calls `observer` on outside changes, never on this machine's own, for as long as the handle
    /// lives.
    [[nodiscard]] virtual std::shared_ptr<void> observe(Observer observer) = 0;
};

} // namespace ellwynd
