#include "platform/session/autostart.h"

#include "base/files.h"

#include <glib.h>
#include <memory>
#include <optional>
#include <string_view>

namespace ellwynd {

namespace {

constexpr std::size_t maxEntrySize = 64UL * 1024;
constexpr const char *group = G_KEY_FILE_DESKTOP_GROUP;

using KeyFile = std::unique_ptr<GKeyFile, decltype(&g_key_file_unref)>;
using Text = std::unique_ptr<char, decltype(&g_free)>;

/// A program's path, quoted and escaped as the single argument of "Exec".
std::string execArgument(const std::string &program) {
    std::string text = "\"";
    for (const char c : program) {
        if (c == '"' || c == '`' || c == '$' || c == '\\')
            text += '\\';
        if (c == '%')
            text += '%';
        text += c;
    }
    return text + "\"";
}

/// The value of "Exec".
std::string commandOf(const autostart::Entry &entry) {
    const std::string program = execArgument(entry.program.string());
    return entry.arguments.empty() ? program : program + " " + entry.arguments;
}

std::string entryText(const autostart::Entry &entry) {
    const std::string program = entry.program.string();
    const KeyFile file(g_key_file_new(), g_key_file_unref);
    const auto set = [&](const char *key, const std::string &value) {
        g_key_file_set_string(file.get(), group, key, value.c_str());
    };
    set(G_KEY_FILE_DESKTOP_KEY_TYPE, G_KEY_FILE_DESKTOP_TYPE_APPLICATION);
    set(G_KEY_FILE_DESKTOP_KEY_NAME, entry.name);
    set(G_KEY_FILE_DESKTOP_KEY_EXEC, commandOf(entry));
    set(G_KEY_FILE_DESKTOP_KEY_TRY_EXEC, program);
    return Text(g_key_file_to_data(file.get(), nullptr, nullptr), g_free).get();
}

/// The entry's value for a key; absent when it has none that can be read.
std::optional<std::string> valueOf(const KeyFile &file, const char *key) {
    const Text value(g_key_file_get_string(file.get(), group, key, nullptr), g_free);
    return value ? std::optional<std::string>(value.get()) : std::nullopt;
}

/// The entry's boolean value for a key; absent when it is missing or not a boolean.
std::optional<bool> flagOf(const KeyFile &file, const char *key) {
    GError *error = nullptr;
    const bool value = g_key_file_get_boolean(file.get(), group, key, &error) != FALSE;
    if (error == nullptr)
        return value;
    g_error_free(error);
    return std::nullopt;
}

/// Whether the settings of a desktop have switched the entry off by a key.
bool isSwitchedOff(const KeyFile &file) {
    if (flagOf(file, G_KEY_FILE_DESKTOP_KEY_HIDDEN) == true)
        return true;
    const std::unique_ptr<char *, decltype(&g_strfreev)> keys(
        g_key_file_get_keys(file.get(), group, nullptr, nullptr), g_strfreev);
    for (char **key = keys.get(); key != nullptr && *key != nullptr; ++key) {
        // "X-GNOME-Autostart-enabled" and the like.
        if (std::string_view(*key).ends_with("-Autostart-enabled") && flagOf(file, *key) == false)
            return true;
    }
    return false;
}

} // namespace

bool autostart::isOn(const std::filesystem::path &folder, const Entry &entry) {
    try {
        const auto text = files::read(folder / entry.fileName, maxEntrySize);
        const KeyFile file(g_key_file_new(), g_key_file_unref);
        if (!text ||
            g_key_file_load_from_data(
                file.get(), text->data(), text->size(), G_KEY_FILE_NONE, nullptr) == FALSE)
            return false;
        const std::string program = entry.program.string();
        return valueOf(file, G_KEY_FILE_DESKTOP_KEY_EXEC) == commandOf(entry) &&
            valueOf(file, G_KEY_FILE_DESKTOP_KEY_TRY_EXEC).value_or(program) == program &&
            !isSwitchedOff(file);
    } catch (const FileError &) {
        return false;
    }
}

void autostart::set(const std::filesystem::path &folder, const Entry &entry, bool on) {
    const std::filesystem::path file = folder / entry.fileName;
    if (on) {
        files::replace(file, entryText(entry));
        return;
    }
    files::remove(file);
}

} // namespace ellwynd
