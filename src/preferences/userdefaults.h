// The preferences store.
#pragma once

#include "preferences/preferencekeys.h"

#include <filesystem>
#include <memory>

namespace ellwynd {

/// Preferences in three domains, asked in this order: the launch arguments of this run, what is
/// saved in the user's file, and the program's registered defaults. Writing goes to the file alone,
/// which is replaced as a whole after every change, and a value forced for one run stays in force.
///
/// Several processes may share the file: each reads it again, under a lock, before it applies a
/// change, and one that watches hears of the others' changes.
///
/// Values in the file of a shape that the program does not know are kept and read as absent.
///
/// Observers are called on the thread that writes or watches, after the change.
class UserDefaults {
  public:
    using Observer = std::function<void(std::string_view key)>;

    /// @param file where the saved domain lives; a missing file is an empty domain.
    /// @param arguments the launch arguments' domain.
    UserDefaults(std::filesystem::path file, PreferenceMap arguments);
    ~UserDefaults();
    UserDefaults(const UserDefaults &) = delete;
    UserDefaults &operator=(const UserDefaults &) = delete;

    /// The value in effect, whatever its type; absent when no domain has one.
    [[nodiscard]] std::optional<PreferenceValue> object(std::string_view key) const;

    /// The value in effect as the key's type; one of another type reads as the key's default.
    template<class T>
    [[nodiscard]] T value(const PreferenceKey<T> &key) const {
        T result = key.absent();
        if (const auto stored = object(key.name))
            result = valueAs<T>(*stored).value_or(std::move(result));
        return key.normalise(std::move(result));
    }

    /// Saves a value. A file that cannot be written is logged; the value holds for this run.
    void set(std::string_view key, PreferenceValue value);
    template<class T>
    void set(const PreferenceKey<T> &key, T value) {
        set(key.name, PreferenceValue{key.normalise(std::move(value))});
    }

    /// Forgets a saved value, so that the default is in effect again.
    void remove(std::string_view key);

    /// Saves several values, or forgets those that are absent, in one write of the file. Observers
    /// hear of them when all are in effect.
    /// @return what the values that changed were before; applying it takes the change back.
    PreferenceChanges update(const PreferenceChanges &changes);

    /// What is saved, without launch arguments and defaults.
    [[nodiscard]] PreferenceMap persistentDomain() const;

    /// The saved domain as its file holds it: one JSON object, values of unknown shape included.
    [[nodiscard]] std::string persistentDomainJSON() const;

    /// The values forced for this run.
    [[nodiscard]] const PreferenceMap &argumentDomain() const;

    /// Calls `observer` after every change of a saved value, for as long as the returned handle
    /// lives.
    [[nodiscard]] std::shared_ptr<void> observe(Observer observer);

    /// From now on notices what other processes save. Needs an event loop.
    void watch();
    /// Reads the file again if another process has replaced it, and tells the observers what
    /// changed.
    void reloadIfChanged();

  private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ellwynd
