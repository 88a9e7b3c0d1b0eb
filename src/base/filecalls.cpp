#include "base/filecalls.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>

namespace ellwynd::filecalls {

namespace fs = std::filesystem;

Descriptor &Descriptor::operator=(Descriptor &&other) noexcept {
    std::swap(fd, other.fd);
    return *this;
}

Descriptor::~Descriptor() {
    if (fd >= 0)
        ::close(fd);
}

std::string systemMessage(int code) {
    return std::generic_category().message(code);
}

FileError writeError(const fs::path &file, int code) {
    return FileError(
        fmt::format("{} couldn’t be written: {}.", file.filename().string(), systemMessage(code)),
        code);
}

void createFolders(const fs::path &folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error))
        return;
    if (folder != folder.root_path())
        createFolders(folder.parent_path());
    if (::mkdir(folder.c_str(), 0700) == 0) {
        syncFolder(folder.parent_path());
    } else if (errno != EEXIST) {
        throw FileError(fmt::format(
            "The folder {} couldn’t be created: {}.", folder.string(), systemMessage(errno)));
    }
}

void syncFolder(const fs::path &folder) {
    const Descriptor descriptor(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0)
        ::fsync(descriptor.get());
}

std::string companionName(const fs::path &file, std::string_view suffix, std::size_t extra) {
    // The limit of encrypted folders, the lowest in use; most file systems allow 255 bytes.
    constexpr std::size_t maxLength = 143;
    const std::string name = file.filename().string();
    const std::size_t added = 1 + suffix.size() + extra;
    if (name.size() + added <= maxLength)
        return fmt::format(".{}{}", name, suffix);

    // FNV-1a: other processes must find the same name.
    std::uint64_t hash = 0xcbf2'9ce4'8422'2325;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 0x0100'0000'01b3;
    constexpr std::size_t hashLength = 17;
    std::size_t kept = maxLength - added - hashLength;
    // Do not cut a UTF-8 sequence, which some file systems reject.
    while (kept > 0 && (static_cast<unsigned char>(name[kept]) & 0xC0U) == 0x80U)
        --kept;
    return fmt::format(".{}~{:016x}{}", name.substr(0, kept), hash, suffix);
}

} // namespace ellwynd::filecalls
