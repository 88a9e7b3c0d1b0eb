// Settings sync between the teacher's machines.
#pragma once

#include "platform/background/workqueue.h"
#include "platform/cloud/cloudkeyvaluestore.h"
#include "preferences/userdefaults.h"

#include <QObject>
#include <QTimer>

#include <filesystem>
#include <set>

namespace ellwynd {

/// Synchronises the preferences that the table marks as synced, and those of single courses, with
/// the cloud store. Used on the main thread.
///
/// What both sides held when they last agreed is saved on this machine. So a change made here while
/// nothing was synced, or by another process, is pushed later; and what another machine changed
/// meanwhile is applied.
class SettingsSync : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    /// @param queue saves the file of what was agreed.
    /// @param agreedFile holds what both sides last agreed on.
    /// @param pushDelay the time from the last local change to a push.
    SettingsSync(
        UserDefaults &defaults, CloudKeyValueStore &store, WorkQueue &queue,
        std::filesystem::path agreedFile,
        std::chrono::milliseconds pushDelay = std::chrono::seconds(1));
    ~SettingsSync() override;

    /// Starts to sync. Does nothing if "SyncSettingsViaICloud" is off, if the sample college is
    /// shown, or if a launch argument overrides a synced setting, which must never reach another
    /// machine.
    void start();
    void stop();
    [[nodiscard]] bool isRunning() const { return observingStore != nullptr; }

    /// Whether a local change waits to be pushed.
    [[nodiscard]] bool isPushDue() const { return pushTimer.isActive(); }
    /// Merges this machine's settings with the store's, after a scan of the store.
    void push();

  Q_SIGNALS:
    /// Settings of another machine were applied here.
    void settingsDidSyncExternally();

  private:
    void localChange(std::string_view key);
    void storeDidChange(const CloudChange &change);
    void apply(PreferenceChanges changes, const std::string &mark);
    void loadAgreed();
    void saveAgreed();
    [[nodiscard]] PreferenceMap savedSettings() const;

    UserDefaults &defaults;
    CloudKeyValueStore &store;
    WorkQueue &queue;
    std::filesystem::path agreedFile;
    /// Null while sync is stopped.
    std::shared_ptr<void> observingStore;
    std::shared_ptr<void> observingDefaults;
    QTimer pushTimer;
    /// Set while remote values are written here, so that they are not pushed back.
    bool applyingRemote = false;
    /// What both sides held at the last merge; absent before the first one with this store.
    std::optional<PreferenceMap> agreed;
    /// The mark of the store that `agreed` was agreed with.
    std::string agreedMark;
    /// Whether the file could not be read for a reason that may pass. Nothing is merged before it
    /// can be: without it, every change made here would count as older than the store's.
    bool agreedIsUnavailable = false;
    /// Whether `agreed` differs from its file.
    bool agreedIsUnsaved = false;
    /// Synced keys changed here since the sync was started that were not merged yet.
    std::set<std::string, std::less<>> changedHere;
};

/// Removes the synced settings that the last scan of the store found; this machine keeps its own.
void removeSyncedSettings(CloudKeyValueStore &store);

} // namespace ellwynd
