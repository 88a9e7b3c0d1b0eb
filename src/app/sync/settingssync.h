// Settings that follow the teacher from machine to machine.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"
#include "preferences/userdefaults.h"

#include <QObject>
#include <QTimer>

#include <set>

namespace ellwynd {

/// Keeps the preferences that the table marks as synced, and every course's own, in step with the
/// cloud store.
class SettingsSync : public QObject {
    Q_OBJECT

  public:
    /// @param pushDelay the quiet after the last change before a push.
    SettingsSync(
        UserDefaults &defaults, CloudKeyValueStore &store,
        std::chrono::milliseconds pushDelay = std::chrono::seconds(1));
    ~SettingsSync() override;

    /// Does nothing while "SyncSettingsViaICloud" is off or the sample college is shown, nor while
    /// a launch argument forces a synced setting, which must never reach another machine.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return observingStore != nullptr; }

    /// Writes every synced setting that differs to the store, and takes out what was removed here.
    void push();
    /// Takes every synced setting out of the store; this machine keeps its own.
    void removeSyncedSettings();

  Q_SIGNALS:
    /// After settings of another machine were applied here.
    void settingsDidSyncExternally();

  private:
    void localChange(std::string_view key);
    void applyExternalChange(const CloudChange &change);
    [[nodiscard]] PreferenceMap savedSettings() const;

    UserDefaults &defaults;
    CloudKeyValueStore &store;
    std::shared_ptr<void> observingStore;
    std::shared_ptr<void> observingDefaults;
    QTimer pushTimer;
    /// Set while a remote value is being written here, which is no change of the teacher's.
    bool applyingRemote = false;
    /// Synced keys that this machine has held since the start.
    std::set<std::string, std::less<>> held;
};

} // namespace ellwynd
