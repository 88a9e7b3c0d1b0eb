// The file of saved preferences, which several processes share.
#pragma once

#include "base/files.h"
#include "preferences/preferencevalue.h"

#include <nlohmann/json.hpp>

namespace ellwynd {

/// A JSON object in memory, written to disk as a whole after every change. Values of unknown types
/// are preserved and read as absent.
///
/// A file that cannot be read is set aside. Failures are logged; the in-memory state is kept, and
/// the next change writes it.
class PreferenceFile {
  public:
    /// @param path a missing file is an empty object.
    explicit PreferenceFile(std::filesystem::path path);

    [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const;
    [[nodiscard]] PreferenceMap values() const;
    /// The object as JSON, including values of unknown types.
    [[nodiscard]] std::string text() const;

    /// Whether the last save succeeded.
    [[nodiscard]] bool isSaved() const { return lastSaveSucceeded; }

    struct Outcome {
        /// The previous values of the keys that this update changed.
        PreferenceChanges replaced;
        /// The keys that another process had changed, followed by those of `replaced`.
        std::vector<std::string> changedKeys;
    };
    /// Applies changes to the file's current values, under its lock.
    Outcome update(const PreferenceChanges &changes);

    /// Rereads the file if another process has replaced it.
    /// @return the keys that changed.
    std::vector<std::string> reloadIfChanged();

  private:
    void load();
    void setAside() const;
    void save();

    std::filesystem::path path;
    nlohmann::json saved = nlohmann::json::object();
    /// The file's stamp when `saved` was read or written.
    files::Stamp seen;
    bool lastSaveSucceeded = true;
};

} // namespace ellwynd
