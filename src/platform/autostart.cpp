#include "platform/autostart.h"

#include "platform/files.h"

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

bool hasLine(std::string_view text, std::string_view line) {
    for (std::size_t at = text.find(line); at != text.npos; at = text.find(line, at + 1)) {
        const std::size_t end = at + line.size();
        if ((at == 0 || text[at - 1] == '\n') && (end == text.size() || text[end] == '\n'))
            return true;
    }
    return false;
}

} // namespace

bool autostart::isOn(const std::filesystem::path &folder, const Entry &entry) {
    try {
        const auto text = files::read(folder / entry.fileName, longestEntry);
        return text && !hasLine(*text, "Hidden=true") &&
            !hasLine(*text, "X-GNOME-Autostart-enabled=false");
    } catch (const FileError &) {
        return false;
    }
}

void autostart::set(const std::filesystem::path &folder, const Entry &entry, bool on) {
    const std::filesystem::path file = folder / entry.fileName;
    if (on) {
        const std::string program = entry.program.string();
        files::replace(
            file,
            fmt::format(
                "[Desktop Entry]\nType=Application\nName={}\nExec={}\nTryExec={}\n",
                stringValue(entry.name), stringValue(execArgument(program)), stringValue(program)));
        return;
    }
    std::error_code error;
    std::filesystem::remove(file, error);
    if (error)
        throw FileError(
            fmt::format("{} couldn't be removed: {}.", entry.fileName, error.message()));
}

} // namespace ellwynd
