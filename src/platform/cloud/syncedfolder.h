// The cloud store as a folder that the teacher's own sync service keeps in step.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"

#include <filesystem>

namespace ellwynd {

/// One file for each key, replaced as a whole, in a folder that Nextcloud, Syncthing, Dropbox,
/// OneDrive or the like carries to the other machines. Copies that such a service makes of
/// conflicting files are ignored. What was last seen of each file is kept on this machine, so that
/// a later start reports only what changed since.
class SyncedFolder final : public CloudKeyValueStore {
  public:
    /// The platform's limits, in bytes of all values together and in keys.
    static constexpr std::size_t maxBytes = 1024UL * 1024;
    static constexpr std::size_t maxKeys = 1024;

    /// @param folder made when it is not there.
    /// @param seenFile where this machine keeps what it has seen of its folders.
    SyncedFolder(std::filesystem::path folder, std::filesystem::path seenFile);
    ~SyncedFolder() override;

    /// From now on notices outside changes by itself. Needs an event loop.
    void watch();

    std::optional<PreferenceValue> object(const std::string &key) const override;
    void set(const std::string &key, const PreferenceValue &value) override;
    void remove(const std::string &key) override;
    PreferenceMap all() const override;
    void synchronize() override;
    std::shared_ptr<void> observe(Observer observer) override;

    /// The name of a key's file, and the key of a file's name; absent for a file that is no key's.
    [[nodiscard]] static std::string fileName(const std::string &key);
    [[nodiscard]] static std::optional<std::string> keyOf(const std::string &fileName);

  private:
    struct State;
    std::unique_ptr<State> state;
};

} // namespace ellwynd
