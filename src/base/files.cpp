#include "base/files.h"

#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

std::string systemMessage(int code) {
    return std::generic_category().message(code);
}

/// Owns a file descriptor.
class Descriptor {
  public:
    explicit Descriptor(int fd) : fd(fd) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    [[nodiscard]] int get() const { return fd; }
    int close() {
        const int result = fd >= 0 ? ::close(fd) : 0;
        fd = -1;
        return result;
    }

  private:
    int fd;
};

/// Like create_directories, with mode 0700 for each new folder.
void createFolders(const fs::path &folder) {
    std::error_code error;
    if (folder.empty() || fs::is_directory(folder, error))
        return;
    if (folder != folder.root_path())
        createFolders(folder.parent_path());
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) {
        throw FileError(fmt::format(
            "The folder {} couldn't be created: {}.", folder.string(), systemMessage(errno)));
    }
}

[[noreturn]] void throwWriteError(const fs::path &file, int code) {
    const std::string message =
        fmt::format("{} couldn't be written: {}.", file.filename().string(), systemMessage(code));
    if (code == ENOSPC || code == EDQUOT)
        throw DiskFullError(message);
    throw FileError(message);
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

/// Makes a rename in the folder survive a crash of the machine, where the file system supports it.
void syncFolder(const fs::path &folder) {
    const Descriptor descriptor(
        ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (descriptor.get() >= 0)
        ::fsync(descriptor.get());
}

constexpr std::string_view temporaryInfix = ".new-";

/// The common prefix of the temporary files that `replace` creates for a file.
std::string temporaryPrefix(const fs::path &file) {
    return "." + file.filename().string() + std::string(temporaryInfix);
}

} // namespace

std::optional<std::string> files::read(const fs::path &file, std::size_t limit) {
    constexpr std::size_t spare = 64;
    const auto message = [&](const std::string &why) {
        return fmt::format("{} couldn't be read: {}.", file.filename().string(), why);
    };
    const auto fail = [&](int code) { throw FileUnavailable(message(systemMessage(code))); };
    Descriptor descriptor(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    if (descriptor.get() < 0) {
        if (errno == ENOENT || errno == ENOTDIR)
            return std::nullopt;
        fail(errno);
    }
    struct stat info {};
    if (::fstat(descriptor.get(), &info) != 0)
        fail(errno);
    if (!S_ISREG(info.st_mode))
        throw FileError(message("it is not a regular file"));
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
            fail(errno);
        if (got == 0)
            break;
        filled += std::size_t(got);
    }
    bytes.resize(filled);
    return bytes;
}

files::Replacement::Replacement(fs::path file, std::string_view bytes) : file(std::move(file)) {
    const fs::path folder = this->file.parent_path();
    createFolders(folder);
    std::error_code error;
    if (fs::is_directory(this->file, error))
        throwWriteError(this->file, EISDIR);
    temporary = folder / (temporaryPrefix(this->file) + "XXXXXX");
    // mkostemp creates the file with mode 0600.
    Descriptor descriptor(::mkostemp(temporary.data(), O_CLOEXEC));
    if (descriptor.get() < 0)
        throwWriteError(this->file, errno);
    // The bytes must be on the disk before the rename.
    if (!writeAll(descriptor.get(), bytes) || ::fsync(descriptor.get()) != 0 ||
        descriptor.close() != 0) {
        const int code = errno;
        ::unlink(temporary.c_str());
        throwWriteError(this->file, code);
    }
}

files::Replacement::~Replacement() {
    if (!temporary.empty())
        ::unlink(temporary.c_str());
}

void files::Replacement::commit() {
    if (::rename(temporary.c_str(), file.c_str()) != 0)
        throwWriteError(file, errno);
    temporary.clear();
    syncFolder(file.parent_path());
}

void files::replace(const fs::path &file, std::string_view bytes) {
    Replacement(file, bytes).commit();
}

void files::createParentFolder(const fs::path &file) {
    try {
        createFolders(file.parent_path());
    } catch (const FileError &) {
        // The write that follows reports the reason.
    }
}

void files::removeLeftovers(const fs::path &file) {
    const std::string prefix = temporaryPrefix(file);
    std::vector<fs::path> leftovers;
    // A folder that cannot be read keeps its leftovers.
    std::error_code error;
    for (fs::directory_iterator entry(file.parent_path(), error), end; !error && entry != end;
         entry.increment(error)) {
        if (entry->path().filename().string().starts_with(prefix))
            leftovers.push_back(entry->path());
    }
    for (const fs::path &leftover : leftovers)
        fs::remove(leftover, error);
}

bool files::isTemporaryName(std::string_view fileName) {
    const std::size_t randomPart = temporaryInfix.size() + 6;
    return fileName.size() > randomPart + 1 && fileName.front() == '.' &&
        fileName.substr(fileName.size() - randomPart, temporaryInfix.size()) == temporaryInfix;
}

fs::path files::setAside(const fs::path &file, long long secondsSince1970) {
    // An existing file is never overwritten: the next free second is used.
    for (long long second = secondsSince1970;; ++second) {
        fs::path aside = file.parent_path() /
            fmt::format("{}.unreadable-{}{}", file.stem().string(), second,
                        file.extension().string());
        if (::renameat2(AT_FDCWD, file.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0)
            return aside;
        const int code = errno;
        std::error_code error;
        if (code == EINVAL && !fs::exists(aside, error)) {
            // Some network file systems do not support RENAME_NOREPLACE.
            fs::rename(file, aside, error);
            if (error)
                throw FileError(error.message());
            return aside;
        }
        if (code != EEXIST && code != EINVAL)
            throw FileError(systemMessage(code));
    }
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
    const fs::path lock = file.parent_path() / ("." + file.filename().string() + ".lock");
    descriptor = ::open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    while (descriptor >= 0 && ::flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
    }
}

files::Lock::~Lock() {
    if (descriptor >= 0)
        ::close(descriptor);
}

} // namespace ellwynd
