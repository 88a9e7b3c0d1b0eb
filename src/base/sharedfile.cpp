#include "base/sharedfile.h"

namespace ellwynd {

SharedFile::SharedFile(std::filesystem::path file, std::size_t limit)
    : file(std::move(file)), limit(limit), seen(files::stamp(this->file)) {}

SharedFile::Transaction SharedFile::begin() {
    // Checked before taking the lock, which creates the folder. A file that is missing together
    // with its folder does not count as removed.
    const bool hadFolder = folderExists();
    Transaction transaction(file);
    files::removeLeftovers(file);
    const files::Stamp current = files::stamp(file);
    if (current.size == files::Stamp::unknown) {
        transaction.externalChange = ExternalChange::unknown;
        return transaction;
    }
    if (current == seen)
        return transaction;
    if (current.size != files::Stamp::absent) {
        // `read` updates `seen`.
        transaction.externalChange = ExternalChange::replaced;
        return transaction;
    }
    transaction.externalChange = hadFolder ? ExternalChange::removed : ExternalChange::none;
    seen = current;
    return transaction;
}

std::optional<std::string> SharedFile::read() {
    const files::Stamp before = files::stamp(file);
    seen.reset();
    try {
        auto bytes = files::read(file, limit);
        seen = before;
        return bytes;
    } catch (const FileUnavailable &) {
        throw;
    } catch (const FileError &) {
        seen = before;
        throw;
    }
}

void SharedFile::replace(std::string_view bytes) {
    files::replace(file, bytes);
    seen = files::stamp(file);
}

void SharedFile::remove() {
    std::optional<Transaction> transaction;
    // Taking the lock would create the folder.
    if (folderExists())
        transaction.emplace(begin());
    files::removeSetAside(file);
    files::remove(file);
    seen = files::stamp(file);
}

std::filesystem::path SharedFile::setAside(long long secondsSince1970) {
    std::filesystem::path aside = files::setAside(file, secondsSince1970);
    seen = files::stamp(file);
    return aside;
}

bool SharedFile::mayExist() const {
    return files::stamp(file).size != files::Stamp::absent;
}

bool SharedFile::folderExists() const {
    std::error_code error;
    return std::filesystem::is_directory(file.parent_path(), error);
}

} // namespace ellwynd
