// A file that several processes read whole, change and replace whole.
#pragma once

#include "base/files.h"

namespace ellwynd {

/// What another process did to a shared file since this one last read, replaced or removed it.
enum class ExternalChange {
    none,
    replaced,
    /// Removed, with its folder left alone.
    removed,
};

/// Knows in which state this process last saw a file, so that a store can take over what another
/// process did to it before applying a change of its own.
class SharedFile {
  public:
    /// @param limit the largest size to read, in bytes.
    SharedFile(std::filesystem::path file, std::size_t limit);

    /// Held from looking at the file until it is replaced: no other process changes it meanwhile.
    struct Transaction {
        explicit Transaction(const std::filesystem::path &file) : lock(file) {}

        ExternalChange externalChange = ExternalChange::none;
        files::Lock lock;
    };
    [[nodiscard]] Transaction begin();

    /// The bytes, or nothing when there is no file. @throws FileError
    [[nodiscard]] std::optional<std::string> read();
    /// @throws FileError
    void replace(std::string_view bytes);
    /// A failure is ignored.
    void remove();
    /// Moves an unreadable file out of the way; returns its new name. @throws FileError
    std::filesystem::path setAside(long long secondsSince1970);

    [[nodiscard]] bool exists() const;

  private:
    [[nodiscard]] bool folderExists() const;

    std::filesystem::path file;
    std::size_t limit;
    files::Stamp seen;
};

} // namespace ellwynd
