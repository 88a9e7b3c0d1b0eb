#include "platform/cloud/foldercontents.h"

#include "base/files.h"
#include "base/json.h"
#include "base/text.h"

#include <QUuid>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <charconv>

namespace ellwynd {

namespace {

namespace fs = std::filesystem;
using folderContents::KeyFile;
using folderContents::Scan;
using nlohmann::json;

constexpr std::string_view extension = ".json";
/// The format of a key's file. Files without a version are of this one.
constexpr std::int64_t formatVersion = 1;
/// The number of files of any kind after which a folder is not one of the program's.
constexpr std::size_t maxFiles = 100'000;
/// In bytes of all files together.
constexpr std::size_t maxScannedBytes = 8UL * 1024 * 1024;
constexpr std::size_t maxMarkBytes = 4096;
/// Another machine may still be at work on a younger temporary file.
constexpr std::chrono::hours leftoverAge{24};
/// How long the delivery of a file may take.
constexpr std::chrono::hours deliveryLimit{1};

bool isUnescaped(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || isDigit(c) || c == '.' || c == '_';
}

std::string nameOf(const fs::path &folder) {
    return folder.filename().empty() ? folder.parent_path().filename().string()
                                     : folder.filename().string();
}

FolderError notThere(const fs::path &folder) {
    return FolderError(fmt::format(
        "The folder “{}” is not there. Is its disk connected, and your sync service running?",
        nameOf(folder)));
}

std::string textOf(const PreferenceValue &value) {
    return "{\"value\": " + toJSON(value) + "}\n";
}

/// The value of a file's text. A text that is not whole has none.
std::optional<PreferenceValue> parse(KeyFile &file) {
    try {
        const json read = parseJSON(file.text.value_or(std::string()));
        const json &version = memberOf(read, "version");
        if (!version.is_null() && integerOf(version) != formatVersion) {
            file.mayReplace = false;
            return std::nullopt;
        }
        return fromJSON(memberOf(read, "value"));
    } catch (const FileError &) {
        return std::nullopt;
    }
}

KeyFile readKeyFile(const fs::path &file) {
    try {
        return {.text = files::read(file, folderContents::maxBytes)};
    } catch (const FileError &) {
        return {};
    }
}

bool isOlderThan(const fs::path &file, std::chrono::hours age) {
    std::error_code error;
    const auto written = fs::last_write_time(file, error);
    return !error && written < fs::file_time_type::clock::now() - age;
}

/// The folder's mark; empty if it has none.
std::string readMark(const fs::path &folder) {
    try {
        const auto text = files::read(folder / folderContents::markName, maxMarkBytes);
        if (!text)
            return {};
        if (auto mark = stringOf(memberOf(parseJSON(*text), "folder")); mark && !mark->empty())
            return *std::move(mark);
    } catch (const FileError &) {
        // As if it were not valid.
    }
    throw FolderError(fmt::format(
        "The file “{}” in the folder cannot be read at present. Your sync service may still be "
        "fetching it.",
        folderContents::markName));
}

void writeMark(const fs::path &folder) {
    const QUuid id = QUuid::createUuid();
    const json mark = {{"folder", id.toString(QUuid::WithoutBraces).toStdString()}};
    files::replace(folder / folderContents::markName, prettyJSON(mark));
}

/// The names of all key files. @throws FolderError unless the folder could be listed to the end
std::vector<std::string> listKeys(const fs::path &folder) {
    std::vector<std::string> keys;
    std::vector<fs::path> leftovers;
    std::size_t count = 0;
    std::error_code error;
    fs::directory_iterator entry(folder, error);
    if (error == std::errc::no_such_file_or_directory || error == std::errc::not_a_directory)
        throw notThere(folder);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (++count > maxFiles)
            throw FolderError(fmt::format("“{}” has too many files.", nameOf(folder)));
        const std::string name = entry->path().filename().string();
        if (auto key = folderContents::keyOf(name))
            keys.push_back(*std::move(key));
        else if (files::isTemporaryName(name) && isOlderThan(entry->path(), leftoverAge))
            leftovers.push_back(entry->path());
    }
    if (error)
        throw FolderError(
            fmt::format("“{}” could not be read: {}.", nameOf(folder), error.message()));
    for (const fs::path &leftover : leftovers)
        fs::remove(leftover, error);
    std::ranges::sort(keys);
    return keys;
}

} // namespace

std::string folderContents::fileName(std::string_view key) {
    std::string name;
    for (const char c : key) {
        if (isUnescaped(c))
            name += c;
        else
            name += fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return name + std::string(extension);
}

std::optional<std::string> folderContents::keyOf(std::string_view name) {
    if (!name.ends_with(extension))
        return std::nullopt;
    const std::string_view stem = name.substr(0, name.size() - extension.size());
    std::string key;
    for (std::size_t i = 0; i < stem.size(); ++i) {
        unsigned char byte = 0;
        const char *digits = stem.data() + i + 1;
        if (stem[i] == '%' && i + 2 < stem.size() &&
            std::from_chars(digits, digits + 2, byte, 16).ptr == digits + 2) {
            key += char(byte);
            i += 2;
        } else {
            key += stem[i];
        }
    }
    // A name that `fileName` does not produce is a conflict copy or another program's file.
    const bool isConflict = stem.find(".sync-conflict-") != std::string_view::npos;
    const bool isKey = !key.empty() && !isConflict && fileName(key) == name;
    return isKey ? std::optional(key) : std::nullopt;
}

Scan folderContents::scan(const fs::path &folder, const std::string &knownMark) {
    const std::vector<std::string> keys = listKeys(folder);
    Scan result;
    result.contents.mark = readMark(folder);
    if (result.contents.mark.empty() && keys.empty() && !knownMark.empty())
        throw notThere(folder);
    std::size_t bytes = 0;
    for (const std::string &key : keys) {
        KeyFile file = bytes < maxScannedBytes ? readKeyFile(folder / fileName(key)) : KeyFile();
        bytes += file.text ? file.text->size() : 0;
        if (auto value = parse(file)) {
            result.contents.values.emplace(key, *std::move(value));
        } else {
            result.contents.unreadable.insert(key);
            file.mayReplace = file.mayReplace && isOlderThan(folder / fileName(key), deliveryLimit);
        }
        result.files.emplace(key, std::move(file));
    }
    return result;
}

std::vector<std::string>
folderContents::update(const fs::path &folder, const Scan &last, const PreferenceChanges &changes) {
    std::size_t bytes = 0;
    for (const auto &[key, file] : last.files)
        bytes += file.text ? file.text->size() : 0;
    std::size_t keys = last.files.size();
    std::vector<std::string> full;
    // The store is only written while it is there; a write would create the folder.
    if (std::error_code error; !fs::is_directory(folder, error))
        throw notThere(folder);
    try {
        if (last.contents.mark.empty() && readMark(folder).empty())
            writeMark(folder);
        for (const auto &[key, value] : changes) {
            const fs::path path = folder / fileName(key);
            const auto found = last.files.find(key);
            const bool existed = found != last.files.end();
            const KeyFile before = existed ? found->second : KeyFile();
            const bool isThere = files::stamp(path).size != files::Stamp::absent;
            if (!before.mayReplace || existed != isThere ||
                (existed && readKeyFile(path).text != before.text))
                continue;
            const std::size_t oldSize = before.text ? before.text->size() : 0;
            if (!value) {
                std::error_code error;
                fs::remove(path, error);
                if (error)
                    throw FileError(error.message());
                bytes -= oldSize;
                keys -= existed ? 1 : 0;
                continue;
            }
            const std::string text = textOf(*value);
            if (existed && before.text == text)
                continue;
            const std::size_t newBytes = bytes - oldSize + text.size();
            const std::size_t newKeys = keys + (existed ? 0 : 1);
            if (newBytes > maxBytes || newKeys > maxKeys) {
                full.push_back(key);
                continue;
            }
            try {
                files::replace(path, text);
            } catch (const FileError &error) {
                if (!error.isDiskFull())
                    throw;
                full.push_back(key);
                continue;
            }
            bytes = newBytes;
            keys = newKeys;
        }
    } catch (const FileError &error) {
        throw FolderError(
            fmt::format("“{}” could not be written: {}", nameOf(folder), error.what()));
    }
    return full;
}

void folderContents::create(const fs::path &folder) {
    try {
        files::createParentFolder(folder / markName);
        if (std::error_code error; !fs::is_directory(folder, error) || readMark(folder).empty())
            writeMark(folder);
    } catch (const FileError &error) {
        throw FolderError(fmt::format("“{}” cannot be used: {}", nameOf(folder), error.what()));
    }
}

bool folderContents::hasMark(const fs::path &folder) {
    return files::stamp(folder / markName).size >= 0;
}

} // namespace ellwynd
