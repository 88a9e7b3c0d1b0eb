#include "memory/trendsync.h"

#include "base/calendar.h"
#include "base/files.h"
#include "base/json.h"
#include "base/log.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd {

namespace {

constexpr Log logger{"trendsync"};
constexpr std::string_view prefix = "Trend.";
constexpr int daysKept = 14;

std::string keyOf(std::int64_t courseID) {
    return fmt::format("{}{}", prefix, courseID);
}

} // namespace

TrendSync::TrendSync(UserDefaults &defaults) : defaults(defaults) {}
TrendSync::~TrendSync() = default;

void TrendSync::setStore(CloudKeyValueStore *newStore) {
    observing.reset();
    store = newStore;
}

bool TrendSync::isActive() const {
    return store != nullptr && defaults.value(preferences::syncSettings) &&
        !defaults.value(preferences::sampleData);
}

void TrendSync::start() {
    if (!isActive() || observing)
        return;
    observing = store->observe([this](const CloudChange &change) { storeDidChange(change); });
    store->synchronize();
    logger.info("Trend sync started");
}

void TrendSync::storeDidChange(const CloudChange &change) {
    if (!isActive() || change.reason == CloudChange::Reason::quotaViolation)
        return;
    const bool isTrend = std::ranges::any_of(
        change.keys, [](const std::string &key) { return key.starts_with(prefix); });
    if (!change.followsWrite || isTrend)
        write();
    if (isTrend)
        Q_EMIT trendCountsDidSync();
}

/// Writes the published counts that the store lacks.
void TrendSync::write() {
    PreferenceChanges changes;
    for (auto &[courseID, days] : published) {
        DailyCounts merged = counts(courseID);
        std::erase_if(days, [&](const auto &day) {
            const auto stored = merged.find(day.first);
            return stored != merged.end() && stored->second == day.second.count;
        });
        if (days.empty())
            continue;
        for (const auto &[day, entry] : days) {
            merged.insert_or_assign(day, entry.count);
            const std::string oldest = calendar::dayKey(calendar::daysBefore(entry.date, daysKept));
            std::erase_if(merged, [&](const auto &stored) { return stored.first < oldest; });
        }
        try {
            changes.emplace(keyOf(courseID), nlohmann::json(merged).dump());
        } catch (const nlohmann::json::exception &) {
            // A key from another program may not be UTF-8.
            logger.error(fmt::format("Couldn't encode trend counts for course {}", courseID));
        }
    }
    if (!changes.empty())
        store->update(std::move(changes));
}

DailyCounts TrendSync::counts(std::int64_t courseID) const {
    const auto stored = store->object(keyOf(courseID));
    const auto *text = stored ? std::get_if<std::string>(&*stored) : nullptr;
    if (text == nullptr)
        return {};
    try {
        const nlohmann::json object = parseJSON(*text);
        if (!object.is_object())
            return {};
        DailyCounts days;
        for (const auto &[day, value] : object.items()) {
            const auto count = integerOf(value);
            if (!count)
                return {};
            days.emplace(day, *count);
        }
        return days;
    } catch (const FileError &) {
        // The value was not written by this program.
        return {};
    }
}

void TrendSync::publish(std::int64_t courseID, std::int64_t count, Date date) {
    if (!isActive())
        return;
    published[courseID].insert_or_assign(
        calendar::dayKey(date), Published{.count = count, .date = date});
    // The store is scanned before it is written.
    store->synchronize();
}

DailyCounts TrendSync::remoteCounts(std::int64_t courseID, Date today) const {
    if (!isActive())
        return {};
    DailyCounts days = counts(courseID);
    days.erase(calendar::dayKey(today));
    return days;
}

} // namespace ellwynd
