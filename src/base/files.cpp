#include "base/files.h"

#include "base/filecalls.h"

#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view setAsideMark = ".unreadable-";

using filecalls::Descriptor;
using filecalls::systemMessage;

/// The second in the name of a copy that was set aside; absent for other files.
std::optional<long long> secondSetAside(const fs::path &file, const std::string &name) {
    const std::string begin = file.stem().string().append(setAsideMark);
    const std::string end = file.extension().string();
    if (!name.starts_with(begin) || !name.ends_with(end) ||
        name.size() <= begin.size() + end.size())
        return std::nullopt;
    const char *const last = name.data() + name.size() - end.size();
    long long second = 0;
    const auto [parsed, error] = std::from_chars(name.data() + begin.size(), last, second);
    return error == std::errc() && parsed == last ? std::optional{second} : std::nullopt;
}

/// @param before seconds since 1970; absent for all copies.
std::vector<fs::path> copiesSetAside(const fs::path &file, std::optional<long long> before) {
    std::vector<fs::path> copies;
    std::error_code error;
    for (fs::directory_iterator entry(file.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        const auto second = secondSetAside(file, entry->path().filename().string());
        if (second && (!before || *second < *before))
            copies.push_back(entry->path());
    }
    return copies;
}

} // namespace

bool FileError::isDiskFull() const {
    return code == ENOSPC || code == EDQUOT;
}

std::optional<std::string> files::read(const fs::path &file, std::size_t limit) {
    constexpr std::size_t spare = 64;
    const auto message = [&file](const std::string &why) {
        return fmt::format("{} couldn’t be read: {}.", file.filename().string(), why);
    };
    constexpr const char *irregular = "it is not a regular file";
    const Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor.get() < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return std::nullopt;
        // A socket cannot be opened.
        if (errno == ENXIO)
            throw FileError(message(irregular));
        throw FileUnavailable(message(systemMessage(errno)));
    }
    struct stat info {};
    if (::fstat(descriptor.get(), &info) != 0)
        throw FileUnavailable(message(systemMessage(errno)));
    if (!S_ISREG(info.st_mode))
        throw FileError(message(irregular));
    if (std::size_t(info.st_size) > limit)
        throw FileError(message(fmt::format("it is larger than {} MiB", limit / (1024UL * 1024))));

    std::string bytes;
    bytes.reserve(std::size_t(info.st_size) + spare);
    bytes.resize(std::size_t(info.st_size));
    std::size_t filled = 0;
    while (filled < bytes.size()) {
        const ssize_t got = ::read(descriptor.get(), bytes.data() + filled, bytes.size() - filled);
        if (got < 0 && errno == EINTR)
            continue;
        if (got < 0)
            throw FileUnavailable(message(systemMessage(errno)));
        if (got == 0)
            break;
        filled += std::size_t(got);
    }
    bytes.resize(filled);
    return bytes;
}

void files::createParentFolder(const fs::path &file) {
    try {
        filecalls::createFolders(file.parent_path());
    } catch (const FileError &) {
        // The write that follows reports the reason.
    }
}

fs::path files::setAside(const fs::path &file, long long secondsSince1970) {
    // An existing file is never overwritten: the next free second is used.
    for (long long second = secondsSince1970;; ++second) {
        fs::path aside = file.parent_path() /
            fmt::format("{}{}{}{}", file.stem().string(), setAsideMark, second,
                        file.extension().string());
        if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
            filecalls::syncFolder(file.parent_path());
            return aside;
        }
        const int code = errno;
        std::error_code error;
        if (code == EINVAL && !fs::exists(aside, error)) {
            // Some network file systems do not support RENAME_NOREPLACE.
            fs::rename(file, aside, error);
            if (error)
                throw FileError(error.message());
            filecalls::syncFolder(file.parent_path());
            return aside;
        }
        if (code != EEXIST && code != EINVAL)
            throw FileError(systemMessage(code));
    }
}

bool files::hasSetAside(const fs::path &file) {
    return !copiesSetAside(file, {}).empty();
}

void files::removeSetAside(const fs::path &file, std::optional<long long> before) {
    for (const fs::path &copy : copiesSetAside(file, before)) {
        std::error_code ignored;
        fs::remove(copy, ignored);
    }
}

void files::remove(const fs::path &file) {
    std::error_code error;
    if (fs::remove(file, error))
        filecalls::syncFolder(file.parent_path());
    else if (error && error != std::errc::not_a_directory)
        throw FileError(
            fmt::format("{} couldn’t be removed: {}.", file.filename().string(), error.message()));
}

files::Stamp files::stamp(const fs::path &file) {
    struct stat info {};
    if (::stat(file.c_str(), &info) != 0) {
        const bool absent = errno == ENOENT || errno == ENOTDIR;
        return {.size = absent ? Stamp::absent : Stamp::unknown};
    }
    constexpr std::int64_t second = 1'000'000'000;
    return {
        .inode = info.st_ino,
        .modifiedNanoseconds = info.st_mtim.tv_sec * second + info.st_mtim.tv_nsec,
        .size = info.st_size};
}

files::Lock::Lock(const fs::path &file) : descriptor(-1) {
    createParentFolder(file);
    const fs::path lock = file.parent_path() / filecalls::companionName(file, ".lock");
    descriptor = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    while (descriptor >= 0 && ::flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
}

files::Lock::~Lock() {
    if (descriptor >= 0)
        ::close(descriptor);
}

} // namespace ellwynd
