#include "base/filecalls.h"

#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

using filecalls::Descriptor;
using filecalls::writeError;

constexpr std::string_view temporarySuffix = ".new-";
constexpr std::size_t randomLength = 6;

/// The common prefix of the names of a file's temporary files; random characters follow.
std::string temporaryPrefix(const fs::path &file) {
    return filecalls::companionName(file, temporarySuffix, randomLength);
}

bool isTemporary(std::string_view name, std::string_view prefix) {
    return name.size() == prefix.size() + randomLength && name.starts_with(prefix);
}

bool writeAll(int fd, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = ::write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        bytes.remove_prefix(std::size_t(written));
    }
    return true;
}

/// Creates a temporary file with mode 0600, and locks it as long as it is open. That tells it from
/// the leftover of a process that was killed.
/// @param path ends in the placeholder of mkostemp, which is replaced.
Descriptor createTemporary(const fs::path &file, std::string &path) {
    const std::string pattern = path;
    for (;;) {
        path = pattern;
        Descriptor descriptor(::mkostemp(path.data(), O_CLOEXEC));
        if (descriptor.get() < 0)
            throw writeError(file, errno);
        while (::flock(descriptor.get(), LOCK_EX) != 0 && errno == EINTR) {
        }
        struct stat info {};
        if (::fstat(descriptor.get(), &info) != 0 || info.st_nlink > 0)
            return descriptor;
        // Another process took it for a leftover before it was locked, and removed it.
    }
}

/// Gives a new file the owner and the permissions of the one that it replaces, where the system
/// allows. Without the group, the group's permissions are left out.
void copyAccess(int fd, const struct stat &from) {
    struct stat own {};
    if (::fstat(fd, &own) != 0)
        return;
    mode_t mode = from.st_mode & 0777U;
    const bool isSame = own.st_uid == from.st_uid && own.st_gid == from.st_gid;
    if (!isSame && ::fchown(fd, from.st_uid, from.st_gid) != 0 &&
        ::fchown(fd, uid_t(-1), from.st_gid) != 0)
        mode &= ~mode_t(S_IRWXG);
    // On failure the file stays accessible to its owner alone.
    static_cast<void>(::fchmod(fd, mode));
}

/// The file behind a symbolic link, which need not exist yet. @throws FileError for a loop, and
/// when it cannot be determined whether there is a link, which would then be replaced
fs::path linkTarget(fs::path file) {
    constexpr int maxLinks = 40;
    const fs::path named = file;
    for (int links = 0; links < maxLinks; ++links) {
        std::error_code error;
        const fs::path target = fs::read_symlink(file, error);
        const bool isNoLink = error == std::errc::invalid_argument ||
            error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory;
        if (isNoLink)
            return file;
        if (error)
            throw writeError(named, error.value());
        file = file.parent_path() / target;
    }
    throw writeError(named, ELOOP);
}

} // namespace

files::Replacement::Replacement(fs::path file, std::string_view bytes, Access access)
    : file(std::move(file)) {
    if (access == Access::keep)
        this->file = linkTarget(this->file);
    const fs::path folder = this->file.parent_path();
    filecalls::createFolders(folder);
    removeLeftovers(this->file);
    struct stat info {};
    const bool exists = ::stat(this->file.c_str(), &info) == 0;
    if (exists && S_ISDIR(info.st_mode))
        throw writeError(this->file, EISDIR);
    if (exists && access == Access::keep && !S_ISREG(info.st_mode)) {
        throw FileError(fmt::format(
            "{} couldn’t be written: it is not a regular file.", this->file.filename().string()));
    }
    temporary = folder / (temporaryPrefix(this->file) + std::string(randomLength, 'X'));
    Descriptor descriptor = createTemporary(this->file, temporary);
    // The bytes must be on the disk before the rename.
    if (!writeAll(descriptor.get(), bytes) || ::fsync(descriptor.get()) != 0) {
        const int code = errno;
        ::unlink(temporary.c_str());
        throw writeError(this->file, code);
    }
    if (exists && access == Access::keep)
        copyAccess(descriptor.get(), info);
    lock = descriptor.release();
}

files::Replacement::~Replacement() {
    if (!temporary.empty())
        ::unlink(temporary.c_str());
    if (lock >= 0)
        ::close(lock);
}

void files::Replacement::commit() {
    if (::rename(temporary.c_str(), file.c_str()) != 0)
        throw writeError(file, errno);
    temporary.clear();
    filecalls::syncFolder(file.parent_path());
}

void files::Replacement::commitWith(Replacement &second) {
    const Previous previous = linkPrevious();
    try {
        commit();
        second.commit();
    } catch (const FileError &) {
        // Unless the first file was replaced, there is nothing to restore.
        if (temporary.empty())
            restore(previous);
        else if (!previous.name.empty())
            ::unlink(previous.name.c_str());
        throw;
    }
    if (!previous.name.empty())
        ::unlink(previous.name.c_str());
}

/// Gives the file that will be replaced a second name, that of a temporary file.
files::Replacement::Previous files::Replacement::linkPrevious() const {
    std::string name = temporary;
    std::rotate(name.end() - randomLength, name.end() - 1, name.end());
    if (::link(file.c_str(), name.c_str()) == 0)
        return {.name = std::move(name), .existed = true};
    if (errno == ENOENT)
        return {};
    if (errno == EPERM || errno == EOPNOTSUPP)
        return {.name = {}, .existed = true};
    throw writeError(file, errno);
}

/// Puts the previous file back. If that is impossible, the new file stays, which is whole.
void files::Replacement::restore(const Previous &previous) const {
    if (!previous.existed)
        ::unlink(file.c_str());
    else if (!previous.name.empty() && ::rename(previous.name.c_str(), file.c_str()) != 0)
        ::unlink(previous.name.c_str());
    filecalls::syncFolder(file.parent_path());
}

void files::replace(const fs::path &file, std::string_view bytes) {
    Replacement(file, bytes).commit();
}

void files::replaceForTeacher(const fs::path &file, std::string_view bytes) {
    Replacement(file, bytes, Replacement::Access::keep).commit();
}

bool files::isTemporaryName(std::string_view fileName) {
    const std::size_t length = temporarySuffix.size() + randomLength;
    return fileName.size() > length + 1 && fileName.front() == '.' &&
        fileName.substr(fileName.size() - length, temporarySuffix.size()) == temporarySuffix;
}

void files::removeLeftovers(const fs::path &file) {
    const std::string prefix = temporaryPrefix(file);
    const fs::path folder = file.has_parent_path() ? file.parent_path() : fs::path(".");
    std::vector<fs::path> leftovers;
    // A folder that cannot be read keeps its leftovers.
    std::error_code error;
    for (fs::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (isTemporary(entry->path().filename().native(), prefix))
            leftovers.push_back(entry->path());
    }
    for (const fs::path &leftover : leftovers) {
        const Descriptor descriptor(
            ::open(leftover.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
        struct stat info {};
        // A file that a process is writing is locked.
        if (descriptor.get() >= 0 && ::fstat(descriptor.get(), &info) == 0 &&
            S_ISREG(info.st_mode) && ::flock(descriptor.get(), LOCK_EX | LOCK_NB) == 0)
            ::unlink(leftover.c_str());
    }
}

} // namespace ellwynd
