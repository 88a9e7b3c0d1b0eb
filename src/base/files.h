// Whole files: read with a bound, replaced atomically, and the folders they live in.
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
    using std::runtime_error::runtime_error;
};

namespace files {

/// The bytes of a file, or nothing when there is no file of that name. `limit` is in bytes; the
/// string has some spare capacity, which JSON readers use.
/// @throws FileError for a folder, a file above the limit, or one that cannot be read.
[[nodiscard]] std::optional<std::string> read(const std::filesystem::path &file, std::size_t limit);

/// New bytes for a file, already on the disk beside it: what can fail has mostly failed before the
/// file is touched, so that several files can change together or not at all.
class Replacement {
  public:
    /// A new file is readable by its owner alone, and so is every folder made on the way.
    /// @throws FileError when the bytes cannot be written, or could not take the file's place.
    Replacement(std::filesystem::path file, std::string_view bytes);
    /// Takes the bytes away again unless they are in place.
    ~Replacement();
    Replacement(const Replacement &) = delete;
    Replacement &operator=(const Replacement &) = delete;

    /// Puts the bytes in the file's place. Called at most once.
    /// @throws FileError when it cannot; the old file is then as it was.
    void commit();

  private:
    std::filesystem::path file;
    std::string beside;
};

/// Replaces a file as a whole: a reader, or a crash at any instant, finds the old bytes or the new
/// ones, and the new ones once this has returned. A new file is readable by its owner alone, and so
/// is every folder made on the way.
/// @throws FileError when it cannot; the old file is then as it was.
void replace(const std::filesystem::path &file, std::string_view bytes);

/// Makes the folder that a file is to be written to, readable by its owner alone, and those on the
/// way to it. A failure is left to be reported by the write.
void createParentFolder(const std::filesystem::path &file);

/// Removes what a writer that was killed in the middle of `replace` left beside the file. Only for
/// whoever holds the file's lock.
void removeLeftovers(const std::filesystem::path &file);

/// Moves a file out of the way, in its own folder, to its base name, ".unreadable-", the whole
/// seconds since 1970 and its extension; returns the new name. A name that is taken is left alone,
/// and the next free second is used.
/// @throws FileError when it cannot be moved.
std::filesystem::path setAside(const std::filesystem::path &file, long long secondsSince1970);

/// What tells one state of a file from another without reading it. A file that is not there has a
/// stamp as well, and every replacement has a new one.
struct Stamp {
    /// The size of a file that is not there.
    static constexpr std::int64_t absent = -1;
    /// The size of one that may be there: its folder cannot be entered, or its disk cannot be read.
    static constexpr std::int64_t unknown = -2;

    std::uint64_t inode = 0;
    std::int64_t modifiedNanoseconds = 0;
    /// In bytes.
    std::int64_t size = absent;

    bool operator==(const Stamp &) const = default;
};
[[nodiscard]] Stamp stamp(const std::filesystem::path &file);

/// Held while a file is read, changed and replaced, so that several processes take turns. Made
/// beside the file, in a name of its own. Where no lock can be had, as in a read-only folder, there
/// is none, and the write that follows says why.
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
