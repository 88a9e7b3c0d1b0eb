#include "preferences/userdefaults.h"

#include "base/files.h"
#include "base/observerlist.h"
#include "preferences/preferencefile.h"

#include <QFileSystemWatcher>

namespace ellwynd {

struct UserDefaults::State {
    std::filesystem::path file;
    PreferenceMap arguments;
    PreferenceMap registered = preferences::registeredDefaults();
    PreferenceFile persistent{file};
    ObserverList<std::string_view> observers;
    std::unique_ptr<QFileSystemWatcher> watcher;

    void notify(const std::vector<std::string> &changedKeys) const {
        for (const std::string &key : changedKeys)
            observers.notify(key);
    }
};

UserDefaults::UserDefaults(std::filesystem::path file, PreferenceMap arguments)
    : state(new State{.file = std::move(file), .arguments = std::move(arguments)}) {}

UserDefaults::~UserDefaults() = default;

std::optional<PreferenceValue> UserDefaults::object(std::string_view key) const {
    if (const auto found = state->arguments.find(key); found != state->arguments.end())
        return found->second;
    if (auto value = state->persistent.value(key))
        return value;
    if (const auto found = state->registered.find(key); found != state->registered.end())
        return found->second;
    return std::nullopt;
}

void UserDefaults::set(std::string_view key, PreferenceValue value) {
    update({{std::string(key), std::move(value)}});
}

void UserDefaults::remove(std::string_view key) {
    update({{std::string(key), std::nullopt}});
}

PreferenceChanges UserDefaults::update(const PreferenceChanges &changes) {
    const PreferenceFile::Outcome outcome = state->persistent.update(changes);
    state->notify(outcome.changedKeys);
    return outcome.replaced;
}

void UserDefaults::reloadIfChanged() {
    state->notify(state->persistent.reloadIfChanged());
}

void UserDefaults::watch() {
    files::createParentFolder(state->file);
    state->watcher = std::make_unique<QFileSystemWatcher>();
    // The file is replaced rather than written to, so its folder must be watched.
    state->watcher->addPath(QString::fromStdString(state->file.parent_path().string()));
    QObject::connect(
        state->watcher.get(), &QFileSystemWatcher::directoryChanged, state->watcher.get(),
        [this] { reloadIfChanged(); });
}

PreferenceMap UserDefaults::persistentDomain() const {
    return state->persistent.values();
}

std::string UserDefaults::persistentDomainJSON() const {
    return state->persistent.text();
}

bool UserDefaults::isSaved() const {
    return state->persistent.isSaved();
}

const PreferenceMap &UserDefaults::argumentDomain() const {
    return state->arguments;
}

std::shared_ptr<void> UserDefaults::observe(Observer observer) {
    return state->observers.add(std::move(observer));
}

} // namespace ellwynd
