#include "preferences/userdefaults.h"

#include "base/files.h"
#include "base/json.h"
#include "base/observerlist.h"
#include "preferences/preferencefile.h"

#include <QFileSystemWatcher>
#include <QTimer>

#include <algorithm>
#include <array>

namespace ellwynd {

namespace {

/// How often a failed save is tried again.
constexpr std::chrono::minutes saveInterval{1};

/// What a run in the sample college saves in the teacher's file.
constexpr std::array savedInSampleMode{
    preferences::sampleData.name, preferences::onboardingStep.name};

bool isSavedInSampleMode(std::string_view key) {
    return std::ranges::find(savedInSampleMode, key) != savedInSampleMode.end();
}

std::filesystem::path sampleFile(const std::filesystem::path &file) {
    return file.parent_path() / (file.stem().string() + ".sample" + file.extension().string());
}

} // namespace

struct UserDefaults::State {
    std::filesystem::path file;
    PreferenceMap arguments;
    PreferenceMap registered = preferences::registeredDefaults();
    PreferenceFile teachers{file};
    /// Present in sample mode; a null in it hides the teacher's value.
    std::optional<PreferenceFile> sample;
    ObserverList<std::string_view> observers;
    std::unique_ptr<QFileSystemWatcher> watcher;
    QTimer saveTimer{nullptr};

    /// Whether the sample's file takes precedence for a key.
    [[nodiscard]] bool isOfSample(std::string_view key) const {
        return sample && sample->contains(key) && !isSavedInSampleMode(key);
    }

    [[nodiscard]] std::optional<PreferenceValue> saved(std::string_view key) const {
        return isOfSample(key) ? sample->value(key) : teachers.value(key);
    }

    /// The keys for which the sample's file takes precedence, with its values.
    [[nodiscard]] nlohmann::json sampleObject() const {
        nlohmann::json object = sample ? sample->object() : nlohmann::json::object();
        for (const std::string_view key : savedInSampleMode)
            object.erase(std::string(key));
        return object;
    }

    [[nodiscard]] std::optional<PreferenceValue> object(std::string_view key) const {
        if (const auto found = arguments.find(key); found != arguments.end())
            return found->second;
        if (auto value = saved(key))
            return value;
        if (const auto found = registered.find(key); found != registered.end())
            return found->second;
        return std::nullopt;
    }

    void notify(const std::vector<std::string> &changedKeys) const {
        for (const std::string &key : changedKeys)
            observers.notify(key);
    }
};

UserDefaults::UserDefaults(std::filesystem::path file, PreferenceMap arguments)
    : state(new State{.file = std::move(file), .arguments = std::move(arguments)}) {
    if (value(preferences::sampleData))
        state->sample.emplace(sampleFile(state->file));
    state->saveTimer.setInterval(saveInterval);
    QObject::connect(&state->saveTimer, &QTimer::timeout, &state->saveTimer, [this] {
        if (!isSaved())
            update({});
    });
}

UserDefaults::~UserDefaults() {
    if (!isSaved())
        update({});
}

std::optional<PreferenceValue> UserDefaults::object(std::string_view key) const {
    return state->object(key);
}

void UserDefaults::set(std::string_view key, PreferenceValue value) {
    update({{std::string(key), std::move(value)}});
}

void UserDefaults::remove(std::string_view key) {
    update({{std::string(key), std::nullopt}});
}

PreferenceChanges UserDefaults::update(const PreferenceChanges &changes) {
    if (!state->sample) {
        const PreferenceFile::Outcome outcome = state->teachers.update(changes);
        state->notify(outcome.changedKeys);
        return outcome.replaced;
    }
    PreferenceChanges ofTeacher;
    PreferenceChanges ofSample;
    PreferenceChanges replaced;
    for (const auto &[key, value] : changes) {
        if (isSavedInSampleMode(key)) {
            ofTeacher.emplace(key, value);
        } else if (auto before = state->saved(key); before != value) {
            ofSample.emplace(key, value);
            replaced.emplace(key, std::move(before));
        }
    }
    std::vector<std::string> changedKeys;
    // Only what is to be saved in the teacher's file is a reason to write it.
    if (!ofTeacher.empty() || !state->teachers.isSaved()) {
        PreferenceFile::Outcome outcome = state->teachers.update(ofTeacher);
        replaced.merge(outcome.replaced);
        changedKeys = std::move(outcome.changedKeys);
    }
    const PreferenceFile::Outcome outcome =
        state->sample->update(ofSample, PreferenceFile::Removal::hide);
    changedKeys.insert(changedKeys.end(), outcome.changedKeys.begin(), outcome.changedKeys.end());
    state->notify(changedKeys);
    return replaced;
}

bool UserDefaults::isSaved() const {
    return state->teachers.isSaved() && (!state->sample || state->sample->isSaved());
}

void UserDefaults::reloadIfChanged() {
    std::vector<std::string> changed = state->teachers.reloadIfChanged();
    if (state->sample) {
        std::erase_if(changed, [&](const auto &key) { return state->isOfSample(key); });
        const auto ofSample = state->sample->reloadIfChanged();
        changed.insert(changed.end(), ofSample.begin(), ofSample.end());
    }
    state->notify(changed);
}

void UserDefaults::watch() {
    files::createParentFolder(state->file);
    state->watcher = std::make_unique<QFileSystemWatcher>();
    // The file is replaced rather than written to, so its folder must be watched.
    state->watcher->addPath(QString::fromStdString(state->file.parent_path().string()));
    QObject::connect(
        state->watcher.get(), &QFileSystemWatcher::directoryChanged, state->watcher.get(),
        [this] { reloadIfChanged(); });
    state->saveTimer.start();
}

PreferenceMap UserDefaults::persistentDomain() const {
    PreferenceMap map = state->teachers.values();
    const nlohmann::json sample = state->sampleObject();
    for (const auto &[key, json] : sample.items()) {
        map.erase(key);
        if (auto value = fromJSON(json))
            map.emplace(key, *std::move(value));
    }
    return map;
}

std::string UserDefaults::persistentDomainJSON() const {
    nlohmann::json object = state->teachers.object();
    object.merge_patch(state->sampleObject());
    return prettyJSON(object);
}

const PreferenceMap &UserDefaults::argumentDomain() const {
    return state->arguments;
}

std::shared_ptr<void> UserDefaults::observe(Observer observer) {
    return state->observers.add(std::move(observer));
}

} // namespace ellwynd
