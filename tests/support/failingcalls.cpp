#include "support/failingcalls.h"

#include <sys/file.h>
#include <sys/inotify.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dirent.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <sched.h>
#include <unistd.h>

namespace ellwynd::test {

namespace {

struct State {
    bool isActive = false;
    int number = 0;
    Fault fault;
    std::vector<std::string> functions;
};
thread_local State state;

} // namespace

bool Fault::appliesTo(const std::string &function) const {
    if (code == shortTransfer)
        return function == "read" || function == "write";
    return code != EINTR || function == "read" || function == "write" || function == "flock";
}

FailingCall::FailingCall(int number, Fault fault) {
    state = {.isActive = true, .number = number, .fault = fault, .functions = {}};
}

FailingCall::~FailingCall() {
    state.isActive = false;
}

const std::vector<std::string> &FailingCall::functions() const {
    return state.functions;
}

std::string FailingCall::function() const {
    const auto index = std::size_t(state.number) - 1;
    return index < state.functions.size() ? state.functions[index] : "";
}

FailingCall::Outcome FailingCall::next(const char *function) {
    if (!state.isActive)
        return Outcome::real;
    state.functions.emplace_back(function);
    const auto number = int(state.functions.size());
    if (state.fault.isLasting && number > state.number) {
        errno = EIO;
        return Outcome::failure;
    }
    if (number != state.number || !state.fault.appliesTo(function))
        return Outcome::real;
    if (state.fault.code == Fault::shortTransfer)
        return Outcome::shortTransfer;
    errno = state.fault.code;
    return Outcome::failure;
}

namespace {

bool fails(const char *function) {
    return FailingCall::next(function) == FailingCall::Outcome::failure;
}

/// The C library's definition of a function.
template<class Function>
Function *real(const char *name) {
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

} // namespace ellwynd::test

using ellwynd::test::FailingCall;
using ellwynd::test::fails;
using ellwynd::test::real;

// Defines a function that fails or calls the C library's.
#define ELLWYND_FAILING(RESULT, NAME, PARAMETERS, ARGUMENTS, EXCEPT, FAILURE)                      \
    extern "C" RESULT NAME PARAMETERS EXCEPT {                                                     \
        static auto *const original = real<RESULT PARAMETERS>(#NAME);                              \
        return fails(#NAME) ? FAILURE : original ARGUMENTS;                                        \
    }

// The same for functions with an optional mode.
#define ELLWYND_FAILING_OPEN(NAME, PARAMETERS, ...)                                                \
    extern "C" int NAME(PARAMETERS int flags, ...) {                                               \
        static auto *const original = real<int(PARAMETERS int, ...)>(#NAME);                       \
        std::va_list list;                                                                         \
        va_start(list, flags);                                                                     \
        const mode_t mode = (flags & O_CREAT) != 0 ? va_arg(list, mode_t) : 0;                     \
        va_end(list);                                                                              \
        return fails(#NAME) ? -1 : original(__VA_ARGS__, flags, mode);                             \
    }
#define ELLWYND_COMMA ,

ELLWYND_FAILING_OPEN(open, const char *path ELLWYND_COMMA, path)
ELLWYND_FAILING_OPEN(open64, const char *path ELLWYND_COMMA, path)
ELLWYND_FAILING_OPEN(openat, int folder ELLWYND_COMMA const char *path ELLWYND_COMMA, folder, path)

ELLWYND_FAILING(int, mkostemp, (char *path, int flags), (path, flags), , -1)
ELLWYND_FAILING(
    int, renameat2,
    (int oldFolder, const char *from, int newFolder, const char *to, unsigned flags),
    (oldFolder, from, newFolder, to, flags), noexcept, -1)
ELLWYND_FAILING(int, link, (const char *from, const char *to), (from, to), noexcept, -1)
ELLWYND_FAILING(int, unlink, (const char *path), (path), noexcept, -1)
ELLWYND_FAILING(
    int, unlinkat, (int folder, const char *path, int flags), (folder, path, flags), noexcept, -1)
ELLWYND_FAILING(int, remove, (const char *path), (path), noexcept, -1)
ELLWYND_FAILING(int, flock, (int fd, int operation), (fd, operation), noexcept, -1)
ELLWYND_FAILING(int, fstat, (int fd, struct stat *info), (fd, info), noexcept, -1)
ELLWYND_FAILING(int, stat, (const char *path, struct stat *info), (path, info), noexcept, -1)
ELLWYND_FAILING(int, stat64, (const char *path, struct stat64 *info), (path, info), noexcept, -1)
ELLWYND_FAILING(int, lstat, (const char *path, struct stat *info), (path, info), noexcept, -1)
ELLWYND_FAILING(int, mkdir, (const char *path, mode_t mode), (path, mode), noexcept, -1)
ELLWYND_FAILING(
    ssize_t, readlink, (const char *path, char *buffer, size_t size), (path, buffer, size),
    noexcept, -1)
ELLWYND_FAILING(int, fchmod, (int fd, mode_t mode), (fd, mode), noexcept, -1)
ELLWYND_FAILING(int, fchown, (int fd, uid_t owner, gid_t group), (fd, owner, group), noexcept, -1)
ELLWYND_FAILING(DIR *, opendir, (const char *path), (path), , nullptr)
ELLWYND_FAILING(DIR *, fdopendir, (int fd), (fd), , nullptr)
ELLWYND_FAILING(dirent *, readdir, (DIR * folder), (folder), , nullptr)
ELLWYND_FAILING(dirent64 *, readdir64, (DIR * folder), (folder), , nullptr)
ELLWYND_FAILING(
    int, inotify_add_watch, (int fd, const char *path, uint32_t mask), (fd, path, mask), noexcept,
    -1)

/// Nothing is written through: no test cuts the power, and a disk is slow.
extern "C" int fsync(int) {
    return fails("fsync") ? -1 : 0;
}

/// Another process gets a turn between the write of a file and its replacement.
extern "C" int rename(const char *from, const char *to) noexcept {
    static auto *const original = real<int(const char *, const char *)>("rename");
    ::sched_yield();
    return fails("rename") ? -1 : original(from, to);
}

extern "C" ssize_t read(int fd, void *buffer, size_t size) {
    static auto *const original = real<ssize_t(int, void *, size_t)>("read");
    const auto outcome = FailingCall::next("read");
    if (outcome == FailingCall::Outcome::failure)
        return -1;
    return original(fd, buffer, outcome == FailingCall::Outcome::real || size == 0 ? size : 1);
}

extern "C" ssize_t write(int fd, const void *buffer, size_t size) {
    static auto *const original = real<ssize_t(int, const void *, size_t)>("write");
    const auto outcome = FailingCall::next("write");
    if (outcome == FailingCall::Outcome::failure)
        return -1;
    return original(fd, buffer, outcome == FailingCall::Outcome::real || size == 0 ? size : 1);
}
