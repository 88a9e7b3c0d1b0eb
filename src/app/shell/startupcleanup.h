// What a start throws away before anything else, so that no answer of Canvas lies on the disk.
#pragma once

#include <filesystem>

namespace ellwynd {

/// Removes the files of a caches folder whose names begin with "Cache.db": what a cache of the
/// system's network library would have left there. The program itself caches nothing on the disk,
/// and in memory its network sessions have no cache that would have to be emptied. Folders are left
/// alone, and so is everything below them. What cannot be removed is logged.
void removeResidualCacheFiles(const std::filesystem::path &cachesFolder);

} // namespace ellwynd
