// Programs that the desktop starts with the session.
#pragma once

#include <filesystem>
#include <string>

namespace ellwynd::autostart {

/// An entry in the teacher's own folder.
struct Entry {
    /// The entry's file, "com.varnok.Ellwynd.Widget.desktop".
    std::string fileName;
    /// What start-up settings call it.
    std::string name;
    /// The whole path of the program. Once that is gone the entry starts nothing.
    std::filesystem::path program;
};

/// Whether the folder has the entry for this very program, and nobody has switched it off there.
[[nodiscard]] bool isOn(const std::filesystem::path &folder, const Entry &entry);

/// Writes or removes the entry.
/// @throws FileError
void set(const std::filesystem::path &folder, const Entry &entry, bool on);

} // namespace ellwynd::autostart
