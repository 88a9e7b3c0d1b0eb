#include "base/sharedstore.h"

#include <fmt/format.h>

namespace ellwynd {

std::future<void> startThread(std::function<void()> work) {
    return std::async(std::launch::async, std::move(work));
}

StoreFile::StoreFile(StoreFileOptions options, const std::filesystem::path &directory, Clock now)
    : options(options), file(directory / options.fileName, options.maxSize), now(now) {}

SharedFile::Transaction StoreFile::begin() {
    SharedFile::Transaction transaction = file.begin();
    // A replaced file is read next.
    unavailable = transaction.externalChange == ExternalChange::unknown;
    return transaction;
}

/// The text; absent when there is no file. @throws FileError
std::optional<std::string> StoreFile::read() {
    unavailable = true;
    try {
        auto text = file.read();
        unavailable = false;
        return text;
    } catch (const FileUnavailable &) {
        throw;
    } catch (const FileError &) {
        unavailable = false;
        throw;
    } catch (const std::exception &) {
        throw FileUnavailable("There is not enough memory.");
    }
}

bool StoreFile::load(const std::function<void(std::string_view)> &decode) {
    std::string problem;
    try {
        const auto text = read();
        if (!text)
            return false;
        decode(*text);
        unreadableRemains = false;
        return true;
    } catch (const FileError &error) {
        problem = error.what();
    } catch (const std::exception &) {
        // The message of a library might quote the text.
        problem = "Its content is not as expected.";
    }
    options.log.error(fmt::format("Couldn't read {}: {}", options.contents, problem));
    if (!unavailable && options.unreadable != UnreadableFile::replace)
        setAside();
    return false;
}

long long StoreFile::secondsSince1970() const {
    return std::chrono::floor<std::chrono::seconds>(now()).time_since_epoch().count();
}

void StoreFile::setAside() {
    try {
        const auto aside = file.setAside(secondsSince1970());
        unreadableRemains = false;
        options.log.error(
            fmt::format("Set {} aside at {}", options.unreadableName, aside.filename().string()));
    } catch (const FileError &error) {
        unreadableRemains = true;
        options.log.error(
            fmt::format("Couldn't set {} aside: {}", options.unreadableName, error.what()));
    }
}

bool StoreFile::save(const std::function<std::string()> &encode) {
    const bool mustSetAside = options.unreadable == UnreadableFile::setAsideBeforeSaving;
    if (unreadableRemains && mustSetAside)
        setAside();
    std::string problem;
    try {
        // Never overwrite a file that may hold data of the teacher's.
        if (unavailable)
            throw FileError("The file is there but cannot be read at the moment.");
        if (unreadableRemains && mustSetAside)
            throw FileError("The unreadable file is still in place.");
        file.replace(encode());
        unreadableRemains = false;
        return true;
    } catch (const FileError &error) {
        problem = error.what();
    } catch (const std::exception &) {
        problem = "The contents could not be encoded.";
    }
    options.log.error(fmt::format("Couldn't save {}: {}", options.contents, problem));
    return false;
}

bool StoreFile::remove() {
    try {
        file.remove();
        unavailable = false;
        unreadableRemains = false;
        return true;
    } catch (const FileError &) {
        return false;
    }
}

void StoreFile::removeOldCopies() const {
    if (options.copiesKeptFor)
        file.removeSetAside(secondsSince1970() - options.copiesKeptFor->count());
}

} // namespace ellwynd
