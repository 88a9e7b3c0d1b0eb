#include "platform/folders/directories.h"

#include <cstdlib>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

/// A folder of the XDG Base Directory Specification.
/// @param fallback relative to the home folder; used if the variable is not set.
fs::path baseDirectory(const char *variable, const char *fallback) {
    const char *value = std::getenv(variable);
    // The specification has relative paths ignored.
    if (value != nullptr && value[0] == '/')
        return value;
    const char *home = std::getenv("HOME");
    return fs::path(home != nullptr ? home : "/") / fallback;
}

} // namespace

fs::path directories::state() {
    return baseDirectory("XDG_STATE_HOME", ".local/state") / "Ellwynd";
}

fs::path directories::config() {
    return baseDirectory("XDG_CONFIG_HOME", ".config") / "Ellwynd";
}

fs::path directories::autostart() {
    return baseDirectory("XDG_CONFIG_HOME", ".config") / "autostart";
}

fs::path directories::caches() {
    return baseDirectory("XDG_CACHE_HOME", ".cache") / "Ellwynd";
}

fs::path directories::data() {
    return baseDirectory("XDG_DATA_HOME", ".local/share") / "Ellwynd";
}

fs::path directories::widgetContainer() {
    return baseDirectory("XDG_DATA_HOME", ".local/share") / "Q7ZK2M9TXB.com.varnok.Ellwynd";
}

} // namespace ellwynd
