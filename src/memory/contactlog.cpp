#include "memory/contactlog.h"

#include "base/referencedate.h"
#include "base/text.h"
#include "memory/entrylist.h"
#include "memory/retention.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <map>

namespace ellwynd {

namespace {

using Records = ContactRecords;

constexpr Log logger{"contacts"};

/// An entry with a number that is out of range, or null, is left out. Of two records of a student
/// in a course, the later contact counts. @throws FileError
Records decode(std::string_view text) {
    simdjson::dom::parser parser;
    Records records;
    std::map<std::pair<std::int64_t, std::int64_t>, std::size_t> positions;
    std::size_t index = 0;
    for (const simdjson::dom::element element : entryList::parse(parser, text)) {
        const simdjson::dom::object entry = entryList::objectOf(element, index);
        const auto courseID = entryList::integerOf(entry, index, "courseID");
        const auto studentID = entryList::integerOf(entry, index, "studentID");
        const auto seconds = entryList::numberOf(entry, index, "contactedAt");
        ++index;
        const auto date = seconds ? dateSinceReference(*seconds) : std::nullopt;
        if (!courseID || !studentID || !date)
            continue;
        const auto [known, isNew] = positions.try_emplace({*courseID, *studentID}, records.size());
        if (isNew)
            records.push_back(
                {.courseID = *courseID, .studentID = *studentID, .contactedAt = *date});
        else
            records[known->second].contactedAt =
                std::max(records[known->second].contactedAt, *date);
    }
    return records;
}

std::string encode(const Records &records) {
    std::string text = "[";
    for (const ContactRecord &record : records) {
        const nlohmann::json contactedAt = secondsSinceReference(record.contactedAt);
        fmt::format_to(
            std::back_inserter(text), R"({}{{"courseID":{},"studentID":{},"contactedAt":{}}})",
            text.size() > 1 ? "," : "", record.courseID, record.studentID, contactedAt.dump());
    }
    return text + "]";
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

/// The change without the students of whom a later contact is recorded.
ContactChange withoutOlder(ContactChange change, const Records &records) {
    std::erase_if(change.entries, [&](const ContactChange::Entry &entry) {
        const auto known = find(records, entry.after->courseID, entry.after->studentID);
        return known != records.end() && known->contactedAt > entry.after->contactedAt;
    });
    return change;
}

} // namespace

ContactLog::ContactLog(
    UserDefaults &defaults, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(defaults),
      store(fileOptions(), codec(clock), directory, clock),
      observing(defaults.observe([this](std::string_view key) {
          if (key != preferences::rememberContacts.name)
              return;
          if (retention::isSwitchedOff(this->defaults, preferences::rememberContacts))
              deleteAll();
          else // What is shown depends on the preference, even if there are no records.
              Q_EMIT contactsDidChange();
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
    if (!isEnabled() || studentIDs.empty())
        return {};
    auto transaction = store.begin();
    ContactChange change = recordingOf(records(), courseID, studentIDs, date);
    // Meanwhile another process may save a later contact.
    store.commit(
        std::move(transaction), [change](Records &records) { change.apply(records); },
        [change](Records &records) { withoutOlder(change, records).apply(records); });
    for (std::size_t i = 0; i < studentIDs.size(); ++i)
        logger.info(fmt::format("Noted a contact in course {}", courseID));
    Q_EMIT contactsDidChange();
    return change;
}

ContactChange ContactLog::removeContacts(const std::set<StudentKey> &students) {
    if (students.empty())
        return {};
    auto transaction = store.begin();
    ContactChange change = removalOf(records(), students);
    if (change.entries.empty())
        return change;
    store.commit(std::move(transaction), [change](Records &records) { change.apply(records); });
    logger.info("Removed contacts");
    Q_EMIT contactsDidChange();
    return change;
}

void ContactLog::fill(ContactRecords records) {
    store.fill(std::move(records));
    Q_EMIT contactsDidChange();
}

ContactChange ContactLog::deleteAll() {
    // Records that another process has saved are deleted too, and can be restored.
    if (!records().empty())
        static_cast<void>(store.begin());
    ContactChange change = removalOfAll(records());
    store.clear();
    logger.info("Deleted the contact log");
    Q_EMIT contactsDidChange();
    return change;
}

std::size_t ContactLog::undo(const ContactChange &change) {
    if (!isEnabled())
        return change.entries.size();
    auto transaction = store.begin();
    ContactChange unchanged = change.unchangedIn(records());
    const std::size_t left = change.entries.size() - unchanged.entries.size();
    if (unchanged.entries.empty())
        return left;
    store.commit(std::move(transaction), [unchanged = std::move(unchanged)](Records &records) {
        unchanged.revert(records);
    });
    logger.info("Restored contacts");
    Q_EMIT contactsDidChange();
    return left;
}

void ContactLog::saveUnsaved() {
    if (store.saveUnsaved())
        Q_EMIT contactsDidChange();
}

const ContactLog::CourseContacts &ContactLog::course(std::int64_t courseID) const {
    if (coursesRevision != store.revision()) {
        std::unordered_map<std::int64_t, CourseContacts> updated;
        for (const ContactRecord &record : records())
            updated[record.courseID].records.push_back(record);
        for (auto &[id, course] : updated) {
            std::ranges::sort(course.records, {}, &ContactRecord::studentID);
            const auto known = courses.find(id);
            const bool isSame = known != courses.end() && known->second.records == course.records;
            course.revision = isSame ? known->second.revision : store.revision();
        }
        courses = std::move(updated);
        coursesRevision = store.revision();
    }
    static const CourseContacts none;
    const auto found = courses.find(courseID);
    return found != courses.end() ? found->second : none;
}

std::optional<ContactRecord>
ContactLog::lastContact(std::int64_t courseID, std::int64_t studentID) const {
    const auto &known = course(courseID).records;
    const auto found = std::ranges::lower_bound(known, studentID, {}, &ContactRecord::studentID);
    return found != known.end() && found->studentID == studentID ? std::optional{*found}
                                                                 : std::nullopt;
}

std::uint64_t ContactLog::revision(std::int64_t courseID) const {
    return course(courseID).revision;
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
