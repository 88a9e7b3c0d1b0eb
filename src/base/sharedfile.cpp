#include "base/sharedfile.h"

namespace ellwynd {

SharedFile::SharedFile(std::filesystem::path path, std::size_t largest)
    : file(std::move(path)), limit(largest), seen(files::stamp(file)) {}

SharedFile::Turn SharedFile::take() {
    // Asked before the lock is taken, which makes the folder. A folder that went away as a whole
    // says nothing about what the program should remember.
    const bool folderStands = std::filesystem::is_directory(file.parent_path());
    Turn turn(file);
    // No other process is writing now, so what a killed one left beside the file is litter.
    files::removeLeftovers(file);
    const files::Stamp current = files::stamp(file);
    if (current != seen) {
        const bool gone = current == files::Stamp{};
        turn.since = !gone ? Since::replaced : folderStands ? Since::removed : Since::nothing;
        // Not known before it is read; known to be gone otherwise.
        if (gone)
            seen = current;
    }
    return turn;
}

std::optional<std::string> SharedFile::read() {
    seen = files::stamp(file);
    return files::read(file, limit);
}

void SharedFile::replace(std::string_view bytes) {
    files::replace(file, bytes);
    seen = files::stamp(file);
}

void SharedFile::remove() {
    const bool folderStands = std::filesystem::is_directory(file.parent_path());
    if (folderStands)
        static_cast<void>(take());
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
    seen = files::stamp(file);
}

std::filesystem::path SharedFile::setAside(long long secondsSince1970) {
    std::filesystem::path aside = files::setAside(file, secondsSince1970);
    seen = files::stamp(file);
    return aside;
}

bool SharedFile::exists() const {
    return files::stamp(file) != files::Stamp{};
}

} // namespace ellwynd
