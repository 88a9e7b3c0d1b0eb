// The cloud store as a folder that the teacher's own sync service synchronises.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"

#include <filesystem>

namespace ellwynd {

/// One file for each key, replaced as a whole, in a folder that Nextcloud, Syncthing, Dropbox,
/// OneDrive or the like synchronises with the other machines. Conflict copies of such services are
/// ignored. The last seen contents of each file are saved on this machine, so that the next start
/// reports only later changes.
class SyncedFolder final : public CloudKeyValueStore {
  public:
    /// The platform's limits, in bytes of all values together and in keys.
    static constexpr std::size_t maxBytes = 1024UL * 1024;
    static constexpr std::size_t maxKeys = 1024;

    /// @param folder is created by `watch` and `set` if it does not exist.
    /// @param seenFile stores the last seen contents of this machine's folders.
    SyncedFolder(std::filesystem::path folder, std::filesystem::path seenFile);
    ~SyncedFolder() override;

    /// Starts to watch the folder for outside changes. Needs an event loop.
    void watch();

    std::optional<PreferenceValue> object(const std::string &key) const override;
    void set(const std::string &key, const PreferenceValue &value) override;
    void remove(const std::string &key) override;
    PreferenceMap all() const override;
    void synchronize() override;
    std::shared_ptr<void> observe(Observer observer) override;

    /// The name of a key's file, and the key of a file's name; absent if the file is not a key's.
    [[nodiscard]] static std::string fileName(const std::string &key);
    [[nodiscard]] static std::optional<std::string> keyOf(const std::string &fileName);

  private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ellwynd
