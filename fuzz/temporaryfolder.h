// A folder for targets that read files.
#pragma once

#include "base/log.h"

#include <cstdlib>
#include <filesystem>
#include <string>

namespace ellwynd::fuzz {

/// Creates a folder, and silences the log: unreadable files are logged.
inline std::filesystem::path temporaryFolder() {
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    std::string pattern = std::filesystem::temp_directory_path() / "ellwynd-fuzz.XXXXXX";
    return mkdtemp(pattern.data());
}

} // namespace ellwynd::fuzz
