// Cleanup at startup, so that no Canvas response remains on the disk.
#pragma once

#include <filesystem>

namespace ellwynd {

/// Removes the files in a caches folder whose names begin with "Cache.db", which a cache of the
/// system's network library may have left there; the program itself has no network cache. Folders
/// and their contents are kept. Failures are logged.
void removeResidualCacheFiles(const std::filesystem::path &cachesFolder);

} // namespace ellwynd
