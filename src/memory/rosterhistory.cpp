#include "memory/rosterhistory.h"

#include "base/calendar.h"
#include "base/log.h"
#include "memory/historyfile.h"
#include "memory/retention.h"

#include <fmt/format.h>

#include <algorithm>
#include <set>

namespace ellwynd {

namespace {

constexpr Log logger{"history"};
/// A year of two hundred students is under ten megabytes.
constexpr std::size_t largestFile = 1024UL * 1024 * 1024;

} // namespace

RosterHistory::RosterHistory(
    UserDefaults &store, std::optional<std::filesystem::path> directory, Clock clock)
    : defaults(store), now(clock), observing(store.observe([this](std::string_view key) {
          if (key == preferences::rememberRosterHistory.name && !isEnabled())
              deleteAll();
      })) {
    if (directory)
        file.emplace(*directory / "RosterHistory.json", largestFile);
    if (file && file->exists()) {
        const SharedFile::Turn turn = file->take();
        load();
    }
}

RosterHistory::~RosterHistory() = default;

bool RosterHistory::isEnabled() const {
    return defaults.value(preferences::rememberRosterHistory);
}

// ---- The file ----------------------------------------------------------------------------------

/// Replaces what is in memory by what the file holds.
void RosterHistory::load() {
    std::vector<RosterSnapshot> read;
    try {
        if (const auto text = file->read())
            read = decodeHistory(*text);
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't read roster history: {}", error.what()));
        setAside();
        return;
    }
    const std::size_t decoded = read.size();
    std::erase_if(read, [cutoff = retention::cutoff(now())](const RosterSnapshot &entry) {
        return entry.recordedAt < cutoff || retention::isSampleCourse(entry.courseID);
    });
    all = std::move(read);
    placesAreCurrent = false;
    if (all.size() < decoded)
        save();
}

void RosterHistory::setAside() {
    const auto seconds = std::chrono::floor<std::chrono::seconds>(now()).time_since_epoch().count();
    try {
        const auto aside = file->setAside(seconds);
        unreadableFileStands = false;
        logger.error(fmt::format("Set it aside at {}", aside.filename().string()));
    } catch (const FileError &error) {
        unreadableFileStands = true;
        logger.error(fmt::format("Couldn't set it aside: {}", error.what()));
    }
}

/// Another process may have recorded or forgotten since this one looked: its entries stand, and
/// what could not be saved here is applied to them again.
void RosterHistory::takeOver(SharedFile::Since since) {
    if (since == SharedFile::Since::nothing)
        return;
    if (since == SharedFile::Since::removed) {
        all.clear();
        placesAreCurrent = false;
    } else {
        load();
    }
    for (const Visit &visit : unsaved)
        apply(visit);
}

bool RosterHistory::save() {
    if (!file)
        return true;
    if (unreadableFileStands)
        setAside();
    try {
        // Whatever that file holds is not this program's to destroy.
        if (unreadableFileStands)
            throw FileError("the unreadable file is still in its place.");
        file->replace(encodeHistory(all));
    } catch (const FileError &error) {
        logger.error(fmt::format("Couldn't save roster history: {}", error.what()));
        return false;
    }
    return true;
}

// ---- Changes -----------------------------------------------------------------------------------

void RosterHistory::apply(const Visit &visit) {
    std::erase_if(all, [&](const RosterSnapshot &entry) {
        return entry.courseID == visit.courseID && entry.recordedAt >= visit.dayBegins &&
            entry.recordedAt < visit.dayEnds;
    });
    all.insert(all.end(), visit.entries.begin(), visit.entries.end());
    placesAreCurrent = false;
}

void RosterHistory::record(const std::vector<RiskRow> &rows, std::int64_t courseID, Date date) {
    if (!isEnabled() || rows.empty())
        return;
    Visit visit{
        .courseID = courseID,
        .dayBegins = calendar::startOfDay(date),
        .dayEnds = calendar::startOfNextDay(date),
        .entries = {}};
    for (const RiskRow &row : rows) {
        visit.entries.push_back(
            {.courseID = courseID,
             .studentID = row.id,
             .recordedAt = date,
             .level = std::string(levelName(row.level)),
             .missingCount = row.missingCount});
    }
    std::optional<SharedFile::Turn> turn;
    if (file) {
        turn.emplace(file->take());
        takeOver(turn->since);
    }
    apply(visit);
    if (save())
        unsaved.clear();
    else
        unsaved.push_back(std::move(visit));
    Q_EMIT historyDidChange();
}

void RosterHistory::fill(std::vector<RosterSnapshot> entries) {
    all = std::move(entries);
    placesAreCurrent = false;
    Q_EMIT historyDidChange();
}

void RosterHistory::deleteAll() {
    all.clear();
    unsaved.clear();
    placesAreCurrent = false;
    if (file)
        file->remove();
    logger.info("Roster history deleted");
    Q_EMIT historyDidChange();
}

// ---- Looking things up -------------------------------------------------------------------------

std::size_t RosterHistory::StudentKeyHash::operator()(const StudentKey &key) const {
    constexpr std::uint64_t odd = 0x9e37'79b9'7f4a'7c15;
    return std::size_t((std::uint64_t(key.courseID) * odd) ^ std::uint64_t(key.studentID));
}

std::vector<const RosterSnapshot *>
RosterHistory::entries(std::int64_t courseID, std::int64_t studentID) const {
    if (!placesAreCurrent) {
        places.clear();
        for (std::size_t i = 0; i < all.size(); ++i)
            places[{all[i].courseID, all[i].studentID}].push_back(std::uint32_t(i));
        placesAreCurrent = true;
    }
    std::vector<const RosterSnapshot *> found;
    if (const auto student = places.find({courseID, studentID}); student != places.end()) {
        found.reserve(student->second.size());
        for (const std::uint32_t place : student->second)
            found.push_back(&all[place]);
    }
    return found;
}

std::int64_t RosterHistory::dayCount() const {
    std::set<Date> days;
    Date begins;
    Date ends;
    for (const RosterSnapshot &entry : all) {
        // The entries of one visit follow each other.
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
    return days == 0 ? "Nothing recorded."
                     : fmt::format("{} day{} recorded.", days, days == 1 ? "" : "s");
}

} // namespace ellwynd
