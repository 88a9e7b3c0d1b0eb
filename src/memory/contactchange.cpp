#include "memory/contactchange.h"

#include <map>

namespace ellwynd {

namespace {

using Entry = ContactChange::Entry;

StudentKey keyOf(const ContactRecord &record) {
    return {record.courseID, record.studentID};
}

StudentKey keyOf(const Entry &entry) {
    return keyOf(entry.before ? *entry.before : *entry.after);
}

std::map<StudentKey, std::size_t> indicesOf(const ContactRecords &records) {
    std::map<StudentKey, std::size_t> indices;
    for (std::size_t i = 0; i < records.size(); ++i)
        indices.emplace(keyOf(records[i]), i);
    return indices;
}

} // namespace

void ContactChange::append(const ContactChange &later) {
    std::map<StudentKey, std::size_t> known;
    for (std::size_t i = 0; i < entries.size(); ++i)
        known.emplace(keyOf(entries[i]), i);
    for (const Entry &entry : later.entries) {
        if (const auto found = known.find(keyOf(entry)); found != known.end())
            entries[found->second].after = entry.after;
        else
            entries.push_back(entry);
    }
}

void ContactChange::apply(ContactRecords &records) const {
    std::map<StudentKey, const Entry *> pending;
    for (const Entry &entry : entries)
        pending.emplace(keyOf(entry), &entry);
    ContactRecords result;
    for (const ContactRecord &record : records) {
        const auto entry = pending.find(keyOf(record));
        if (entry == pending.end()) {
            result.push_back(record);
            continue;
        }
        if (entry->second->after)
            result.push_back(*entry->second->after);
        pending.erase(entry);
    }
    for (const Entry &entry : entries) {
        if (entry.after && pending.contains(keyOf(entry)))
            result.push_back(*entry.after);
    }
    records = std::move(result);
}

void ContactChange::revert(ContactRecords &records) const {
    ContactChange replaced;
    for (const Entry &entry : entries) {
        if (entry.after)
            replaced.entries.push_back({.before = entry.after, .after = entry.before});
    }
    replaced.apply(records);
    const std::map<StudentKey, std::size_t> present = indicesOf(records);
    ContactRecords result;
    auto next = records.begin();
    for (const Entry &entry : entries) {
        if (entry.after || present.contains(keyOf(entry)))
            continue;
        while (result.size() < entry.index && next != records.end())
            result.push_back(*next++);
        result.push_back(*entry.before);
    }
    result.insert(result.end(), next, records.end());
    records = std::move(result);
}

ContactChange ContactChange::unchangedIn(const ContactRecords &records) const {
    const std::map<StudentKey, std::size_t> indices = indicesOf(records);
    ContactChange unchanged;
    for (const Entry &entry : entries) {
        const auto found = indices.find(keyOf(entry));
        const bool isSame = found != indices.end() ? records[found->second] == entry.after
                                                   : !entry.after.has_value();
        if (isSame)
            unchanged.entries.push_back(entry);
    }
    return unchanged;
}

ContactChange recordingOf(
    const ContactRecords &records, std::int64_t courseID,
    const std::vector<std::int64_t> &studentIDs, Date date) {
    const std::map<StudentKey, std::size_t> indices = indicesOf(records);
    ContactChange change;
    std::set<std::int64_t> recorded;
    for (const std::int64_t student : studentIDs) {
        if (!recorded.insert(student).second)
            continue;
        Entry entry{
            .index = records.size(),
            .before = {},
            .after = {{.courseID = courseID, .studentID = student, .contactedAt = date}}};
        if (const auto known = indices.find({courseID, student}); known != indices.end()) {
            entry.index = known->second;
            entry.before = records[entry.index];
        }
        change.entries.push_back(entry);
    }
    return change;
}

ContactChange removalOf(const ContactRecords &records, const std::set<StudentKey> &students) {
    ContactChange change;
    for (std::size_t i = 0; i < records.size(); ++i) {
        if (students.contains(keyOf(records[i])))
            change.entries.push_back({.index = i, .before = records[i], .after = {}});
    }
    return change;
}

ContactChange removalOfAll(const ContactRecords &records) {
    ContactChange change;
    for (std::size_t i = 0; i < records.size(); ++i)
        change.entries.push_back({.index = i, .before = records[i], .after = {}});
    return change;
}

} // namespace ellwynd
