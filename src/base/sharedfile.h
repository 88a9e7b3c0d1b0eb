// A file that several processes read and replace as a whole.
#pragma once

#include "base/files.h"

namespace ellwynd {

/// What another process did to a shared file since this one last read, replaced or removed it.
enum class ExternalChange {
    none,
    replaced,
    /// Removed, while its folder still exists.
    removed,
    /// The state of the file cannot be determined, such as in a folder without access.
    unknown,
};

/// Remembers the state in which this process last saw a file, so that a store can merge another
/// process's change before applying its own.
class SharedFile {
  public:
    /// @param limit the maximum size to read, in bytes.
    SharedFile(std::filesystem::path file, std::size_t limit);

    /// Locks the file while it is checked, read and replaced.
    struct Transaction {
        explicit Transaction(const std::filesystem::path &file) : lock(file) {}

        ExternalChange externalChange = ExternalChange::none;
        files::Lock lock;
    };
    [[nodiscard]] Transaction begin();

    /// The bytes; absent when there is no file. A file that is unavailable counts as changed until
    /// it was read. @throws FileError, FileUnavailable
    [[nodiscard]] std::optional<std::string> read();
    /// @throws FileError
    void replace(std::string_view bytes);
    /// Removes the file and its copies that were set aside. @throws FileError if the file remains.
    void remove();
    /// Removes the copies that were set aside before a second since 1970.
    void removeSetAside(long long before) const { files::removeSetAside(file, before); }
    /// Renames an unreadable file as `files::setAside` does; returns its new path.
    /// @throws FileError
    std::filesystem::path setAside(long long secondsSince1970);

    /// False only if there is certainly no file.
    [[nodiscard]] bool mayExist() const;

  private:
    [[nodiscard]] bool folderExists() const;

    std::filesystem::path file;
    std::size_t limit;
    /// Absent after a failed read.
    std::optional<files::Stamp> seen;
};

} // namespace ellwynd
