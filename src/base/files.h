// Whole files: read up to a size limit, replaced atomically, locked and set aside.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

namespace ellwynd {

/// A file that could not be read or written. The message is one sentence and names the file.
class FileError : public std::runtime_error {
  public:
    /// @param code the system's error number; 0 if it has none.
    explicit FileError(const std::string &message, int code = 0)
        : std::runtime_error(message), code(code) {}

    /// Whether the disk, or the user's share of it, is full.
    [[nodiscard]] bool isDiskFull() const;

  private:
    int code;
};

/// A file that the system did not let this process read, perhaps only for a moment: no access, no
/// free descriptor, a loop of links, a fault of the disk. Nothing is known of its content, so it
/// must be neither set aside nor overwritten.
class FileUnavailable : public FileError {
  public:
    using FileError::FileError;
};

namespace files {

/// The bytes of a file; absent when it does not exist. `limit` is in bytes. The string has some
/// spare capacity, which JSON readers use.
/// @throws FileError for anything but a regular file, and for a file above the limit.
/// @throws FileUnavailable when it cannot be opened or read.
[[nodiscard]] std::optional<std::string> read(const std::filesystem::path &file, std::size_t limit);

/// The new contents of a file, written to a temporary file beside it. Most errors occur before
/// `commit`, so that several files can be replaced together or not at all.
class Replacement {
  public:
    enum class Access {
        /// The file is accessible to its owner alone, whatever it was before.
        ownerOnly,
        /// For a file of the teacher's, such as an export: an existing one keeps its permissions
        /// and, where the system allows, its owner and group. Behind a symbolic link, the file that
        /// it points to is replaced. Only regular files are.
        keep,
    };

    /// Writes the temporary file, and removes those of processes that were killed. New files and
    /// folders are accessible to their owner alone.
    /// @throws FileError when the bytes cannot be written, or the file is a folder.
    Replacement(
        std::filesystem::path file, std::string_view bytes, Access access = Access::ownerOnly);
    /// Removes the temporary file unless it was committed.
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Renames the temporary file to the file. Called at most once.
    /// @throws FileError on failure; the old file is then unchanged.
    void commit();
    /// The same for two files: both are replaced or, on failure, neither. A process that is killed
    /// in between leaves the first one new. Called at most once, on neither after `commit`.
    /// @throws FileError on failure.
    void commitWith(Replacement &second);

  private:
    /// The file that is replaced, under a second name.
    struct Previous {
        /// Empty if there is none, or if the file system has no hard links.
        std::string name;
        bool existed = false;
    };
    [[nodiscard]] Previous linkPrevious() const;
    void restore(const Previous &previous) const;

    std::filesystem::path file;
    /// Empty once committed.
    std::string temporary;
    /// The descriptor of the temporary file, which is locked while it is open.
    int lock = -1;
};

/// Replaces a file atomically and durably. New files and folders are accessible to their owner
/// alone.
/// @throws FileError on failure; the old file is then unchanged.
void replace(const std::filesystem::path &file, std::string_view bytes);

/// The same for a file of the teacher's, with `Replacement::Access::keep`.
void replaceForTeacher(const std::filesystem::path &file, std::string_view bytes);

/// Creates the file's folder and its missing parents, accessible to their owner alone. A failure is
/// ignored; the write that follows reports it.
void createParentFolder(const std::filesystem::path &file);

/// Removes the temporary files of processes that were killed while they replaced this file. Those
/// of other files, and those that are being written, are kept, so no lock is needed. Failures are
/// ignored.
void removeLeftovers(const std::filesystem::path &file);

/// Whether a file of this name is a temporary file of `replace`, for whatever file.
[[nodiscard]] bool isTemporaryName(std::string_view fileName);

/// Renames a file within its folder to its base name, ".unreadable-", the whole seconds since 1970
/// and its extension; returns the new path. If that name is taken, the next free second is used.
/// @throws FileError when it cannot be moved.
std::filesystem::path setAside(const std::filesystem::path &file, long long secondsSince1970);

/// Whether `setAside` made copies of a file that are still there.
[[nodiscard]] bool hasSetAside(const std::filesystem::path &file);

/// Removes the copies of a file that `setAside` made; failures are ignored.
/// @param before only those of earlier seconds since 1970; absent for all.
void removeSetAside(const std::filesystem::path &file, std::optional<long long> before = {});

/// Removes a file; a missing one is not an error.
/// @throws FileError when it cannot be removed.
void remove(const std::filesystem::path &file);

/// Identifies the state of a file without reading it: every replacement changes the stamp.
struct Stamp {
    /// The size of a file that does not exist.
    static constexpr std::int64_t absent = -1;
    /// The size when it cannot be determined, such as in a folder without access.
    static constexpr std::int64_t unknown = -2;

    std::uint64_t inode = 0;
    std::int64_t modifiedNanoseconds = 0;
    /// In bytes.
    std::int64_t size = absent;

    bool operator==(const Stamp &) const = default;
};
[[nodiscard]] Stamp stamp(const std::filesystem::path &file);

/// An exclusive lock between processes, held while a file is read, changed and replaced. It is
/// taken on a lock file beside the file. Where that cannot be created, as in a read-only folder,
/// nothing is locked; the write that follows reports the reason.
class Lock {
  public:
    explicit Lock(const std::filesystem::path &file);
    ~Lock();
    Lock(Lock &&other) noexcept : descriptor(std::exchange(other.descriptor, -1)) {}
    Lock &operator=(Lock &&) = delete;

  private:
    int descriptor;
};

} // namespace files

} // namespace ellwynd
