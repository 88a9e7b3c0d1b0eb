#include "base/sharedstore.h"

#include <fmt/format.h>

namespace ellwynd {

StoreFile::StoreFile(StoreFileOptions options, const std::filesystem::path &directory, Clock now)
    : options(options), file(directory / options.fileName, options.maxSize), now(now) {}

bool StoreFile::load(const std::function<void(std::string_view)> &decode) {
    try {
        const auto text = file.read();
        if (!text)
            return false;
        decode(*text);
        unreadableRemains = false;
    } catch (const std::exception &error) {
        options.log.error(fmt::format("Couldn't read {}: {}", options.contents, error.what()));
        if (options.unreadable != UnreadableFile::replace)
            setAside();
        return false;
    }
    return true;
}

void StoreFile::setAside() {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now()).time_since_epoch().count();
    try {
        const auto aside = file.setAside(seconds);
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
    try {
        // Never overwrite a file that may hold data of the teacher's.
        if (unreadableRemains && mustSetAside)
            throw FileError("The unreadable file is still in place.");
        file.replace(encode());
    } catch (const std::exception &error) {
        options.log.error(fmt::format("Couldn't save {}: {}", options.contents, error.what()));
        return false;
    }
    unreadableRemains = false;
    return true;
}

} // namespace ellwynd
