// Syncs settings and trends as configured in the preferences.
#pragma once

#include "app/sync/settingssync.h"
#include "memory/trendsync.h"
#include "platform/cloud/syncedfolder.h"

namespace ellwynd {

/// Opens the synced folder set in the preferences, and syncs settings and trends through it while
/// sync is switched on. Follows both preferences. Used on the main thread.
class SyncService : public QObject {
    Q_OBJECT

  public:
    /// `defaults` and `trends` must outlive this object.
    /// @param seenFile stores the last seen contents of this machine's folders.
    SyncService(UserDefaults &defaults, TrendSync &trends, std::filesystem::path seenFile);
    ~SyncService() override;

    /// The state of the sync, as a sentence for the settings window.
    [[nodiscard]] std::string status() const;
    /// Whether a synced folder is set.
    [[nodiscard]] bool canRemove() const { return store != nullptr; }
    /// Removes all synced settings from the folder, if one is set; this machine keeps its own.
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
