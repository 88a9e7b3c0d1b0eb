#include "memory/contactlog.h"

#include "base/json.h"
#include "base/referencedate.h"
#include "base/text.h"
#include "memory/retention.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <map>

namespace ellwynd {

namespace {

using Records = std::vector<ContactRecord>;

constexpr Log logger{"contacts"};

std::int64_t idOf(const nlohmann::json &item, const char *key) {
    const auto id = integerOf(memberOf(item, key));
    if (!id)
        throw FileError(fmt::format("{} is not an id.", key));
    return *id;
}

/// Absent for an entry with a number that is out of range.
std::optional<ContactRecord> decodeRecord(const nlohmann::json &item) {
    for (const char *key : {"courseID", "studentID", "contactedAt"}) {
        if (isOutOfRange(item, key))
            return std::nullopt;
    }
    const auto seconds = numberOf(memberOf(item, "contactedAt"));
    if (!seconds)
        throw FileError("contactedAt is not a date.");
    const std::int64_t courseID = idOf(item, "courseID");
    const std::int64_t studentID = idOf(item, "studentID");
    const auto date = dateSinceReference(*seconds);
    return date ? std::optional(ContactRecord{
                      .courseID = courseID, .studentID = studentID, .contactedAt = *date})
                : std::nullopt;
}

/// Of two records of a student in a course, the later contact counts. @throws FileError
Records decode(std::string_view text) {
    const nlohmann::json list = parseJSON(text);
    if (!list.is_array())
        throw FileError("Expected an array.");
    Records records;
    std::map<std::pair<std::int64_t, std::int64_t>, std::size_t> positions;
    for (const nlohmann::json &item : list) {
        const auto record = decodeRecord(item);
        if (!record)
            continue;
        const auto [known, isNew] =
            positions.try_emplace({record->courseID, record->studentID}, records.size());
        if (isNew)
            records.push_back(*record);
        else
            records[known->second].contactedAt =
                std::max(records[known->second].contactedAt, record->contactedAt);
    }
    return records;
}

std::string encode(const Records &records) {
    // Keeps the order of the keys.
    auto list = nlohmann::ordered_json::array();
    for (const ContactRecord &record : records) {
        list.push_back(
            {{"courseID", record.courseID},
             {"studentID", record.studentID},
             {"contactedAt", secondsSinceReference(record.contactedAt)}});
    }
    return list.dump();
}

StoreFileOptions fileOptions() {
    return {
        .fileName = "ContactLog.json",
        .maxSize = 64UL * 1024 * 1024,
        .log = logger,
        .contents = "the contact log",
        .copiesKeptFor = retention::period};
}

SharedStore<Records>::Codec codec(Clock clock) {
    return {.decode = decode, .encode = encode, .prune = [clock](Records &records) {
                const Date cutoff = retention::cutoff(clock());
                return std::erase_if(records, [cutoff](const ContactRecord &record) {
                           return record.contactedAt < cutoff ||
                               retention::isSampleCourse(record.courseID);
                       }) > 0;
            }};
}

auto find(const Records &records, std::int64_t courseID, std::int64_t studentID) {
    return std::ranges::find_if(records, [&](const ContactRecord &record) {
        return record.courseID == courseID && record.studentID == studentID;
    });
}

void note(Records &records, const ContactRecord &contact) {
    const auto known = find(records, contact.courseID, contact.studentID);
    if (known != records.end())
        records[std::size_t(known - records.begin())].contactedAt = contact.contactedAt;
    else
        records.push_back(contact);
}

/// The same, unless a later contact with the student is recorded.
void noteUnlessOlder(Records &records, const ContactRecord &contact) {
    const auto known = find(records, contact.courseID, contact.studentID);
    if (known == records.end() || known->contactedAt < contact.contactedAt)
        note(records, contact);
}

} // namespace

ContactLog::ContactLog(
    UserDefaults &defaults, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(defaults),
      store(fileOptions(), codec(clock), directory, clock),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::rememberContacts.name &&
              retention::isSwitchedOff(this->defaults, preferences::rememberContacts))
              deleteAll();
      })) {
    if (isEnabled())
        store.open();
}

ContactLog::~ContactLog() = default;

bool ContactLog::isEnabled() const {
    return defaults.value(preferences::rememberContacts);
}

void ContactLog::noteContact(std::int64_t courseID, std::int64_t studentID, Date date) {
    noteContacts(courseID, {studentID}, date);
}

void ContactLog::noteContacts(
    std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date) {
    if (!isEnabled() || studentIDs.empty())
        return;
    // Meanwhile another process may save a later contact.
    const auto noting = [&](auto noteOne) {
        return [courseID, studentIDs, date, noteOne](Records &records) {
            for (const std::int64_t student : studentIDs)
                noteOne(records, {.courseID = courseID, .studentID = student, .contactedAt = date});
        };
    };
    store.change(noting(note), noting(noteUnlessOlder));
    for (std::size_t i = 0; i < studentIDs.size(); ++i)
        logger.info(fmt::format("Noted a contact in course {}", courseID));
    Q_EMIT contactsDidChange();
}

void ContactLog::fill(std::vector<ContactRecord> records) {
    store.fill(std::move(records));
    Q_EMIT contactsDidChange();
}

void ContactLog::deleteAll() {
    store.clear();
    logger.info("Deleted the contact log");
    Q_EMIT contactsDidChange();
}

void ContactLog::saveUnsaved() {
    if (store.saveUnsaved())
        Q_EMIT contactsDidChange();
}

std::optional<ContactRecord>
ContactLog::lastContact(std::int64_t courseID, std::int64_t studentID) const {
    const auto found = find(records(), courseID, studentID);
    return found != records().end() ? std::optional{*found} : std::nullopt;
}

std::string contactsStatus(const ContactLog &log) {
    const auto students = std::int64_t(log.records().size());
    return students == 0 ? "Nothing recorded." : plural(students, "student") + " recorded.";
}

} // namespace ellwynd
