#include "platform/userdefaults.h"

#include "platform/date.h"
#include "platform/files.h"
#include "platform/log.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <list>

namespace ellwynd {

namespace {

using nlohmann::json;

constexpr Log logger{"settings"};
constexpr std::size_t fileLimit = 16 * 1024 * 1024;

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
    /// Shared with the handles, which may outlive the store.
    std::shared_ptr<std::list<Observer>> observers = std::make_shared<std::list<Observer>>();

    void load() {
        try {
            const auto bytes = files::read(file, fileLimit);
            if (!bytes)
                return;
            json read = json::parse(*bytes);
            if (!read.is_object())
                throw FileError(file.filename().string() + " is not a JSON object");
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

    void save() const {
        try {
            files::replace(file, saved.dump(2, ' ', false, json::error_handler_t::replace) + "\n");
        } catch (const FileError &error) {
            logger.error(fmt::format("Couldn't save the preferences: {}", error.what()));
        }
    }

    void changed(std::string_view key) {
        save();
        const std::list<Observer> current = *observers;
        for (const Observer &observer : current)
            observer(key);
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
    json &slot = state->saved[std::string(key)];
    json written = asJSON(value);
    if (slot == written && slot.type() == written.type())
        return;
    slot = std::move(written);
    state->changed(key);
}

void UserDefaults::remove(std::string_view key) {
    if (state->saved.erase(std::string(key)) > 0)
        state->changed(key);
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
    auto observers = state->observers;
    const auto place = observers->insert(observers->end(), std::move(observer));
    return {observers.get(), [place, observers](void *) { observers->erase(place); }};
}

} // namespace ellwynd
