// Synchronises settings between the teacher's machines.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"
#include "preferences/userdefaults.h"

#include <QObject>
#include <QTimer>

#include <set>

namespace ellwynd {

/// Synchronises the preferences that the table marks as synced, and those of single courses, with
/// the cloud store. Used on the main thread.
class SettingsSync : public QObject {
    Q_OBJECT

  public:
    /// `defaults` and `store` must outlive this object.
    /// @param pushDelay the time from the last local change to a push.
    SettingsSync(
        UserDefaults &defaults, CloudKeyValueStore &store,
        std::chrono::milliseconds pushDelay = std::chrono::seconds(1));
    ~SettingsSync() override;

    /// Starts to sync. Does nothing if "SyncSettingsViaICloud" is off, if the sample college is
    /// shown, or if a launch argument overrides a synced setting, which must never reach another
    /// machine.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return observingStore != nullptr; }

    /// Writes the synced settings that differ to the store, and removes those removed here.
    void push();
    /// Removes all synced settings from the store; this machine keeps its own copies.
    void removeSyncedSettings();

  Q_SIGNALS:
    /// Settings of another machine were applied here.
    void settingsDidSyncExternally();

  private:
    void localChange(std::string_view key);
    void applyExternalChange(const CloudChange &change);
    [[nodiscard]] PreferenceMap savedSettings() const;

    UserDefaults &defaults;
    CloudKeyValueStore &store;
    /// Null while sync is stopped.
    std::shared_ptr<void> observingStore;
    std::shared_ptr<void> observingDefaults;
    QTimer pushTimer;
    /// Set while remote values are written here, so that they are not pushed back.
    bool applyingRemote = false;
    /// Synced keys saved here as of the last push or remote change. One that is no longer saved was
    /// removed on this machine.
    std::set<std::string, std::less<>> held;
};

} // namespace ellwynd
