// The program's folders in the user's home folder.
#pragma once

#include <filesystem>

/// The paths only; no folder is created.
namespace ellwynd::directories {

/// Preferences.
[[nodiscard]] std::filesystem::path config();

/// Entries of programs that the desktop starts with the session.
[[nodiscard]] std::filesystem::path autostart();

/// State of this machine alone, which is not synced.
[[nodiscard]] std::filesystem::path state();

/// Files that may be deleted at any time.
[[nodiscard]] std::filesystem::path caches();

/// Roster history, contacts and message templates.
[[nodiscard]] std::filesystem::path data();

/// The folder that the program shares with its widgets.
[[nodiscard]] std::filesystem::path widgetContainer();

} // namespace ellwynd::directories
