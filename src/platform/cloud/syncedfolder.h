// The cloud store as a folder that the teacher's own sync service synchronises.
#pragma once

#include "base/date.h"
#include "platform/background/workqueue.h"
#include "platform/cloud/cloudkeyvaluestore.h"

#include <filesystem>

namespace ellwynd {

/// One file for each key, replaced as a whole, in a folder that Nextcloud, Syncthing, Dropbox,
/// OneDrive or the like synchronises with the other machines. Conflict copies of such services are
/// ignored. A folder that is away is waited for; it is never created here.
class SyncedFolder final : public CloudKeyValueStore {
  public:
    /// @param queue scans and writes; must outlive this object.
    /// @param knownMark the mark of the folder that this machine is in step with; empty if none.
    SyncedFolder(
        std::filesystem::path folder, WorkQueue &queue, std::string knownMark,
        Clock now = systemNow);
    ~SyncedFolder() override;

    /// Starts to watch the folder for outside changes. Needs an event loop. Not every file system
    /// reports them, so the folder must also be scanned from time to time.
    void watch();

    const CloudContents *contents() const override;
    void update(PreferenceChanges changes) override;
    void synchronize() override;
    std::shared_ptr<void> observe(Observer observer) override;

    /// Why the folder could not be used the last time, as a sentence; empty if it could.
    [[nodiscard]] const std::string &problem() const;
    /// When the last scan that succeeded ended; absent before.
    [[nodiscard]] std::optional<Date> lastScan() const;
    /// Calls `observer` after every scan, failed ones included, and after the observers of changes.
    [[nodiscard]] std::shared_ptr<void> observeScans(std::function<void()> observer);

  private:
    struct State;
    std::shared_ptr<State> state;
};

} // namespace ellwynd
