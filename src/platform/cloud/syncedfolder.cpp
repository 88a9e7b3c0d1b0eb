#include "platform/cloud/syncedfolder.h"

#include "base/files.h"
#include "base/json.h"
#include "base/log.h"
#include "base/observerlist.h"

#include <QFileSystemWatcher>
#include <QTimer>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;
using nlohmann::json;

constexpr Log logger{"sync"};
constexpr std::string_view extension = ".json";
/// Sync services replace files in several steps, so a scan waits until the changes have settled.
constexpr auto settleDelay = std::chrono::milliseconds(200);
constexpr std::size_t seenLimit = 8UL * 1024 * 1024;

bool isUnescaped(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '.' ||
        c == '_';
}

/// The texts of the folder's files by key.
using Contents = std::map<std::string, std::string>;

} // namespace

std::string SyncedFolder::fileName(const std::string &key) {
    std::string name;
    for (const char c : key) {
        if (isUnescaped(c))
            name += c;
        else
            name += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return name + std::string(extension);
}

std::optional<std::string> SyncedFolder::keyOf(const std::string &fileName) {
    if (!fileName.ends_with(extension))
        return std::nullopt;
    const std::string stem = fileName.substr(0, fileName.size() - extension.size());
    std::string key;
    for (std::size_t i = 0; i < stem.size(); ++i) {
        if (stem[i] == '%' && i + 2 < stem.size()) {
            key += char(std::strtol(stem.substr(i + 1, 2).c_str(), nullptr, 16));
            i += 2;
        } else {
            key += stem[i];
        }
    }
    // A name that `fileName` does not produce is a conflict copy or another program's file.
    const bool conflict = stem.find(".sync-conflict-") != std::string::npos;
    return !key.empty() && !conflict && SyncedFolder::fileName(key) == fileName ? std::optional{key}
                                                                                : std::nullopt;
}

struct SyncedFolder::State {
    fs::path folder;
    fs::path seenFile;
    Contents seen;
    bool isInitialSync = true;
    ObserverList<const CloudChange &> observers;
    std::unique_ptr<QFileSystemWatcher> watcher;
    QTimer settleTimer;

    [[nodiscard]] Contents read() const {
        Contents contents;
        std::error_code error;
        for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
             entry.increment(error)) {
            const auto key = keyOf(entry->path().filename());
            if (!key || contents.size() >= maxKeys)
                continue;
            try {
                if (auto bytes = files::read(entry->path(), maxBytes))
                    contents.emplace(*key, std::move(*bytes));
            } catch (const FileError &) {
                // It may be readable at the next scan.
            }
        }
        return contents;
    }

    [[nodiscard]] static std::optional<PreferenceValue> parse(const std::string &text) {
        try {
            const json read = parseJSON(text);
            return fromJSON(memberOf(read, "value"));
        } catch (const FileError &) {
            return std::nullopt;
        }
    }

    void loadSeen() {
        try {
            const json all = seenFolders();
            const json &own = memberOf(all, folder.string());
            if (!own.is_object())
                return;
            for (const auto &[key, text] : own.items()) {
                if (text.is_string())
                    seen.emplace(key, text.get<std::string>());
            }
            isInitialSync = false;
        } catch (const FileError &error) {
            logger.error(
                fmt::format("Couldn't read the folder's last seen contents: {}", error.what()));
        }
    }

    void saveSeen() const {
        try {
            const files::Lock lock(seenFile);
            json all = seenFolders();
            all[folder.string()] = seen;
            files::replace(seenFile, all.dump(1, ' ', false, json::error_handler_t::replace));
        } catch (const FileError &error) {
            logger.error(
                fmt::format("Couldn't save the folder's last seen contents: {}", error.what()));
        }
    }

    /// The last seen contents by folder; an empty object if they are not known.
    /// @throws FileError when the file cannot be read.
    [[nodiscard]] json seenFolders() const {
        const auto bytes = files::read(seenFile, seenLimit);
        try {
            json all = bytes ? parseJSON(*bytes) : json::object();
            return all.is_object() ? all : json::object();
        } catch (const FileError &) {
            // The next change rewrites the file.
            return json::object();
        }
    }

    void scan() {
        std::error_code error;
        // A missing folder, such as that of an unmounted disk, does not count as deleted keys.
        if (!fs::is_directory(folder, error))
            return;
        const Contents now = read();
        CloudChange change{
            .reason = isInitialSync ? CloudChange::Reason::initialSync
                                    : CloudChange::Reason::serverChange};
        for (const auto &[key, text] : now) {
            const auto before = seen.find(key);
            if (before == seen.end() || before->second != text)
                change.keys.push_back(key);
        }
        for (const auto &[key, text] : seen) {
            if (!now.contains(key))
                change.keys.push_back(key);
        }
        if (change.keys.empty() && !isInitialSync)
            return;
        isInitialSync = false;
        seen = now;
        saveSeen();
        if (!change.keys.empty())
            observers.notify(change);
    }

    /// Whether the store would stay within its limits with this text under the key.
    [[nodiscard]] bool fits(const std::string &key, const std::string &text) const {
        const Contents now = read();
        std::size_t bytes = text.size();
        std::size_t keys = 1;
        for (const auto &[other, content] : now) {
            if (other != key) {
                bytes += content.size();
                ++keys;
            }
        }
        return bytes <= maxBytes && keys <= maxKeys;
    }
};

SyncedFolder::SyncedFolder(fs::path folder, fs::path seenFile) : state(std::make_unique<State>()) {
    state->folder = std::move(folder);
    state->seenFile = std::move(seenFile);
    state->loadSeen();
    state->settleTimer.setSingleShot(true);
    state->settleTimer.setInterval(settleDelay);
    QObject::connect(&state->settleTimer, &QTimer::timeout, [this] { synchronize(); });
}

SyncedFolder::~SyncedFolder() = default;

void SyncedFolder::watch() {
    std::error_code error;
    fs::create_directories(state->folder, error);
    state->watcher = std::make_unique<QFileSystemWatcher>();
    state->watcher->addPath(QString::fromStdString(state->folder.string()));
    QObject::connect(
        state->watcher.get(), &QFileSystemWatcher::directoryChanged, &state->settleTimer,
        qOverload<>(&QTimer::start));
}

std::optional<PreferenceValue> SyncedFolder::object(const std::string &key) const {
    try {
        const auto bytes = files::read(state->folder / fileName(key), maxBytes);
        return bytes ? State::parse(*bytes) : std::nullopt;
    } catch (const FileError &) {
        return std::nullopt;
    }
}

void SyncedFolder::set(const std::string &key, const PreferenceValue &value) {
    const std::string text = "{\"value\": " + toJSON(value) + "}\n";
    bool written = state->fits(key, text);
    try {
        if (written)
            files::replace(state->folder / fileName(key), text);
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't write to the synced folder: {}", error.what()));
        written = false;
    }
    if (!written) {
        state->observers.notify({.reason = CloudChange::Reason::quotaViolation, .keys = {key}});
        return;
    }
    state->seen[key] = text;
    state->saveSeen();
}

void SyncedFolder::remove(const std::string &key) {
    std::error_code error;
    fs::remove(state->folder / fileName(key), error);
    state->seen.erase(key);
    state->saveSeen();
}

PreferenceMap SyncedFolder::all() const {
    PreferenceMap map;
    for (const auto &[key, text] : state->read()) {
        if (auto value = State::parse(text))
            map.emplace(key, std::move(*value));
    }
    return map;
}

void SyncedFolder::synchronize() {
    state->scan();
}

std::shared_ptr<void> SyncedFolder::observe(Observer observer) {
    return state->observers.add(std::move(observer));
}

} // namespace ellwynd
