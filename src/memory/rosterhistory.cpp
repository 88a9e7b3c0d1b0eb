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

SharedStore<HistoryVisits>::Codec codec(Clock clock) {
    return {
        .decode = decodeHistory, .encode = encodeHistory, .prune = [clock](HistoryVisits &visits) {
            const Date cutoff = retention::cutoff(clock());
            return std::erase_if(visits, [cutoff](const auto &visit) {
                       return visit->recordedAt() < cutoff ||
                           retention::isSampleCourse(visit->courseID());
                   }) > 0;
        }};
}

} // namespace

RosterHistory::RosterHistory(
    UserDefaults &defaults, std::optional<std::filesystem::path> directory, Clock clock,
    StartWork startWork)
    : defaults(defaults),
      store(fileOptions(), codec(clock), directory, clock),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::rememberRosterHistory.name &&
              retention::isSwitchedOff(this->defaults, preferences::rememberRosterHistory))
              deleteAll();
      })) {
    if (startWork)
        store.workInBackground(
            std::move(startWork),
            [this](std::function<void()> run) {
                QMetaObject::invokeMethod(this, std::move(run), Qt::QueuedConnection);
            },
            [this] { Q_EMIT historyDidChange(); });
    store.open();
}

RosterHistory::~RosterHistory() = default;

bool RosterHistory::isEnabled() const {
    return defaults.value(preferences::rememberRosterHistory);
}

// ---- Changes -----------------------------------------------------------------------------------

void RosterHistory::record(
    const SharedList<RiskRow> &rows, std::int64_t courseID, Date date, EntriesOfDay earlier) {
    const Date begins = calendar::startOfDay(date);
    const Date ends = calendar::startOfNextDay(date);
    const auto isOfDay = [courseID, begins, ends](const auto &other) {
        return other->courseID() == courseID && other->recordedAt() >= begins &&
            other->recordedAt() < ends;
    };
    if (!isEnabled() || rows.empty() ||
        (earlier == EntriesOfDay::kept && std::ranges::any_of(visits(courseID), isOfDay)))
        return;
    std::vector<RosterSnapshot> entries;
    entries.reserve(rows.size());
    for (const RiskRow &row : rows) {
        entries.push_back(
            {.courseID = courseID,
             .studentID = row.id,
             .recordedAt = date,
             .level = std::string(levelName(row.level)),
             .missingCount = row.missingCount});
    }
    const auto visit = std::make_shared<const HistoryVisit>(entries);
    const auto replaceDay = [isOfDay, visit](HistoryVisits &visits) {
        std::erase_if(visits, isOfDay);
        visits.push_back(visit);
    };
    // The file may have a visit of that day that is not in memory: it was not read yet, or another
    // process saves one meanwhile.
    const auto replaceEarlierVisit = [isOfDay, replaceDay, date, earlier](HistoryVisits &visits) {
        const bool isKept = std::ranges::any_of(visits, [&](const auto &other) {
            return isOfDay(other) && (earlier == EntriesOfDay::kept || other->recordedAt() > date);
        });
        if (!isKept)
            replaceDay(visits);
    };
    if (earlier == EntriesOfDay::kept)
        store.change(replaceEarlierVisit);
    else
        store.change(replaceDay, replaceEarlierVisit);
    Q_EMIT historyDidChange();
}

void RosterHistory::saveUnsaved() {
    if (store.saveUnsaved())
        Q_EMIT historyDidChange();
}

void RosterHistory::fill(const std::vector<RosterSnapshot> &entries) {
    store.fill(visitsOf(entries));
    Q_EMIT historyDidChange();
}

HistoryVisits RosterHistory::deleteAll() {
    // Entries that another process has saved, or that were not read yet, are deleted too, and can
    // be restored.
    if (!visits().empty() || store.mayHaveFile())
        static_cast<void>(store.begin());
    HistoryVisits deleted = visits();
    store.clear();
    logger.info("Roster history deleted");
    Q_EMIT historyDidChange();
    return deleted;
}

bool RosterHistory::restore(const HistoryVisits &deleted) {
    if (!isEnabled())
        return false;
    store.change([deleted](HistoryVisits &visits) {
        std::set<std::pair<std::int64_t, Date>> recorded;
        for (const auto &visit : visits)
            recorded.emplace(visit->courseID(), calendar::startOfDay(visit->recordedAt()));
        HistoryVisits result;
        result.reserve(deleted.size() + visits.size());
        std::ranges::copy_if(deleted, std::back_inserter(result), [&](const auto &visit) {
            return !recorded.contains(
                {visit->courseID(), calendar::startOfDay(visit->recordedAt())});
        });
        result.insert(result.end(), visits.begin(), visits.end());
        visits = std::move(result);
    });
    logger.info("Roster history restored");
    Q_EMIT historyDidChange();
    return true;
}

// ---- Queries -----------------------------------------------------------------------------------

const RosterHistory::CourseVisits &RosterHistory::course(std::int64_t courseID) const {
    if (coursesRevision != store.revision()) {
        std::unordered_map<std::int64_t, CourseVisits> updated;
        for (const auto &visit : visits())
            updated[visit->courseID()].visits.push_back(visit);
        for (auto &[id, course] : updated) {
            const auto known = courses.find(id);
            const bool isSame = known != courses.end() && known->second.visits == course.visits;
            course.revision = isSame ? known->second.revision : store.revision();
        }
        courses = std::move(updated);
        coursesRevision = store.revision();
    }
    static const CourseVisits none;
    const auto found = courses.find(courseID);
    return found != courses.end() ? found->second : none;
}

const HistoryVisits &RosterHistory::visits(std::int64_t courseID) const {
    return course(courseID).visits;
}

std::uint64_t RosterHistory::revision(std::int64_t courseID) const {
    return course(courseID).revision;
}

std::vector<StudentVisit>
RosterHistory::entries(std::int64_t courseID, std::int64_t studentID) const {
    std::vector<StudentVisit> found;
    for (const auto &visit : visits(courseID)) {
        for (const std::uint32_t index : visit->find(studentID))
            found.push_back({visit->recordedAt(), visit->level(index)});
    }
    return found;
}

std::int64_t RosterHistory::dayCount() const {
    std::set<Date> days;
    for (const auto &visit : visits())
        days.insert(calendar::startOfDay(visit->recordedAt()));
    return std::int64_t(days.size());
}

std::string historyStatus(const RosterHistory &history) {
    const std::int64_t days = history.dayCount();
    return days == 0 ? "Nothing recorded." : plural(days, "day") + " recorded.";
}

std::string historyContents(const RosterHistory &history) {
    if (history.visits().empty())
        return {};
    std::unordered_set<std::int64_t> students;
    std::unordered_set<std::int64_t> courses;
    for (const auto &visit : history.visits()) {
        courses.insert(visit->courseID());
        for (std::size_t i = 0; i < visit->size(); ++i)
            students.insert(visit->studentID(i));
    }
    return "levels of " + plural(std::int64_t(students.size()), "student") + " in " +
        plural(std::int64_t(courses.size()), "course");
}

} // namespace ellwynd
