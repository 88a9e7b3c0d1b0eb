#include "preferences/userdefaults.h"

#include "base/date.h"
#include "base/files.h"
#include "base/log.h"
#include "base/observerlist.h"

#include <QFileSystemWatcher>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <vector>

namespace ellwynd {

namespace {

using nlohmann::json;

constexpr Log logger{"settings"};
constexpr std::size_t fileLimit = 16UL * 1024 * 1024;

/// Ends the parsing of what nests so deep that writing it again would exhaust the stack.
bool refuseDepth(int depth, json::parse_event_t, json &) {
    constexpr int deepest = 64;
    if (depth > deepest)
        throw FileError("it nests too deep.");
    return true;
}

/// Equal, and of one type: 5 is not 5.0.
bool same(const json &a, const json &b) {
    return a == b && a.is_number_float() == b.is_number_float();
}

std::optional<PreferenceValue> fromJSON(const json &value) {
    switch (value.type()) {
    case json::value_t::boolean:
        return value.get<bool>();
    case json::value_t::number_integer:
        return value.get<std::int64_t>();
    case json::value_t::number_unsigned:
        if (value.get<std::uint64_t>() <= std::uint64_t(INT64_MAX))
            return value.get<std::int64_t>();
        return std::nullopt;
    case json::value_t::number_float:
        return value.get<double>();
    case json::value_t::string:
        return value.get<std::string>();
    case json::value_t::array: {
        IDList list;
        for (const json &item : value) {
            const auto element = fromJSON(item);
            const auto id = element ? valueAs<std::int64_t>(*element) : std::nullopt;
            if (!id)
                return std::nullopt;
            list.push_back(*id);
        }
        return list;
    }
    default:
        return std::nullopt;
    }
}

json asJSON(const PreferenceValue &value) {
    return std::visit([](const auto &v) { return json(v); }, value);
}

} // namespace

struct UserDefaults::State {
    std::filesystem::path file;
    PreferenceMap arguments;
    PreferenceMap registered = preferences::registeredDefaults();
    json saved = json::object();
    /// Of the file as `saved` has it.
    files::Stamp seen;
    ObserverList<std::string_view> observers;
    std::unique_ptr<QFileSystemWatcher> watcher;

    /// Takes over what the file holds. One that cannot be read is set aside, and what is in memory
    /// stays.
    void load() {
        seen = files::stamp(file);
        try {
            const auto bytes = files::read(file, fileLimit);
            json read = bytes ? json::parse(*bytes, refuseDepth) : json::object();
            if (!read.is_object())
                throw FileError(file.filename().string() + " is not a JSON object.");
            saved = std::move(read);
        } catch (const std::exception &error) {
            logger.error(fmt::format("Couldn't read the preferences: {}", error.what()));
            setAside();
        }
    }

    /// Keeps what could not be read: the next save would otherwise replace it.
    void setAside() const {
        try {
            const auto now = std::chrono::floor<std::chrono::seconds>(systemNow());
            const auto aside = files::setAside(file, now.time_since_epoch().count());
            logger.error(fmt::format("Set it aside at {}", aside.filename().string()));
        } catch (const FileError &error) {
            logger.error(fmt::format("Couldn't set it aside: {}", error.what()));
        }
    }

    void save() {
        try {
            files::replace(file, saved.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
            seen = files::stamp(file);
        } catch (const FileError &error) {
            logger.error(fmt::format("Couldn't save the preferences: {}", error.what()));
        }
    }

    /// The keys that another process has changed since the file was last seen, which are taken
    /// over.
    std::vector<std::string> takeOver() {
        const files::Stamp now = files::stamp(file);
        // A file that has vanished is no change: memory goes on, and the next save writes it whole.
        if (now == seen || now.size < 0)
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

    /// Applies changes on top of what the file holds now, and returns what they replaced.
    PreferenceChanges apply(const PreferenceChanges &changes) {
        std::vector<std::string> changed;
        PreferenceChanges replaced;
        {
            const files::Lock lock(file);
            changed = takeOver();
            for (const auto &[key, value] : changes) {
                const auto found = saved.find(key);
                const bool isSaved = found != saved.end();
                if (value ? isSaved && same(*found, asJSON(*value)) : !isSaved)
                    continue;
                replaced.emplace(key, isSaved ? fromJSON(*found) : std::nullopt);
                if (value)
                    saved[key] = asJSON(*value);
                else
                    saved.erase(key);
            }
            if (!replaced.empty())
                save();
        }
        for (const auto &[key, value] : replaced) {
            std::erase(changed, key);
            changed.push_back(key);
        }
        for (const std::string &key : changed)
            observers.notify(key);
        return replaced;
    }
};

UserDefaults::UserDefaults(std::filesystem::path file, PreferenceMap arguments)
    : state(std::make_unique<State>()) {
    state->file = std::move(file);
    state->arguments = std::move(arguments);
    state->load();
}

UserDefaults::~UserDefaults() = default;

std::optional<PreferenceValue> UserDefaults::object(std::string_view key) const {
    if (const auto found = state->arguments.find(key); found != state->arguments.end())
        return found->second;
    if (const auto found = state->saved.find(std::string(key)); found != state->saved.end()) {
        if (auto value = fromJSON(*found))
            return value;
    }
    if (const auto found = state->registered.find(key); found != state->registered.end())
        return found->second;
    return std::nullopt;
}

void UserDefaults::set(std::string_view key, PreferenceValue value) {
    state->apply({{std::string(key), std::move(value)}});
}

void UserDefaults::remove(std::string_view key) {
    state->apply({{std::string(key), std::nullopt}});
}

PreferenceChanges UserDefaults::update(const PreferenceChanges &changes) {
    return state->apply(changes);
}

void UserDefaults::reloadIfChanged() {
    for (const std::string &key : state->takeOver())
        state->observers.notify(key);
}

void UserDefaults::watch() {
    const std::filesystem::path folder = state->file.parent_path();
    { const files::Lock makesTheFolder(state->file); }
    state->watcher = std::make_unique<QFileSystemWatcher>();
    // The file is replaced rather than written to, which the folder notices.
    state->watcher->addPath(QString::fromStdString(folder.string()));
    QObject::connect(
        state->watcher.get(), &QFileSystemWatcher::directoryChanged, state->watcher.get(),
        [this] { reloadIfChanged(); });
}

PreferenceMap UserDefaults::persistentDomain() const {
    PreferenceMap map;
    for (const auto &[key, value] : state->saved.items()) {
        if (auto known = fromJSON(value))
            map.emplace(key, std::move(*known));
    }
    return map;
}

std::string UserDefaults::persistentDomainJSON() const {
    return state->saved.dump(2, ' ', false, json::error_handler_t::replace);
}

const PreferenceMap &UserDefaults::argumentDomain() const {
    return state->arguments;
}

std::shared_ptr<void> UserDefaults::observe(Observer observer) {
    return state->observers.add(std::move(observer));
}

} // namespace ellwynd
