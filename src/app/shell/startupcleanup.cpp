#include "app/shell/startupcleanup.h"

#include "base/log.h"

#include <fmt/format.h>

#include <vector>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

constexpr Log logger{"settings"};

} // namespace

void removeResidualCacheFiles(const fs::path &cachesFolder) {
    // List the files first: removing them may disturb the iteration.
    std::vector<fs::path> residual;
    std::error_code error;
    for (fs::directory_iterator entry(cachesFolder, error), end; !error && entry != end;
         entry.increment(error)) {
        std::error_code unknown;
        // A symbolic link is removed itself, even if it points to a folder.
        const bool folder = fs::is_directory(entry->symlink_status(unknown));
        if (!folder && entry->path().filename().string().starts_with("Cache.db"))
            residual.push_back(entry->path());
    }
    for (const fs::path &file : residual) {
        const std::string name = file.filename().string();
        if (fs::remove(file, error))
            logger.info(fmt::format("Removed residual URL cache file {}", name));
        else if (error)
            logger.error(fmt::format("Couldn't remove {}: {}", name, error.message()));
    }
}

} // namespace ellwynd
