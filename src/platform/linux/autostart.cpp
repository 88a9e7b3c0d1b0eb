#include "platform/session/autostart.h"

#include "base/files.h"

#include <fmt/format.h>

#include <string_view>
#include <system_error>

namespace ellwynd {

namespace {

constexpr std::size_t longestEntry = 64 * 1024;

/// A value of a desktop entry's key, with what would end or change it marked.
std::string stringValue(std::string_view text) {
    std::string value;
    for (const char c : text) {
        if (c == '\n')
            value += "\\n";
        else if (c == '\\')
            value += "\\\\";
        else
            value += c;
    }
    return value;
}

/// A program as the one argument of "Exec": quoted, with what means something else there marked.
std::string execArgument(std::string_view program) {
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

std::string entryText(const autostart::Entry &entry) {
    const std::string program = entry.program.string();
    return fmt::format(
        "[Desktop Entry]\nType=Application\nName={}\nExec={}\nTryExec={}\n",
        stringValue(entry.name), stringValue(execArgument(program)), stringValue(program));
}

} // namespace

// Settings of desktops switch an entry off by a line of their own, or by removing it.
bool autostart::isOn(const std::filesystem::path &folder, const Entry &entry) {
    try {
        const auto text = files::read(folder / entry.fileName, longestEntry);
        const std::string own = entryText(entry);
        if (!text || !text->starts_with(own))
            return false;
        const std::string_view added = std::string_view(*text).substr(own.size());
        return added.find("Hidden") == added.npos && added.find("=false") == added.npos;
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
    std::error_code error;
    std::filesystem::remove(file, error);
    if (error)
        throw FileError(
            fmt::format("{} couldn't be removed: {}.", entry.fileName, error.message()));
}

} // namespace ellwynd
