#include "app/sync/settingssync.h"

#include "base/log.h"

#include <QScopedValueRollback>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"sync"};

bool isBlank(const std::optional<PreferenceValue> &value) {
    const auto *text = value ? std::get_if<std::string>(&*value) : nullptr;
    return !value || (text != nullptr && text->empty());
}

} // namespace

SettingsSync::SettingsSync(
    UserDefaults &defaults, CloudKeyValueStore &store, std::chrono::milliseconds pushDelay)
    : defaults(defaults), store(store) {
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
    for (const auto &[key, value] : savedSettings())
        held.insert(key);
    observingStore =
        store.observe([this](const CloudChange &change) { applyExternalChange(change); });
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
    held.clear();
    logger.info("Settings sync stopped");
}

void SettingsSync::localChange(std::string_view key) {
    if (!applyingRemote && preferences::isSynced(key))
        pushTimer.start();
}

void SettingsSync::push() {
    const PreferenceMap saved = savedSettings();
    const PreferenceMap stored = store.all();
    for (const auto &[key, value] : saved) {
        const auto there = stored.find(key);
        if (there == stored.end() || there->second != value)
            store.set(key, value);
    }
    // Keys removed here are removed everywhere; keys never saved here belong to other machines.
    for (const std::string &key : held) {
        if (!saved.contains(key) && stored.contains(key))
            store.remove(key);
    }
    held.clear();
    for (const auto &[key, value] : saved)
        held.insert(key);
}

void SettingsSync::applyExternalChange(const CloudChange &change) {
    if (change.reason == CloudChange::Reason::quotaViolation) {
        logger.error("iCloud key-value quota violated; settings sync is stalled");
        return;
    }
    int applied = 0;
    const QScopedValueRollback guard(applyingRemote, true);
    for (const std::string &key : change.keys) {
        if (!preferences::isSynced(key))
            continue;
        const auto value = store.object(key);
        // A blank address from another machine must not disconnect this one.
        const bool address = key == preferences::canvasBaseURL.name;
        if (address && isBlank(value) && !defaults.value(preferences::canvasBaseURL).empty())
            continue;
        if (value) {
            defaults.set(key, *value);
            held.insert(key);
        } else {
            defaults.remove(key);
            held.erase(key);
        }
        ++applied;
    }
    if (applied == 0)
        return;
    logger.info(fmt::format("Applied {} synced settings from iCloud", applied));
    Q_EMIT settingsDidSyncExternally();
}

void SettingsSync::removeSyncedSettings() {
    for (const auto &[key, value] : store.all()) {
        if (preferences::isSynced(key))
            store.remove(key);
    }
    logger.info("Removed synced settings from iCloud");
}

} // namespace ellwynd
