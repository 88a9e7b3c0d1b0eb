#include "app/sync/syncservice.h"

namespace ellwynd {

SyncService::SyncService(UserDefaults &defaults, TrendSync &trends, std::filesystem::path seenFile)
    : defaults(defaults),
      trends(trends),
      seenFile(std::move(seenFile)),
      observing(defaults.observe([this](std::string_view key) {
          // Queued: the folder must not be closed while it reports the change.
          if (key == preferences::syncSettings.name || key == preferences::cloudStoreFolder.name)
              QMetaObject::invokeMethod(this, &SyncService::restart, Qt::QueuedConnection);
      })) {
    restart();
}

SyncService::~SyncService() {
    trends.setStore(nullptr);
}

void SyncService::restart() {
    if (sync)
        sync->stop();
    sync.reset();
    trends.setStore(nullptr);
    store.reset();
    const std::string folder = defaults.value(preferences::cloudStoreFolder);
    if (!folder.empty()) {
        store = std::make_unique<SyncedFolder>(folder, seenFile);
        sync = std::make_unique<SettingsSync>(defaults, *store);
        connect(
            sync.get(), &SettingsSync::settingsDidSyncExternally, this,
            &SyncService::settingsDidSyncExternally);
        if (defaults.value(preferences::syncSettings))
            store->watch();
        sync->start();
        trends.setStore(store.get());
        trends.start();
    }
    Q_EMIT statusDidChange();
}

std::string SyncService::status() const {
    if (defaults.value(preferences::sampleData))
        return "Settings are not synced while the sample college is shown.";
    if (!defaults.value(preferences::syncSettings))
        return "Settings stay on this computer.";
    if (!store)
        return "Choose a folder that your sync service synchronises, such as one in Nextcloud, "
               "Syncthing, Dropbox or OneDrive.";
    return sync->isRunning() ? "Settings are synced through this folder."
                             : "Not syncing: Ellwynd was started with settings for this run only.";
}

void SyncService::removeSyncedSettings() {
    if (sync)
        sync->removeSyncedSettings();
}

} // namespace ellwynd
