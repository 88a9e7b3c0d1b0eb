#include "app/sync/syncservice.h"

#include "base/calendar.h"
#include "platform/cloud/foldercontents.h"

#include <QPointer>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr std::chrono::minutes scanInterval{1};
/// How long the end of the program waits for a push.
constexpr std::chrono::seconds lastPushLimit{2};
/// The name of the folder that is created in the one that was chosen.
constexpr const char *folderName = "Ellwynd";

} // namespace

std::filesystem::path syncedFolderIn(const std::filesystem::path &chosen) {
    const bool isEllwynds = chosen.filename() == folderName || folderContents::hasMark(chosen);
    return isEllwynds ? chosen : chosen / folderName;
}

std::string removalWarning() {
    return "The settings in the folder are deleted, and sync is switched off on this computer. "
           "This computer keeps its settings. Your other computers that sync through this folder "
           "lose theirs: they go back to the defaults, for the courses too.";
}

SyncService::SyncService(
    UserDefaults &defaults, TrendSync &trends, std::filesystem::path agreedFile, Clock now)
    : defaults(defaults),
      trends(trends),
      agreedFile(std::move(agreedFile)),
      now(now),
      observing(defaults.observe([this](std::string_view key) { preferenceDidChange(key); })) {
    scanTimer.setInterval(scanInterval);
    connect(&scanTimer, &QTimer::timeout, this, &SyncService::scan);
    restart();
}

SyncService::~SyncService() {
    if (sync && sync->isPushDue())
        sync->push();
    queue.finish(lastPushLimit);
    trends.setStore(nullptr);
}

void SyncService::preferenceDidChange(std::string_view key) {
    if (key != preferences::syncSettings.name && key != preferences::cloudStoreFolder.name)
        return;
    message.clear();
    // Queued: the folder must not be closed while it reports the change.
    QMetaObject::invokeMethod(this, &SyncService::restart, Qt::QueuedConnection);
}

bool SyncService::isOn() const {
    return defaults.value(preferences::syncSettings) && !defaults.value(preferences::sampleData);
}

/// Whether the teacher switched it off, and not a launch argument.
bool SyncService::isSwitchedOff() const {
    const PreferenceMap saved = defaults.persistentDomain();
    const auto on = saved.find(preferences::syncSettings.name);
    const bool isSavedOn = on != saved.end() && on->second == PreferenceValue(true);
    return !isSavedOn && !isOn();
}

/// Leaves scans and writes that have not ended unheard.
void SyncService::closeStore() {
    if (sync)
        sync->stop();
    sync.reset();
    trends.setStore(nullptr);
    observingScans.reset();
    observingRemoval.reset();
    store.reset();
}

void SyncService::openStore() {
    store = std::make_unique<SyncedFolder>(
        defaults.value(preferences::cloudStoreFolder), queue,
        defaults.value(preferences::syncedFolderMark), now);
}

void SyncService::restart() {
    closeStore();
    isRemoving = false;
    if (defaults.value(preferences::sampleData))
        return;
    // Once switched on again, this machine and the folder meet for the first time.
    if (isSwitchedOff() && !defaults.value(preferences::syncedFolderMark).empty())
        defaults.remove(preferences::syncedFolderMark.name);
    if (!defaults.value(preferences::cloudStoreFolder).empty()) {
        openStore();
        observingScans = store->observeScans([this] { Q_EMIT statusDidChange(); });
        sync = std::make_unique<SettingsSync>(defaults, *store, queue, agreedFile);
        connect(
            sync.get(), &SettingsSync::settingsDidSyncExternally, this,
            &SyncService::settingsDidSyncExternally);
        if (isOn())
            store->watch();
        sync->start();
        trends.setStore(store.get());
        trends.start();
    }
    if (store && isOn())
        scanTimer.start();
    else
        scanTimer.stop();
    Q_EMIT statusDidChange();
}

void SyncService::scan() {
    if (store && isOn())
        store->synchronize();
}

std::string SyncService::status() const {
    if (defaults.value(preferences::sampleData))
        return "Settings are not synced while the sample college is shown.";
    if (isRemoving)
        return "Removing the synced settings…";
    if (!message.empty())
        return message;
    if (!defaults.value(preferences::syncSettings))
        return "Settings stay on this computer.";
    if (!store)
        return "Choose a folder that your sync service synchronises, such as one in Nextcloud, "
               "Syncthing, Dropbox or OneDrive.";
    if (!sync->isRunning())
        return "Not syncing: Ellwynd was started with settings for this run only.";
    if (!store->problem().empty())
        return "Not in step. " + store->problem();
    if (!store->lastScan())
        return "Looking at the folder…";
    const std::string day = calendar::relativeDay(*store->lastScan(), now());
    return fmt::format(
        "In step with this folder; last looked at {}{}{}.", day, day.empty() ? "" : ", ",
        calendar::shortTime(*store->lastScan()));
}

void SyncService::showMessage(std::string text) {
    message = std::move(text);
    Q_EMIT statusDidChange();
}

void SyncService::chooseFolder(const std::filesystem::path &chosen) {
    struct Result {
        std::filesystem::path folder;
        std::string problem;
    };
    showMessage("Preparing the folder…");
    auto result = std::make_shared<Result>();
    const auto create = [chosen, result] {
        try {
            result->folder = syncedFolderIn(chosen);
            folderContents::create(result->folder);
        } catch (const FolderError &error) {
            result->problem = error.what();
        }
    };
    const auto use = [self = QPointer(this), result] {
        if (!self)
            return;
        self->showMessage(result->problem);
        if (!result->problem.empty())
            return;
        self->defaults.set(preferences::cloudStoreFolder, result->folder.string());
        self->scan();
    };
    queue.run(create, use);
}

void SyncService::removeSyncedSettings() {
    if (!canRemove())
        return;
    // Otherwise the removal would be taken for that of another machine, and a scan that is under
    // way for its result.
    closeStore();
    openStore();
    isRemoving = true;
    showMessage({});
    const auto wasWritten = std::make_shared<bool>(false);
    observingRemoval = store->observe([this, wasWritten](const CloudChange &change) {
        *wasWritten = change.followsWrite;
        if (!change.followsWrite)
            ellwynd::removeSyncedSettings(*store);
    });
    observingScans = store->observeScans([this, wasWritten] {
        // Queued: the folder must not be closed while it reports.
        if (*wasWritten || !store->problem().empty())
            QMetaObject::invokeMethod(this, &SyncService::endRemoval, Qt::QueuedConnection);
    });
    store->synchronize();
}

void SyncService::endRemoval() {
    if (!isRemoving)
        return;
    const bool isGone = std::ranges::none_of(
        store->all(), [](const auto &entry) { return preferences::isSynced(entry.first); });
    const std::string problem = store->problem();
    if (problem.empty() && isGone)
        defaults.set(preferences::syncSettings, false);
    restart();
    if (!problem.empty())
        showMessage("The synced settings could not be removed. " + problem);
    else if (!isGone)
        showMessage("Another computer changed settings meanwhile. Remove them again.");
    else
        showMessage("Removed the synced settings from the folder. Sync is switched off.");
}

} // namespace ellwynd
