// A small key-value store that follows a teacher from machine to machine.
#pragma once

#include "preferences/preferencevalue.h"

#include <memory>

namespace ellwynd {

/// What another machine, or the store itself, did.
struct CloudChange {
    enum class Reason {
        /// Another machine changed the keys.
        serverChange,
        /// This machine meets the store for the first time; the keys are all of it.
        initialSync,
        /// The store is full; what was written last is not in it.
        quotaViolation,
    };

    Reason reason = Reason::serverChange;
    std::vector<std::string> keys;

    bool operator==(const CloudChange &) const = default;
};

/// Values by key, shared by all of one teacher's machines. Lives on the main thread.
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

    /// Looks for what other machines did and tells the observers.
    virtual void synchronize() = 0;

    /// Calls `observer` on outside changes, never on this machine's own, for as long as the handle
    /// lives.
    [[nodiscard]] virtual std::shared_ptr<void> observe(Observer observer) = 0;
};

} // namespace ellwynd
