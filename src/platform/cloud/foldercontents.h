// The files of a synced folder: scanned and written in the background.
#pragma once

#include "platform/cloud/cloudkeyvaluestore.h"

#include <filesystem>
#include <map>
#include <stdexcept>

namespace ellwynd {

/// A synced folder that cannot be used at present. The message is a sentence for the teacher.
class FolderError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// A folder with one file for each key, and a mark file that identifies it. All functions block,
/// and may hang where the folder is on a network. Safe on any thread.
namespace folderContents {

/// The platform's limits, in bytes of all values together and in keys.
inline constexpr std::size_t maxBytes = 1024UL * 1024;
inline constexpr std::size_t maxKeys = 1024;
/// The name of the mark file.
inline constexpr std::string_view markName = "Ellwynd.folder";

/// The file of a key, as it was found.
struct KeyFile {
    /// Absent if the file could not be read.
    std::optional<std::string> text;
    /// Whether it may be written: not if only a newer version of the program can read it, nor while
    /// it may still be being delivered, since the rest of it would then replace what is written.
    bool mayReplace = true;

    bool operator==(const KeyFile &) const = default;
};

struct Scan {
    CloudContents contents;
    /// By key.
    std::map<std::string, KeyFile, std::less<>> files;
};

/// The name of a key's file, and the key of a file's name; absent if the file is not a key's.
[[nodiscard]] std::string fileName(std::string_view key);
[[nodiscard]] std::optional<std::string> keyOf(std::string_view fileName);

/// Reads the whole folder. Removes the temporary files of programs that were killed long ago.
/// @param knownMark the mark that the folder had when it was last used; empty if it was not. An
///        empty folder without a mark is then taken for a disk that is not mounted.
/// @throws FolderError if the folder is not there, cannot be listed to the end, or its mark cannot
///         be read.
[[nodiscard]] Scan scan(const std::filesystem::path &folder, const std::string &knownMark);

/// Writes and removes the values of keys whose files are still as `last` found them. Gives the
/// folder a mark if it has none.
/// @return the keys that were not written because the store is full.
/// @throws FolderError if the folder cannot be written.
std::vector<std::string>
update(const std::filesystem::path &folder, const Scan &last, const PreferenceChanges &changes);

/// Creates the folder, if there is none, and gives it a mark, if it has none.
/// @throws FolderError
void create(const std::filesystem::path &folder);

/// Whether the folder has the mark file of this program.
[[nodiscard]] bool hasMark(const std::filesystem::path &folder);

} // namespace folderContents

} // namespace ellwynd
