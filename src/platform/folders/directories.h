// The folders that belong to the program, where the desktop keeps such folders.
#pragma once

#include <filesystem>

/// None of them is made by asking for it.
namespace ellwynd::directories {

/// Preferences.
[[nodiscard]] std::filesystem::path config();

/// What the desktop starts with the session.
[[nodiscard]] std::filesystem::path autostart();

/// What is true of this machine alone.
[[nodiscard]] std::filesystem::path state();

/// What anybody may delete.
[[nodiscard]] std::filesystem::path caches();

/// The files the program remembers by.
[[nodiscard]] std::filesystem::path data();

/// The container that the program shares with its widgets.
[[nodiscard]] std::filesystem::path widgetContainer();

} // namespace ellwynd::directories
