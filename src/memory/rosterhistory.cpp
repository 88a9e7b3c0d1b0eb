#include "memory/rosterhistory.h"

#include "base/calendar.h"
#include "base/text.h"
#include "memory/historyfile.h"
#include "memory/retention.h"

#include <algorithm>
#include <set>

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

void RosterHistory::deleteAll() {
    store.clear();
    logger.info("Roster history deleted");
    Q_EMIT historyDidChange();
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
    Date begins;
    Date ends;
    for (const RosterSnapshot &entry : entries()) {
        // The entries of a visit are consecutive.
        if (entry.recordedAt < begins || entry.recordedAt >= ends) {
            begins = calendar::startOfDay(entry.recordedAt);
            ends = calendar::startOfNextDay(entry.recordedAt);
            days.insert(begins);
        }
    }
    return std::int64_t(days.size());
}

std::string historyStatus(const RosterHistory &history) {
    const std::int64_t days = history.dayCount();
    return days == 0 ? "Nothing recorded." : plural(days, "day") + " recorded.";
}

} // namespace ellwynd
