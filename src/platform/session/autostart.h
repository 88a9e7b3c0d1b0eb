// Programs that the desktop starts with the session.
#pragma once

#include <filesystem>
#include <string>

namespace ellwynd::autostart {

/// An entry in the user's autostart folder.
struct Entry {
    /// "com.varnok.Ellwynd.Widget.desktop".
    std::string fileName;
    /// The name in the desktop's start-up settings.
    std::string name;
    /// The absolute path of the program. If it no longer exists, the entry has no effect.
    std::filesystem::path program;
    /// Words that need no quoting; may be empty.
    std::string arguments{};
};

/// Whether the folder has the entry for exactly this program, and it is not switched off there.
[[nodiscard]] bool isOn(const std::filesystem::path &folder, const Entry &entry);

/// Writes or removes the entry.
/// @throws FileError
void set(const std::filesystem::path &folder, const Entry &entry, bool on);

} // namespace ellwynd::autostart
