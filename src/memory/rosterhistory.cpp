#include "memory/rosterhistory.h"

#include "base/calendar.h"
#include "base/text.h"
#include "memory/historyfile.h"
#include "memory/retention.h"

#include <algorithm>
#include <set>
#include <unordered_set>

namespace ellwynd {

namespace {

using Entries = std::vector<RosterSnapshot>;

constexpr Log logger{"history"};

StoreFileOptions fileOptions() {
    return {
        .fileName = "RosterHistory.json",
        // A year of two hundred students is under ten megabytes.
        .maxSize = 1024UL * 1024 * 1024,
        .log = logger,
        .contents = "roster history",
        .unreadable = UnreadableFile::setAsideBeforeSaving,
        .copiesKeptFor = retention::period};
}

SharedStore<Entries>::Codec codec(Clock clock) {
    return {.decode = decodeHistory, .encode = encodeHistory, .prune = [clock](Entries &entries) {
                const Date cutoff = retention::cutoff(clock());
                return std::erase_if(entries, [cutoff](const RosterSnapshot &entry) {
                           return entry.recordedAt < cutoff ||
                               retention::isSampleCourse(entry.courseID);
                       }) > 0;
            }};
}

/// Finds the days of entries, quickly for consecutive ones of a visit.
class DayOfEntry {
  public:
    /// The start of the day.
    Date operator()(const RosterSnapshot &entry) {
        if (entry.recordedAt < begins || entry.recordedAt >= ends) {
            begins = calendar::startOfDay(entry.recordedAt);
            ends = calendar::startOfNextDay(entry.recordedAt);
        }
        return begins;
    }

  private:
    Date begins;
    Date ends;
};

} // namespace

RosterHistory::RosterHistory(
    UserDefaults &defaults, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(defaults),
      store(fileOptions(), codec(clock), directory, clock),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::rememberRosterHistory.name &&
              retention::isSwitchedOff(this->defaults, preferences::rememberRosterHistory))
              deleteAll();
      })) {
    store.open();
}

RosterHistory::~RosterHistory() = default;

bool RosterHistory::isEnabled() const {
    return defaults.value(preferences::rememberRosterHistory);
}

// ---- Changes -----------------------------------------------------------------------------------

bool RosterHistory::hasEntries(std::int64_t courseID, Date date) const {
    const Date begins = calendar::startOfDay(date);
    const Date ends = calendar::startOfNextDay(date);
    return std::ranges::any_of(entries(), [&](const RosterSnapshot &entry) {
        return entry.courseID == courseID && entry.recordedAt >= begins && entry.recordedAt < ends;
    });
}

void RosterHistory::record(const std::vector<RiskRow> &rows, std::int64_t courseID, Date date) {
    if (!isEnabled() || rows.empty())
        return;
    Entries visit;
    visit.reserve(rows.size());
    for (const RiskRow &row : rows) {
        visit.push_back(
            {.courseID = courseID,
             .studentID = row.id,
             .recordedAt = date,
             .level = std::string(levelName(row.level)),
             .missingCount = row.missingCount});
    }
    const Date begins = calendar::startOfDay(date);
    const Date ends = calendar::startOfNextDay(date);
    const auto isOfDay = [courseID, begins, ends](const RosterSnapshot &entry) {
        return entry.courseID == courseID && entry.recordedAt >= begins && entry.recordedAt < ends;
    };
    const auto replaceDay = [isOfDay, visit = std::move(visit)](Entries &entries) {
        std::erase_if(entries, isOfDay);
        entries.insert(entries.end(), visit.begin(), visit.end());
    };
    // Meanwhile another process may save a later visit of that day.
    const auto replaceEarlierVisit = [isOfDay, replaceDay, date](Entries &entries) {
        const bool hasLater = std::ranges::any_of(entries, [&](const RosterSnapshot &entry) {
            return isOfDay(entry) && entry.recordedAt > date;
        });
        if (!hasLater)
            replaceDay(entries);
    };
    store.change(replaceDay, replaceEarlierVisit);
    Q_EMIT historyDidChange();
}

void RosterHistory::saveUnsaved() {
    if (store.saveUnsaved())
        Q_EMIT historyDidChange();
}

void RosterHistory::fill(std::vector<RosterSnapshot> entries) {
    store.fill(std::move(entries));
    Q_EMIT historyDidChange();
}

Entries RosterHistory::deleteAll() {
    // Entries that another process has saved are deleted too, and can be restored.
    if (!entries().empty())
        static_cast<void>(store.begin());
    Entries deleted = entries();
    store.clear();
    logger.info("Roster history deleted");
    Q_EMIT historyDidChange();
    return deleted;
}

bool RosterHistory::restore(const Entries &deleted) {
    if (!isEnabled())
        return false;
    store.change([deleted](Entries &entries) {
        std::set<std::pair<std::int64_t, Date>> recorded;
        DayOfEntry dayOf;
        for (const RosterSnapshot &entry : entries)
            recorded.emplace(entry.courseID, dayOf(entry));
        Entries result;
        result.reserve(deleted.size() + entries.size());
        std::ranges::copy_if(deleted, std::back_inserter(result), [&](const auto &entry) {
            return !recorded.contains({entry.courseID, dayOf(entry)});
        });
        result.insert(result.end(), entries.begin(), entries.end());
        entries = std::move(result);
    });
    logger.info("Roster history restored");
    Q_EMIT historyDidChange();
    return true;
}

// ---- Queries -----------------------------------------------------------------------------------

std::size_t RosterHistory::StudentKeyHash::operator()(const StudentKey &key) const {
    constexpr std::uint64_t odd = 0x9e37'79b9'7f4a'7c15;
    return std::size_t((std::uint64_t(key.courseID) * odd) ^ std::uint64_t(key.studentID));
}

std::vector<const RosterSnapshot *>
RosterHistory::entries(std::int64_t courseID, std::int64_t studentID) const {
    const Entries &all = entries();
    if (positionsRevision != store.revision()) {
        positions.clear();
        for (std::size_t i = 0; i < all.size(); ++i)
            positions[{all[i].courseID, all[i].studentID}].push_back(std::uint32_t(i));
        positionsRevision = store.revision();
    }
    std::vector<const RosterSnapshot *> found;
    if (const auto student = positions.find({courseID, studentID}); student != positions.end()) {
        found.reserve(student->second.size());
        for (const std::uint32_t position : student->second)
            found.push_back(&all[position]);
    }
    return found;
}

std::int64_t RosterHistory::dayCount() const {
    std::set<Date> days;
    DayOfEntry dayOf;
    const RosterSnapshot *previous = nullptr;
    for (const RosterSnapshot &entry : entries()) {
        // The entries of a visit are consecutive.
        if (previous == nullptr || entry.recordedAt != previous->recordedAt)
            days.insert(dayOf(entry));
        previous = &entry;
    }
    return std::int64_t(days.size());
}

std::string historyStatus(const RosterHistory &history) {
    const std::int64_t days = history.dayCount();
    return days == 0 ? "Nothing recorded." : plural(days, "day") + " recorded.";
}

std::string historyContents(const RosterHistory &history) {
    if (history.entries().empty())
        return {};
    std::unordered_set<std::int64_t> students;
    std::unordered_set<std::int64_t> courses;
    for (const RosterSnapshot &entry : history.entries()) {
        students.insert(entry.studentID);
        courses.insert(entry.courseID);
    }
    return "levels of " + plural(std::int64_t(students.size()), "student") + " in " +
        plural(std::int64_t(courses.size()), "course");
}

} // namespace ellwynd
