#include "memory/contactlog.h"

#include "base/log.h"
#include "base/referencedate.h"
#include "memory/retention.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace ellwynd {

namespace {

using JSON = nlohmann::ordered_json;

constexpr Log logger{"contacts"};
constexpr std::size_t largestFile = 64UL * 1024 * 1024;

ContactRecord decodeRecord(const JSON &item) {
    const auto id = [&item](const char *key) {
        const JSON &value = item.at(key);
        if (!value.is_number_integer() ||
            (value.is_number_unsigned() && value.get<std::uint64_t>() > INT64_MAX))
            throw FileError(fmt::format("{} is no id.", key));
        return value.get<std::int64_t>();
    };
    const JSON &seconds = item.at("contactedAt");
    const auto date =
        seconds.is_number() ? dateSinceReference(seconds.get<double>()) : std::nullopt;
    if (!date)
        throw FileError("contactedAt is no date.");
    return {.courseID = id("courseID"), .studentID = id("studentID"), .contactedAt = *date};
}

/// @throws FileError, or the JSON library's exception
std::vector<ContactRecord> decode(const std::string &text) {
    const JSON list = JSON::parse(text);
    if (!list.is_array())
        throw FileError("It is no list.");
    std::vector<ContactRecord> records;
    for (const JSON &item : list)
        records.push_back(decodeRecord(item));
    return records;
}

std::string encode(const std::vector<ContactRecord> &records) {
    JSON list = JSON::array();
    for (const ContactRecord &record : records) {
        list.push_back(
            {{"courseID", record.courseID},
             {"studentID", record.studentID},
             {"contactedAt", secondsSinceReference(record.contactedAt)}});
    }
    return list.dump();
}

} // namespace

ContactLog::ContactLog(
    UserDefaults &store, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(store), now(clock), observing(store.observe([this](std::string_view key) {
          if (key == preferences::rememberContacts.name && !isEnabled())
              deleteAll();
      })) {
    if (directory)
        file.emplace(*directory / "ContactLog.json", largestFile);
    if (file && isEnabled() && file->exists()) {
        const SharedFile::Turn turn = file->take();
        load();
    }
}

ContactLog::~ContactLog() = default;

bool ContactLog::isEnabled() const {
    return defaults.value(preferences::rememberContacts);
}

/// Replaces what is in memory by what the file holds; keeps it when that cannot be read.
void ContactLog::load() {
    std::vector<ContactRecord> read;
    try {
        if (const auto text = file->read())
            read = decode(*text);
    } catch (const std::exception &error) {
        logger.error(fmt::format("Couldn't read the contact log: {}", error.what()));
        return;
    }
    const std::size_t decoded = read.size();
    std::erase_if(read, [cutoff = retention::cutoff(now())](const ContactRecord &record) {
        return record.contactedAt < cutoff || retention::isSampleCourse(record.courseID);
    });
    all = std::move(read);
    if (all.size() < decoded)
        save();
}

/// Another process may have noted or forgotten since this one looked: its records stand, and what
/// could not be saved here is applied to them again.
void ContactLog::takeOver(SharedFile::Since since) {
    if (since == SharedFile::Since::nothing)
        return;
    if (since == SharedFile::Since::removed)
        all.clear();
    else
        load();
    for (const ContactRecord &contact : unsaved)
        apply(contact);
}

bool ContactLog::save() {
    if (!file)
        return true;
    try {
        file->replace(encode(all));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't save the contact log: {}", error.what()));
        return false;
    }
    return true;
}

void ContactLog::apply(const ContactRecord &contact) {
    const auto known = std::ranges::find_if(all, [&](const ContactRecord &record) {
        return record.courseID == contact.courseID && record.studentID == contact.studentID;
    });
    if (known != all.end())
        known->contactedAt = contact.contactedAt;
    else
        all.push_back(contact);
}

void ContactLog::noteContact(std::int64_t courseID, std::int64_t studentID, Date date) {
    noteContacts(courseID, {studentID}, date);
}

void ContactLog::noteContacts(
    std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date) {
    if (!isEnabled() || studentIDs.empty())
        return;
    std::optional<SharedFile::Turn> turn;
    if (file) {
        turn.emplace(file->take());
        takeOver(turn->since);
    }
    for (const std::int64_t student : studentIDs) {
        unsaved.push_back({.courseID = courseID, .studentID = student, .contactedAt = date});
        apply(unsaved.back());
    }
    if (save())
        unsaved.clear();
    for (std::size_t noted = 0; noted < studentIDs.size(); ++noted)
        logger.info(fmt::format("Noted a contact in course {}", courseID));
    Q_EMIT contactsDidChange();
}

void ContactLog::fill(std::vector<ContactRecord> records) {
    all = std::move(records);
    Q_EMIT contactsDidChange();
}

void ContactLog::deleteAll() {
    all.clear();
    unsaved.clear();
    if (file)
        file->remove();
    logger.info("Deleted the contact log");
    Q_EMIT contactsDidChange();
}

std::optional<ContactRecord>
ContactLog::lastContact(std::int64_t courseID, std::int64_t studentID) const {
    const auto found = std::ranges::find_if(all, [&](const ContactRecord &record) {
        return record.courseID == courseID && record.studentID == studentID;
    });
    return found != all.end() ? std::optional{*found} : std::nullopt;
}

std::string contactsStatus(const ContactLog &log) {
    const std::size_t students = log.records().size();
    return students == 0
        ? "Nothing recorded."
        : fmt::format("{} student{} recorded.", students, students == 1 ? "" : "s");
}

} // namespace ellwynd
