#include "app/sync/settingssync.h"

#include "app/sync/settingsmerge.h"
#include "base/files.h"
#include "base/json.h"
#include "base/log.h"

#include <QPointer>
#include <QScopedValueRollback>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <utility>

namespace ellwynd {

namespace {

using nlohmann::json;

constexpr Log logger{"sync"};
constexpr std::size_t agreedLimit = 8UL * 1024 * 1024;

} // namespace

SettingsSync::SettingsSync(
    UserDefaults &defaults, CloudKeyValueStore &store, WorkQueue &queue,
    std::filesystem::path agreedFile, std::chrono::milliseconds pushDelay)
    : defaults(defaults), store(store), queue(queue), agreedFile(std::move(agreedFile)) {
    pushTimer.setSingleShot(true);
    pushTimer.setInterval(pushDelay);
    pushTimer.setTimerType(Qt::CoarseTimer);
    connect(&pushTimer, &QTimer::timeout, this, &SettingsSync::push);
}

SettingsSync::~SettingsSync() = default;

PreferenceMap SettingsSync::savedSettings() const {
    PreferenceMap saved = defaults.persistentDomain();
    std::erase_if(saved, [](const auto &entry) { return !preferences::isSynced(entry.first); });
    return saved;
}

void SettingsSync::start() {
    if (isRunning() || !defaults.value(preferences::syncSettings) ||
        defaults.value(preferences::sampleData))
        return;
    const auto forced = std::ranges::count_if(defaults.argumentDomain(), [](const auto &entry) {
        return preferences::isSynced(entry.first);
    });
    if (forced > 0) {
        logger.error(
            fmt::format("Not syncing: launch arguments override {} synced setting(s)", forced));
        return;
    }
    loadAgreed();
    observingStore = store.observe([this](const CloudChange &change) { storeDidChange(change); });
    observingDefaults = defaults.observe([this](std::string_view key) { localChange(key); });
    logger.info("Settings sync started");
    store.synchronize();
}

void SettingsSync::stop() {
    if (!isRunning())
        return;
    observingStore.reset();
    observingDefaults.reset();
    pushTimer.stop();
    changedHere.clear();
    logger.info("Settings sync stopped");
}

void SettingsSync::localChange(std::string_view key) {
    if (applyingRemote || !preferences::isSynced(key))
        return;
    changedHere.emplace(key);
    pushTimer.start();
}

void SettingsSync::push() {
    pushTimer.stop();
    store.synchronize();
}

/// Merges what a scan of the store found with this machine's settings.
void SettingsSync::storeDidChange(const CloudChange &change) {
    if (change.reason == CloudChange::Reason::quotaViolation) {
        logger.error("iCloud key-value quota violated; settings sync is stalled");
        return;
    }
    if (agreedIsUnavailable)
        loadAgreed();
    if (agreedIsUnavailable)
        return;
    const CloudContents &contents = *store.contents();
    const bool mayPush = !change.followsWrite || !change.keys.empty();
    if (contents.mark.empty()) {
        // It gets its mark with the first write, and is merged once it has one.
        if (mayPush)
            store.update({});
        return;
    }
    if (contents.mark != agreedMark ||
        contents.mark != defaults.value(preferences::syncedFolderMark))
        agreed.reset();
    const PreferenceMap saved = savedSettings();
    SettingsMerge merge = mergeSettings(saved, agreed, contents, changedHere);
    apply(std::move(merge.toApply), contents.mark);
    if (agreed != merge.agreed || agreedMark != contents.mark) {
        agreed = std::move(merge.agreed);
        agreedMark = contents.mark;
        agreedIsUnsaved = true;
    }
    saveAgreed();
    // A change that is still to be followed by others waits for them.
    if (!mayPush || isPushDue())
        return;
    changedHere.clear();
    if (!merge.toPush.empty())
        store.update(std::move(merge.toPush));
}

void SettingsSync::apply(PreferenceChanges changes, const std::string &mark) {
    const auto count = changes.size();
    if (defaults.value(preferences::syncedFolderMark) != mark)
        changes.emplace(preferences::syncedFolderMark.name, mark);
    if (changes.empty())
        return;
    {
        const QScopedValueRollback guard(applyingRemote, true);
        defaults.update(changes);
    }
    if (count == 0)
        return;
    logger.info(fmt::format("Applied {} synced settings from iCloud", count));
    Q_EMIT settingsDidSyncExternally();
}

void SettingsSync::loadAgreed() {
    agreed.reset();
    agreedMark.clear();
    const bool wasUnavailable = std::exchange(agreedIsUnavailable, false);
    try {
        const auto text = files::read(agreedFile, agreedLimit);
        const json read = text ? parseJSON(*text) : json();
        const auto mark = stringOf(memberOf(read, "folder"));
        const json &settings = memberOf(read, "settings");
        if (!mark || !settings.is_object())
            return;
        agreedMark = *mark;
        agreed.emplace();
        for (const auto &[key, value] : settings.items()) {
            if (auto known = fromJSON(value))
                agreed->emplace(key, *std::move(known));
        }
    } catch (const FileUnavailable &error) {
        agreedIsUnavailable = true;
        if (!wasUnavailable)
            logger.error(fmt::format("Couldn't read the settings last synced: {}", error.what()));
    } catch (const FileError &error) {
        // The next scan is then a first one.
        logger.error(fmt::format("Couldn't read the settings last synced: {}", error.what()));
    }
}

/// Saves what was agreed, once the settings that were applied are saved: otherwise their old values
/// would be taken for later changes at the next start.
void SettingsSync::saveAgreed() {
    if (!agreedIsUnsaved || !agreed || !defaults.isSaved())
        return;
    agreedIsUnsaved = false;
    const auto isSaved = std::make_shared<bool>(false);
    const auto save = [file = agreedFile, mark = agreedMark, settings = *agreed, isSaved] {
        json members = json::object();
        for (const auto &[key, value] : settings)
            members[key] = asJSON(value);
        try {
            const files::Lock lock(file);
            files::replace(file, prettyJSON({{"folder", mark}, {"settings", std::move(members)}}));
            *isSaved = true;
        } catch (const FileError &error) {
            logger.error(fmt::format("Couldn't save the settings last synced: {}", error.what()));
        }
    };
    // The next scan tries again.
    const auto saved = [self = QPointer(this), isSaved] {
        if (self && !*isSaved)
            self->agreedIsUnsaved = true;
    };
    queue.run(save, saved);
}

void removeSyncedSettings(CloudKeyValueStore &store) {
    PreferenceChanges removals;
    if (const CloudContents *contents = store.contents()) {
        for (const auto &[key, value] : contents->values)
            removals.emplace(key, std::nullopt);
        for (const std::string &key : contents->unreadable)
            removals.emplace(key, std::nullopt);
    }
    std::erase_if(
        removals, [](const auto &removal) { return !preferences::isSynced(removal.first); });
    store.update(std::move(removals));
    logger.info("Removed synced settings from iCloud");
}

} // namespace ellwynd
