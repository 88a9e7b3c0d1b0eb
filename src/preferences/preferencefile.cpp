#include "preferences/preferencefile.h"

#include "base/date.h"
#include "base/json.h"
#include "base/log.h"

#include <fmt/format.h>

#include <utility>

namespace ellwynd {

namespace {

using nlohmann::json;

constexpr Log logger{"settings"};
constexpr std::size_t sizeLimit = 16UL * 1024 * 1024;

/// Equal in value and type: 5 is not 5.0.
bool same(const json &a, const json &b) {
    return a == b && a.is_number_float() == b.is_number_float();
}

std::optional<json> valueIn(const json &object, const std::string &key) {
    const auto found = object.find(key);
    return found != object.end() ? std::optional(*found) : std::nullopt;
}

} // namespace

PreferenceFile::PreferenceFile(std::filesystem::path path) : path(std::move(path)) {
    load();
}

std::optional<PreferenceValue> PreferenceFile::value(std::string_view key) const {
    const auto found = saved.find(std::string(key));
    return found != saved.end() ? fromJSON(*found) : std::nullopt;
}

bool PreferenceFile::contains(std::string_view key) const {
    return saved.contains(key);
}

PreferenceMap PreferenceFile::values() const {
    PreferenceMap map;
    for (const auto &[key, json] : saved.items()) {
        if (auto known = fromJSON(json))
            map.emplace(key, std::move(*known));
    }
    return map;
}

PreferenceFile::Outcome PreferenceFile::update(const PreferenceChanges &changes, Removal removal) {
    Outcome outcome;
    const files::Lock lock(path);
    outcome.changedKeys = reloadIfChanged();
    for (const auto &[key, value] : changes) {
        const auto found = saved.find(key);
        const bool isSaved = found != saved.end();
        std::optional<json> next;
        if (value)
            next = asJSON(*value);
        else if (removal == Removal::hide)
            next = json();
        if (next ? isSaved && same(*found, *next) : !isSaved)
            continue;
        outcome.replaced.emplace(key, isSaved ? fromJSON(*found) : std::nullopt);
        const auto [change, isFirst] = unsaved.try_emplace(key);
        if (isFirst)
            change->second.inFile = valueIn(saved, key);
        set(key, next);
        change->second.value = std::move(next);
    }
    if (!unsaved.empty())
        save();
    for (const auto &[key, value] : outcome.replaced) {
        std::erase(outcome.changedKeys, key);
        outcome.changedKeys.push_back(key);
    }
    return outcome;
}

/// @param value absent to remove the key.
void PreferenceFile::set(const std::string &key, const std::optional<json> &value) {
    if (value)
        saved[key] = *value;
    else
        saved.erase(key);
}

/// Applies unsaved changes to the values just read.
/// @param fileMayBeNewer whether to drop a change whose key has another value in the file than when
///        it was made.
void PreferenceFile::applyUnsaved(bool fileMayBeNewer) {
    if (fileMayBeNewer)
        std::erase_if(unsaved, [this](const auto &change) {
            return valueIn(saved, change.first) != change.second.inFile;
        });
    for (auto &[key, change] : unsaved) {
        change.inFile = valueIn(saved, key);
        set(key, change.value);
    }
}

std::vector<std::string> PreferenceFile::reloadIfChanged() {
    const files::Stamp now = files::stamp(path);
    // A missing file is not a change: the in-memory state is kept, and the next save writes it.
    if (now.size == files::Stamp::absent) {
        isReadable = true;
        return {};
    }
    // Where the state cannot be determined, another process may have replaced the file.
    const bool isSame = now == seen && now.size != files::Stamp::unknown;
    if (isReadable && isSame)
        return {};
    const json before = saved;
    load();
    std::vector<std::string> changed;
    for (const auto &[key, value] : saved.items()) {
        if (!before.contains(key) || !same(before[key], value))
            changed.push_back(key);
    }
    for (const auto &[key, value] : before.items()) {
        if (!saved.contains(key))
            changed.push_back(key);
    }
    return changed;
}

/// Replaces the values in memory by those of the file, and applies what is not saved yet.
void PreferenceFile::load() {
    seen = files::stamp(path);
    try {
        const bool wasReadable = std::exchange(isReadable, true);
        std::optional<std::string> bytes;
        try {
            bytes = files::read(path, sizeLimit);
        } catch (const FileUnavailable &error) {
            if (wasReadable)
                logger.error(fmt::format("Couldn't read the preferences: {}", error.what()));
            isReadable = false;
            return;
        }
        json read = bytes ? parseJSON(*bytes) : json::object();
        if (!read.is_object())
            throw FileError(path.filename().string() + " is not a JSON object.");
        saved = std::move(read);
        // What was changed while the file could not be read may be newer than the file.
        applyUnsaved(wasReadable);
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't read the preferences: {}", error.what()));
        setAside();
        // Another process may write a new file first, without these values.
        for (const auto &[key, value] : saved.items())
            unsaved.insert_or_assign(key, Unsaved{.value = value, .inFile = std::nullopt});
    }
}

/// Keeps an unreadable file, which the next save would otherwise replace.
void PreferenceFile::setAside() const {
    try {
        const auto now = std::chrono::floor<std::chrono::seconds>(systemNow());
        const auto aside = files::setAside(path, now.time_since_epoch().count());
        logger.error(fmt::format("Set it aside at {}", aside.filename().string()));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't set it aside: {}", error.what()));
    }
}

void PreferenceFile::save() {
    if (!isReadable)
        return;
    try {
        files::replace(path, prettyJSON(saved));
        unsaved.clear();
        seen = files::stamp(path);
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't save the preferences: {}", error.what()));
    }
}

} // namespace ellwynd
