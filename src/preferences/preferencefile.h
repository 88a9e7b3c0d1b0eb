// The file of saved preferences, which several processes share.
#pragma once

#include "base/files.h"
#include "preferences/preferencevalue.h"

#include <nlohmann/json.hpp>

namespace ellwynd {

/// A JSON object in memory, written to disk as a whole after every change. Values of unknown types
/// are preserved and read as absent.
///
/// A file that is not valid is set aside, and what is in memory counts as unsaved. One that cannot
/// be read for a moment is left alone until it can. Failures are logged; the in-memory state is
/// kept, and changes that could not be saved are saved with the next one, on top of what other
/// processes have saved. Where another process saved a value of the same key after such a change,
/// that value is the newer one and stays.
class PreferenceFile {
  public:
    /// @param path a missing file is an empty object.
    explicit PreferenceFile(std::filesystem::path path);

    [[nodiscard]] std::optional<PreferenceValue> value(std::string_view key) const;
    /// Whether the file has the key; true also for a mark that hides another file's value.
    [[nodiscard]] bool contains(std::string_view key) const;
    [[nodiscard]] PreferenceMap values() const;
    /// The object, including values of unknown types.
    [[nodiscard]] const nlohmann::json &object() const { return saved; }
    /// Whether all changes are on disk.
    [[nodiscard]] bool isSaved() const { return unsaved.empty(); }
    struct Outcome {
        /// The previous values of the keys that this update changed.
        PreferenceChanges replaced;
        /// The keys that another process had changed, followed by those of `replaced`.
        std::vector<std::string> changedKeys;
    };
    /// How a removed key is stored.
    enum class Removal {
        erase,
        /// As null, which hides the value of another file.
        hide,
    };
    /// Applies changes to the file's current values, under its lock.
    Outcome update(const PreferenceChanges &changes, Removal removal = Removal::erase);

    /// Rereads the file if another process has replaced it.
    /// @return the keys that changed.
    std::vector<std::string> reloadIfChanged();

  private:
    struct Unsaved {
        /// Absent if the key was removed.
        std::optional<nlohmann::json> value;
        /// What the file held when the key was changed; absent if it lacked the key.
        std::optional<nlohmann::json> inFile;
    };

    void load();
    void set(const std::string &key, const std::optional<nlohmann::json> &value);
    void applyUnsaved(bool fileMayBeNewer);
    void setAside() const;
    void save();

    std::filesystem::path path;
    nlohmann::json saved = nlohmann::json::object();
    /// Changes in `saved` that are not on disk.
    std::map<std::string, Unsaved, std::less<>> unsaved;
    /// The file's stamp when `saved` was read or written.
    files::Stamp seen;
    /// Whether the file could be read, or does not exist. Nothing is written before.
    bool isReadable = true;
};

} // namespace ellwynd
