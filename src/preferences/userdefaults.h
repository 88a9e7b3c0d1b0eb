// The preferences store.
#pragma once

#include "preferences/preferencekeys.h"

#include <filesystem>
#include <memory>

namespace ellwynd {

/// Preferences in three domains, searched in this order: the launch arguments of this run, the
/// user's file, and the registered defaults. Writes go to the file alone, which is replaced as a
/// whole after every change; a launch argument still takes precedence.
///
/// Several processes may share the file: each rereads it, under a lock, before it applies a change,
/// and `watch` reports the changes of other processes.
///
/// Values of unknown types in the file are preserved and read as absent.
///
/// Observers are called after the change, on the thread that writes or watches.
class UserDefaults {
  public:
    using Observer = std::function<void(std::string_view key)>;

    /// @param file holds the saved domain; a missing file is an empty domain.
    /// @param arguments the domain of the launch arguments.
    UserDefaults(std::filesystem::path file, PreferenceMap arguments);
    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    /// The value in effect, of any type; absent when no domain has one.
    [[nodiscard]] std::optional<PreferenceValue> object(std::string_view key) const;

    /// The value in effect, converted to the key's type; the default if it cannot be converted.
    template<class T>
    [[nodiscard]] T value(const PreferenceKey<T> &key) const {
        T result = key.defaultValue();
        if (const auto stored = object(key.name))
            result = valueAs<T>(*stored).value_or(std::move(result));
        return key.normalise(std::move(result));
    }

    /// Saves a value. A failure to write the file is logged; the value is kept in memory.
    void set(std::string_view key, PreferenceValue value);
    template<class T>
    void set(const PreferenceKey<T> &key, T value) {
        set(key.name, PreferenceValue{key.normalise(std::move(value))});
    }

    /// Removes a saved value, so that the default is in effect again.
    void remove(std::string_view key);

    /// Saves or removes several values in one write of the file. Observers are notified once all
    /// are in effect.
    /// @return the previous values of those that changed; applying it undoes the change.
    PreferenceChanges update(const PreferenceChanges &changes);

    /// The saved values, without launch arguments and defaults.
    [[nodiscard]] PreferenceMap persistentDomain() const;

    /// The saved domain as a JSON object, including values of unknown types.
    [[nodiscard]] std::string persistentDomainJSON() const;

    /// Whether all changes are on the disk.
    [[nodiscard]] bool isSaved() const;

    /// The launch arguments of this run.
    [[nodiscard]] const PreferenceMap &argumentDomain() const;

    /// Calls `observer` after every change of a saved value, for as long as the returned handle
    /// lives.
    [[nodiscard]] std::shared_ptr<void> observe(Observer observer);

    /// Starts to watch the file for changes of other processes. Needs an event loop.
    void watch();
    /// Rereads the file if another process has replaced it, and notifies the observers of the
    /// changes.
    void reloadIfChanged();

  private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ellwynd
