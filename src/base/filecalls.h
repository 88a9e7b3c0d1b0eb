// File system calls that the sources of base/files.h share.
#pragma once

#include "base/files.h"

namespace ellwynd::filecalls {

/// Owns a file descriptor; negative for none.
class Descriptor {
  public:
    explicit Descriptor(int fd = -1) : fd(fd) {}
    Descriptor(Descriptor &&other) noexcept : fd(std::exchange(other.fd, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept;
    ~Descriptor();

    [[nodiscard]] int get() const { return fd; }
    /// The caller closes it.
    [[nodiscard]] int release() { return std::exchange(fd, -1); }

  private:
    int fd;
};

/// The system's text for an error number.
[[nodiscard]] std::string systemMessage(int code);

/// The error of a file that could not be written.
/// @param code an error number.
[[nodiscard]] FileError writeError(const std::filesystem::path &file, int code);

/// Like create_directories, with mode 0700 for each new folder. @throws FileError
void createFolders(const std::filesystem::path &folder);

/// Makes a change of the names in a folder survive a crash of the machine, where the file system
/// supports it. A failure is ignored: the change itself was made.
void syncFolder(const std::filesystem::path &folder);

/// The name of a file beside another one that belongs to it: a dot, its name and `suffix`. Of a
/// long name only the beginning is used, followed by a hash of it all, so that every file system
/// that holds the file can hold this one too.
/// @param extra how many more bytes the caller appends.
[[nodiscard]] std::string
companionName(const std::filesystem::path &file, std::string_view suffix, std::size_t extra = 0);

} // namespace ellwynd::filecalls
