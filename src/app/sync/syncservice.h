// Syncs settings and trends as configured in the preferences.
#pragma once

#include "app/sync/settingssync.h"
#include "memory/trendsync.h"
#include "platform/background/threadworkqueue.h"
#include "platform/cloud/syncedfolder.h"

namespace ellwynd {

/// Opens the synced folder set in the preferences, and syncs settings and trends through it while
/// sync is switched on. Follows both preferences. Used on the main thread.
class SyncService : public QObject {
    Q_OBJECT

  public:
    /// `defaults` and `trends` must outlive this object.
    /// @param agreedFile holds what this machine and the folder last agreed on.
    SyncService(
        UserDefaults &defaults, TrendSync &trends, std::filesystem::path agreedFile,
        Clock now = systemNow);
    /// Pushes what was changed in the last second, if the folder answers in time.
    ~SyncService() override;

    /// The state of the sync, as a sentence for the settings window.
    [[nodiscard]] std::string status() const;
    /// Whether there is a folder whose settings can be removed.
    [[nodiscard]] bool canRemove() const { return store != nullptr && !isRemoving; }

    /// Makes a folder the synced one, in the background: the chosen one, if another computer has
    /// used it, or else a new one named "Ellwynd" in it.
    void chooseFolder(const std::filesystem::path &chosen);
    /// Removes all synced settings from the folder and switches the sync off. This machine keeps
    /// its own; the other machines lose theirs.
    void removeSyncedSettings();
    /// Scans the folder, if sync is switched on. Called when the teacher comes back, and each
    /// minute: not every file system reports changes.
    void scan();

  Q_SIGNALS:
    void statusDidChange();
    void settingsDidSyncExternally();

  private:
    void preferenceDidChange(std::string_view key);
    void restart();
    void closeStore();
    void openStore();
    void showMessage(std::string text);
    void endRemoval();
    [[nodiscard]] bool isOn() const;
    [[nodiscard]] bool isSwitchedOff() const;

    UserDefaults &defaults;
    TrendSync &trends;
    std::filesystem::path agreedFile;
    Clock now;
    ThreadWorkQueue queue;
    std::unique_ptr<SyncedFolder> store;
    std::unique_ptr<SettingsSync> sync;
    QTimer scanTimer;
    /// The result of the last command, until the next one; empty if there is nothing to report.
    std::string message;
    bool isRemoving = false;
    std::shared_ptr<void> observing;
    std::shared_ptr<void> observingScans;
    std::shared_ptr<void> observingRemoval;
};

/// The folder to sync through when the teacher has chosen this one. Looks at the file system.
[[nodiscard]] std::filesystem::path syncedFolderIn(const std::filesystem::path &chosen);

/// What removing the synced settings does, as a question before it.
[[nodiscard]] std::string removalWarning();

} // namespace ellwynd
