// The file of the saved preferences, which several processes share.
#pragma once

#include "base/files.h"
#include "preferences/preferencevalue.h"

#include <nlohmann/json.hpp>

namespace ellwynd {

/// One JSON object in memory, replaced on disk as a whole after every change. Values of a shape the
/// program does not know are kept as they are and read as absent.
///
/// A file that cannot be read is set aside. Failures are logged; what is in memory is kept, and the
/// next change writes it.
class PreferenceFile {
  public:
    /// @param path a missing file is an empty object.
    explicit PreferenceFile(std::filesystem::path path);

    [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const;
    [[nodiscard]] PreferenceMap values() const;
    /// The object as text, values of unknown shape included.
    [[nodiscard]] std::string text() const;

    struct Outcome {
        /// What the values that this process changed were before.
        PreferenceChanges replaced;
        /// These keys, and before them those that another process was found to have changed.
        std::vector<std::string> changedKeys;
    };
    /// Applies changes on top of what the file holds now, under its lock.
    Outcome update(const PreferenceChanges &changes);

    /// Reads the file again if another process has replaced it.
    /// @return the keys that changed.
    std::vector<std::string> reloadIfChanged();

  private:
    void load();
    void setAside() const;
    void save();

    std::filesystem::path path;
    nlohmann::json saved = nlohmann::json::object();
    /// Of the file as `saved` has it.
    files::Stamp seen;
};

} // namespace ellwynd
