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

ContactRecord decodeRecord(const nlohmann::json &item) {
    const auto seconds = numberOf(memberOf(item, "contactedAt"));
    const auto date = seconds ? dateSinceReference(*seconds) : std::nullopt;
    if (!date)
        throw FileError("contactedAt is not a date.");
    return {
        .courseID = idOf(item, "courseID"),
        .studentID = idOf(item, "studentID"),
        .contactedAt = *date};
}

/// @throws FileError
Records decode(std::string_view text) {
    const nlohmann::json list = parseJSON(text);
    if (!list.is_array())
        throw FileError("Expected an array.");
    Records records;
    for (const nlohmann::json &item : list)
        records.push_back(decodeRecord(item));
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
        .contents = "the contact log"};
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

using Entry = ContactChange::Entry;

StudentKey keyOf(const ContactRecord &record) {
    return {record.courseID, record.studentID};
}

StudentKey keyOf(const Entry &entry) {
    return keyOf(entry.before ? *entry.before : *entry.after);
}

/// The records with their indices.
std::map<StudentKey, std::size_t> indicesOf(const Records &records) {
    std::map<StudentKey, std::size_t> indices;
    for (std::size_t i = 0; i < records.size(); ++i)
        indices.emplace(keyOf(records[i]), i);
    return indices;
}

/// Replaces, removes and appends the records of the entries.
void applyEntries(const std::vector<Entry> &entries, Records &records) {
    std::map<StudentKey, const Entry *> pending;
    for (const Entry &entry : entries)
        pending.emplace(keyOf(entry), &entry);
    Records result;
    for (const ContactRecord &record : records) {
        const auto entry = pending.find(keyOf(record));
        if (entry == pending.end())
            result.push_back(record);
        else if (entry->second->after)
            result.push_back(*entry->second->after);
        if (entry != pending.end())
            pending.erase(entry);
    }
    for (const Entry &entry : entries) {
        if (entry.after && pending.contains(keyOf(entry)))
            result.push_back(*entry.after);
    }
    records = std::move(result);
}

/// Restores the earlier records of the entries; removed ones at their indices.
void restoreEntries(const std::vector<Entry> &entries, Records &records) {
    std::vector<Entry> reversed;
    for (const Entry &entry : entries)
        reversed.push_back({.index = entry.index, .before = entry.after, .after = entry.before});
    const auto isRemoved = [](const Entry &entry) { return !entry.before; };
    std::vector<Entry> removed;
    std::ranges::copy_if(reversed, std::back_inserter(removed), isRemoved);
    std::erase_if(reversed, isRemoved);
    applyEntries(reversed, records);
    const std::map<StudentKey, std::size_t> present = indicesOf(records);
    Records result;
    auto next = records.begin();
    for (const Entry &entry : removed) {
        if (present.contains(keyOf(entry)))
            continue;
        while (result.size() < entry.index && next != records.end())
            result.push_back(*next++);
        result.push_back(*entry.after);
    }
    result.insert(result.end(), next, records.end());
    records = std::move(result);
}

} // namespace

ContactChange removalOf(const std::vector<ContactRecord> &records) {
    ContactChange change;
    for (std::size_t i = 0; i < records.size(); ++i)
        change.entries.push_back({.index = i, .before = records[i], .after = {}});
    return change;
}

ContactLog::ContactLog(
    UserDefaults &defaults, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(defaults),
      store(fileOptions(), codec(clock), directory, clock),
      observing(defaults.observe([this](std::string_view key) {
          if (key != preferences::rememberContacts.name)
              return;
          // What is shown depends on the preference, even if there are no records.
          if (isEnabled())
              Q_EMIT contactsDidChange();
          else
              deleteAll();
      })) {
    if (isEnabled())
        store.open();
}

ContactLog::~ContactLog() = default;

bool ContactLog::isEnabled() const {
    return defaults.value(preferences::rememberContacts);
}

ContactChange ContactLog::noteContact(std::int64_t courseID, std::int64_t studentID, Date date) {
    return noteContacts(courseID, {studentID}, date);
}

ContactChange ContactLog::noteContacts(
    std::int64_t courseID, const std::vector<std::int64_t> &studentIDs, Date date) {
    ContactChange change;
    if (!isEnabled() || studentIDs.empty())
        return change;
    auto transaction = store.begin();
    const std::map<StudentKey, std::size_t> indices = indicesOf(records());
    std::set<std::int64_t> noted;
    for (const std::int64_t student : studentIDs) {
        if (!noted.insert(student).second)
            continue;
        Entry entry{
            .index = records().size(),
            .before = {},
            .after = {{.courseID = courseID, .studentID = student, .contactedAt = date}}};
        if (const auto known = indices.find({courseID, student}); known != indices.end()) {
            entry.index = known->second;
            entry.before = records()[entry.index];
        }
        change.entries.push_back(entry);
    }
    store.commit(std::move(transaction), [entries = change.entries](Records &records) {
        applyEntries(entries, records);
    });
    for (std::size_t i = 0; i < studentIDs.size(); ++i)
        logger.info(fmt::format("Noted a contact in course {}", courseID));
    Q_EMIT contactsDidChange();
    return change;
}

ContactChange ContactLog::removeContacts(const std::set<StudentKey> &students) {
    ContactChange change;
    auto transaction = store.begin();
    for (std::size_t i = 0; i < records().size(); ++i) {
        if (students.contains(keyOf(records()[i])))
            change.entries.push_back({.index = i, .before = records()[i], .after = {}});
    }
    if (change.entries.empty())
        return change;
    store.commit(std::move(transaction), [entries = change.entries](Records &records) {
        applyEntries(entries, records);
    });
    logger.info("Removed contacts");
    Q_EMIT contactsDidChange();
    return change;
}

void ContactLog::fill(std::vector<ContactRecord> records) {
    store.fill(std::move(records));
    Q_EMIT contactsDidChange();
}

ContactChange ContactLog::deleteAll() {
    // Records that another process has saved are deleted too, and can be restored.
    if (!records().empty())
        static_cast<void>(store.begin());
    ContactChange change = removalOf(records());
    store.clear();
    logger.info("Deleted the contact log");
    Q_EMIT contactsDidChange();
    return change;
}

std::size_t ContactLog::undo(const ContactChange &change) {
    if (!isEnabled())
        return change.entries.size();
    auto transaction = store.begin();
    const std::map<StudentKey, std::size_t> indices = indicesOf(records());
    std::vector<Entry> unchanged;
    for (const Entry &entry : change.entries) {
        const auto now = indices.find(keyOf(entry));
        const auto current =
            now != indices.end() ? std::optional{records()[now->second]} : std::nullopt;
        if (current == entry.after)
            unchanged.push_back(entry);
    }
    const std::size_t left = change.entries.size() - unchanged.size();
    if (unchanged.empty())
        return left;
    store.commit(std::move(transaction), [entries = std::move(unchanged)](Records &records) {
        restoreEntries(entries, records);
    });
    logger.info("Restored contacts");
    Q_EMIT contactsDidChange();
    return left;
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

std::string contactsContents(const ContactLog &log) {
    if (log.records().empty())
        return {};
    std::set<std::int64_t> courses;
    for (const ContactRecord &record : log.records())
        courses.insert(record.courseID);
    return plural(std::int64_t(log.records().size()), "contact") + " in " +
        plural(std::int64_t(courses.size()), "course");
}

} // namespace ellwynd
