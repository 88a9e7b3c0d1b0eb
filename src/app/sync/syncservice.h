// The sync of settings and trends as the preferences ask for it.
#pragma once

#include "app/sync/settingssync.h"
#include "memory/trendsync.h"
#include "platform/cloud/syncedfolder.h"

namespace ellwynd {

/// Opens the synced folder that the preferences name and runs settings sync and trend sync over it,
/// while both the folder is named and sync is switched on; follows both preferences.
class SyncService : public QObject {
    Q_OBJECT

  public:
    /// @param seenFile where this machine keeps what it has seen of its folders.
    SyncService(UserDefaults &defaults, TrendSync &trends, std::filesystem::path seenFile);
    ~SyncService() override;

    /// How it stands, in a sentence.
    [[nodiscard]] std::string status() const;
    [[nodiscard]] bool canRemove() const { return store != nullptr; }
    void removeSyncedSettings();

  Q_SIGNALS:
    void statusDidChange();
    void settingsDidSyncExternally();

  private:
    void restart();

    UserDefaults &defaults;
    TrendSync &trends;
    std::filesystem::path seenFile;
    std::unique_ptr<SyncedFolder> store;
    std::unique_ptr<SettingsSync> sync;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
