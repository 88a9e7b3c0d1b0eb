#include "base/calendar.h"
#include "base/files.h"
#include "memory/movement.h"
#include "model.h"
#include "simulation.h"

#include <nlohmann/json.hpp>

#include <fstream>

namespace ellwynd::simulation {

namespace {

namespace fs = std::filesystem;
using Kind = Event::Kind;
using namespace std::chrono_literals;

/// A setting that an event removes.
bool isRemovable(const std::string &key) {
    return key == "CanvasBaseURL" || key == "SyncedFolderMark" || key.ends_with(".PassingScore");
}

/// The levels of these students.
LevelCounts levelsOf(const std::vector<Judged> &students) {
    LevelCounts counts;
    for (const Judged &student : students)
        counts.add(student.level());
    return counts;
}

bool areTheSame(const std::vector<Judged> &students, const SharedList<RiskRow> &rows) {
    return std::ranges::equal(students, rows, [](const Judged &student, const RiskRow &row) {
        return student.agreesWith(row);
    });
}

/// Null if there is none.
const DashboardCourseCard *findCard(const DashboardModel &model, std::int64_t courseID) {
    for (const DashboardTerm &term : model.terms) {
        for (const DashboardCourseCard &card : term.cards) {
            if (card.courseID == courseID)
                return &card;
        }
    }
    return nullptr;
}

std::string textOf(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// Handles the events that a window handles before it paints: the end of a save changes the history
/// in one, which makes the cards again in another.
void sendPostedEvents(Computer &computer) {
    const DiskOf disk(computer);
    for (int i = 0; i < 2; ++i)
        QCoreApplication::sendPostedEvents();
}

} // namespace

bool isQuiet(Kind kind) {
    constexpr std::array quiet{
        Kind::passSeconds,     Kind::setWork,     Kind::handIn,   Kind::grade,
        Kind::beActive,        Kind::join,        Kind::leave,    Kind::comeBack,
        Kind::markContacted,   Kind::removeMark,  Kind::undo,     Kind::copyMessage,
        Kind::changeThreshold, Kind::useDefaults, Kind::fillDisk, Kind::freeDisk,
        Kind::changePreference};
    return std::ranges::find(quiet, kind) != quiet.end();
}

void Simulation::check(Computer &computer, Known &what) {
    sendPostedEvents(computer);
    Program &program = *computer.program;
    if (program.controller->undoStack().newestID() == 0)
        what.contacts.steps.clear();
    if (program.isSample)
        return;
    checkCourses(program);
    checkRoster(program, what);
    checkHistory(program);
    checkVisit(program, what);
    if (computer.network.isIdle() && !program.controller->isLoading())
        what.isAsked = false;
    checkSettings(program, what);
    checkDashboard(program);
    checkCard(computer, what);
    checkNotices(program, what);
    if (recordsOf(program) != what.contacts.records)
        throw Finding("the contacts are not those that the teacher made");
}

/// Nothing of another institution is shown.
void Simulation::checkCourses(const Program &program) const {
    const std::string address = program.defaults.value(preferences::canvasBaseURL);
    const auto &courses = program.controller->courses().latest();
    if (address.empty()) {
        if (!courses.empty() || !program.controller->roster().rows.empty())
            throw Finding("courses are shown after signing out");
        return;
    }
    for (const Course &course : courses) {
        const School::OneCourse *own = schools.at(address).find(course.id);
        if (own == nullptr || own->course.name != course.name)
            throw Finding("a course of another institution is shown");
    }
    for (const RiskRow &row : program.controller->roster().rows) {
        const School::OneCourse *own = schools.at(address).find(row.courseID);
        if (own == nullptr || own->course.name != row.courseName)
            throw Finding("a student of another institution is shown");
    }
}

/// No setting goes that nobody removed.
void Simulation::checkSettings(const Program &program, Known &what) {
    const PreferenceMap saved = program.defaults.persistentDomain();
    for (const std::string &key : what.keys) {
        if (!saved.contains(key))
            throw Finding("a setting was lost that nobody removed: " + key);
    }
    for (const auto &[key, value] : saved) {
        if (!isRemovable(key))
            what.keys.insert(key);
    }
}

/// Whether the students of a course, as they were when it was read, agree with what is shown.
bool Simulation::wasScored(
    const Program &program, std::int64_t courseID, Reads::const_iterator read,
    const std::function<bool(const std::vector<Judged> &)> &agrees) const {
    const std::string address = program.defaults.value(preferences::canvasBaseURL);
    const School::OneCourse *course = read->second->at(address).find(courseID);
    if (course == nullptr)
        return false;
    // The course list may have been read before or after the term ended early.
    const Term &term = *schools.at(address).find(courseID)->course.term;
    const auto thresholds = courseThresholds(program.defaults, courseID);
    return agrees(judge(*course, thresholds, School::plannedEnd(term), read->first)) ||
        agrees(judge(*course, thresholds, term.endAt, read->first));
}

/// What is on screen is what the records of its time give.
void Simulation::checkRoster(const Program &program, const Known &what) const {
    const RosterView &roster = program.controller->roster();
    if (roster.state != RosterView::State::shown)
        return;
    const auto *course = std::get_if<CourseSelection>(&*program.controller->selection());
    if (roster.courseID != (course != nullptr ? std::optional(course->courseID) : std::nullopt))
        throw Finding("the roster on screen is not that of the selection");
    const auto read = readAt.find(roster.fetchedAt);
    if (read == readAt.end())
        throw Finding("the roster is of a time at which nothing was read");
    checkOutcomes(program, what);
    if (!roster.courseID) {
        checkTermRoster(program);
        return;
    }
    const auto agrees = [&](const std::vector<Judged> &students) {
        return areTheSame(students, roster.rows);
    };
    if (!wasScored(program, *roster.courseID, read, agrees))
        throw Finding("the roster differs from the records of its time");
    if (what.shownInOtherZone != roster.fetchedAt)
        checkMovement(program);
}

/// A term's roster has the flagged students of each course, as they were when it was read.
void Simulation::checkTermRoster(const Program &program) const {
    const RosterView &roster = program.controller->roster();
    std::map<std::int64_t, std::vector<RiskRow>> rows;
    for (const RiskRow &row : roster.rows)
        rows[row.courseID].push_back(row);
    for (const auto &[courseID, flagged] : rows) {
        const auto agrees = [&flagged = flagged](std::vector<Judged> students) {
            std::erase_if(students, [](const Judged &each) { return !each.level(); });
            return areTheSame(students, flagged);
        };
        auto read = readAt.find(roster.fetchedAt);
        while (read != readAt.end() && !wasScored(program, courseID, read, agrees))
            ++read;
        if (read == readAt.end())
            throw Finding("a term's roster differs from the records of every time");
    }
}

/// An outcome is shown for each contact with a student on screen, and says what happened since.
void Simulation::checkOutcomes(const Program &program, const Known &what) const {
    const RosterView &roster = program.controller->roster();
    std::size_t contacted = 0;
    for (const RiskRow &row : roster.rows) {
        const auto record = what.contacts.records.find(keyOf(row));
        if (record == what.contacts.records.end())
            continue;
        ++contacted;
        const auto shown = roster.outreach.find(keyOf(row));
        if (shown == roster.outreach.end())
            throw Finding("no outcome is shown for a student who was written to");
        const OutreachOutcome &outcome = shown->second;
        const auto &history = program.stores.history.entries();
        // The clock may have been set since the outcome was put on screen.
        const bool isThen = std::ranges::any_of(
            std::array{now(), now() + 48h, record->second, roster.fetchedAt, what.zoneChangedAt},
            [&](Date today) {
                return outcome.levelThen == levelAt(record->second, keyOf(row), history, today);
            });
        if (!isThen || outcome.contactedAt != record->second || outcome.levelNow != row.level)
            throw Finding("an outcome is not that of the last contact");
    }
    if (contacted != roster.outreach.size())
        throw Finding("an outcome is shown for a student who was not written to");
}

/// The counts of each card are those of a time at which its course was read.
void Simulation::checkDashboard(Program &program) const {
    for (const DashboardTerm &term : program.controller->dashboard().model().terms) {
        for (const DashboardCourseCard &card : term.cards) {
            const auto agrees = [&](const std::vector<Judged> &students) {
                return levelsOf(students) == card.levels &&
                    std::int64_t(students.size()) == card.total;
            };
            // A course that was opened since is newer than its term.
            auto read = readAt.end();
            while (read != readAt.begin() &&
                   !wasScored(program, card.courseID, std::prev(read), agrees))
                --read;
            if (read == readAt.begin())
                throw Finding("a card differs from the records of every time");
            if (card.trend.empty() || card.trend.back() != card.flagged())
                throw Finding("the trend of a card does not end with today");
        }
    }
}

/// The card of the course on screen says the same as its roster.
void Simulation::checkCard(Computer &computer, const Known &what) {
    MainWindowController &controller = *computer.program->controller;
    const RosterView &roster = controller.roster();
    const Dashboard &dashboard = controller.dashboard();
    if (roster.state != RosterView::State::shown || !roster.courseID || controller.isLoading() ||
        dashboard.progress().running || !computer.network.isIdle())
        return;
    const DashboardCourseCard *card = findCard(dashboard.model(), *roster.courseID);
    // The cards of a term with a course that could not be read are older.
    if (card == nullptr || dashboard.lastPassFailed())
        return;
    const MovementCounts movement = movementCounts(roster.movement);
    const auto awaiting = std::ranges::count_if(
        roster.outreach, [](const auto &each) { return isAwaitingFollowUp(each.second); });
    if (card->levels != levelCounts(roster.rows) || card->total != std::int64_t(roster.rows.size()))
        throw Finding("a card has other counts than the roster on screen");
    // Neither is computed again at once when the days change.
    const bool hasSameDays = roster.fetchedAt > what.zoneChangedAt;
    if (hasSameDays &&
        (card->slipped != movement.slipped || card->newlyFlagged != movement.newlyFlagged ||
         card->improved != movement.improved))
        throw Finding("a card has another movement than the roster on screen");
    const bool isOfToday = what.freshSince && calendar::startOfDay(now()) == what.freshDay;
    if (isOfToday && card->awaitingFollowUp != awaiting)
        throw Finding("a card awaits another follow-up than the roster on screen");
}

/// An event causes a bounded number of reads, and many cause none.
void Simulation::checkRequests(
    const Event &event, const Computer &computer, Known &what, std::size_t requests) const {
    if (requests > 3 * mostRequests())
        throw Finding("an event caused more than three refreshes");
    const bool isFresh = what.freshSince &&
        (isQuiet(event.kind) ||
         // A roster and a pass count as fresh for a minute.
         (event.kind == Kind::activate && elapsed() - *what.freshSince < 50s));
    if (isFresh && requests > 0)
        throw Finding("what is fresh was read again");
    const MainWindowController &controller = *computer.program->controller;
    const Network &network = computer.network;
    if (event.kind == Kind::refresh && network.isIdle() && network.isOnline &&
        network.failures.empty() && !controller.isLoading() && !controller.courses().isEmpty()) {
        what.freshSince = elapsed();
        what.freshDay = calendar::startOfDay(now());
    }
}

/// The requests of a refresh: the course list, and every course on screen and in the pass.
std::size_t Simulation::mostRequests() const {
    std::size_t courses = 0;
    for (const auto &[address, school] : schools)
        courses = std::max(courses, school.courses.size());
    return 1 + 2 * 3 * courses;
}

/// Each student is compared with the last entry of an earlier day, and with nothing else.
void Simulation::checkMovement(const Program &program) const {
    const RosterView &roster = program.controller->roster();
    const Date today = calendar::startOfDay(roster.fetchedAt);
    std::map<std::int64_t, const RosterSnapshot *> last;
    bool hasEarlier = false;
    const std::vector<RosterSnapshot> entries = program.stores.history.entries();
    for (const RosterSnapshot &entry : entries) {
        if (entry.courseID != *roster.courseID || entry.recordedAt >= today)
            continue;
        hasEarlier = true;
        const RosterSnapshot *&known = last[entry.studentID];
        if (known == nullptr || entry.recordedAt > known->recordedAt)
            known = &entry;
    }
    std::set<std::int64_t> expected;
    for (const RiskRow &row : roster.rows) {
        const auto before = last.find(row.id);
        const bool moved = before == last.end() ? row.level.has_value()
                                                : before->second->level != levelName(row.level);
        if (hasEarlier && moved && program.stores.history.isEnabled())
            expected.insert(row.id);
    }
    std::set<std::int64_t> shown;
    for (const RosterChange &change : roster.movement)
        shown.insert(change.studentID);
    if (shown != expected)
        throw Finding("the movement is not that since the last visit of an earlier day");
}

/// Each course has one visit a day, and its levels are those of the records of its time.
void Simulation::checkHistory(const Program &program) const {
    if (!program.stores.history.isEnabled() && !program.stores.history.entries().empty())
        throw Finding("there is a history although it is switched off");
    std::set<std::pair<std::int64_t, std::int64_t>> students;
    std::optional<Date> visit;
    std::int64_t course = 0;
    for (const RosterSnapshot &entry : program.stores.history.entries()) {
        if (visit != entry.recordedAt || course != entry.courseID) {
            visit = entry.recordedAt;
            course = entry.courseID;
            students.clear();
        }
        if (!students.emplace(entry.courseID, entry.studentID).second)
            throw Finding("a student has two entries of one visit");
        // The file keeps whole seconds.
        const auto read =
            readAt.lower_bound(std::chrono::floor<std::chrono::seconds>(entry.recordedAt));
        if (read == readAt.end() || read->first >= entry.recordedAt + 1s)
            throw Finding("a visit was recorded when nothing was read");
    }
}

/// What the program reads while nobody looks is no visit.
void Simulation::checkVisit(const Program &program, Known &what) {
    bool isNew = false;
    for (const auto &visit : program.stores.history.visits()) {
        const auto second = std::chrono::floor<std::chrono::seconds>(visit->recordedAt());
        isNew = what.visits.emplace(visit->courseID(), second).second || isNew;
    }
    if (isNew && !program.isActive && !what.isAsked)
        throw Finding("a visit was recorded although nobody looked");
}

/// Every student is counted in notices at most once until the course is opened, and only if the
/// student is flagged.
void Simulation::checkNotices(Program &program, Known &what) const {
    const auto school = schools.find(program.defaults.value(preferences::canvasBaseURL));
    if (school == schools.end()) {
        what.unseen.clear();
        return;
    }
    std::map<std::string, std::set<std::int64_t>> flagged;
    for (const School::OneCourse &course : school->second.courses) {
        // Thresholds of the other computer may have arrived since the notice.
        for (const Computer &computer : computers) {
            const auto thresholds = courseThresholds(computer.program->defaults, course.course.id);
            for (const Judged &each : judge(course, thresholds, course.course.term->endAt, now())) {
                if (each.level())
                    flagged[*course.course.name].insert(each.id);
            }
        }
    }
    for (const auto &[name, students] : flagged)
        what.unseen[name].flagged.insert(students.begin(), students.end());
    // A course is opened before or after the notice.
    const RosterView &roster = program.controller->roster();
    const bool isOpen = roster.state == RosterView::State::shown && roster.courseID;
    if (isOpen)
        what.unseen[roster.title].mentioned = 0;
    const auto &posted = program.notifications.posted;
    for (; what.noticesSeen < posted.size(); ++what.noticesSeen) {
        const UserNotice &notice = posted[what.noticesSeen];
        for (auto &[name, unseen] : what.unseen) {
            const std::size_t at = notice.body.find(name);
            if (at == std::string::npos)
                continue;
            const bool isOnly = notice.body == name;
            unseen.mentioned +=
                std::stoul(isOnly ? notice.title : notice.body.substr(at + name.size() + 2));
            // The course may have been opened between two notices.
            const std::size_t times = isOpen && name == roster.title ? 2 : 1;
            if (unseen.mentioned > times * unseen.flagged.size())
                throw Finding("a student was counted twice in notices: " + notice.body);
        }
    }
    // Signing out of an account is as if its courses had been opened.
    std::erase_if(what.unseen, [&](const auto &each) {
        return std::ranges::none_of(school->second.courses, [&](const School::OneCourse &course) {
            return course.course.name == each.first;
        });
    });
    if (isOpen)
        what.unseen[roster.title] = {.mentioned = 0, .flagged = flagged[roster.title]};
}

/// Every file is whole, and none names a student or a grade, or is of what was switched off.
void Simulation::checkFiles(const Computer &computer, Known &what) const {
    std::map<std::string, std::size_t> left;
    for (const auto &entry : fs::recursive_directory_iterator(computer.home)) {
        if (!entry.is_regular_file())
            continue;
        const std::string text = textOf(entry.path());
        const std::string name = entry.path().filename().string();
        const bool isOfService = entry.path().string().find("/cloud/") != std::string::npos ||
            entry.path().string().find("/away/") != std::string::npos;
        const bool isTemporary = name.find(".new-") != std::string::npos;
        if (text.find(nameMarker) != std::string::npos)
            throw Finding("a student's name is in " + name);
        if (text.find(".8125") != std::string::npos)
            throw Finding("a student's grade is in " + name);
        if (name.ends_with(".json") && !isOfService && !nlohmann::json::accept(text))
            throw Finding("not whole: " + name);
        if (isTemporary && !isOfService && !leftovers.contains(name))
            throw Finding("a temporary file is left: " + name);
        if (isTemporary && !isOfService && ++left[name.substr(0, name.find(".new-"))] > 2)
            throw Finding("the temporary files of killed programs add up: " + name);
    }
    const Program &program = *computer.program;
    if (program.isSample)
        return;
    for (const RosterSnapshot &entry : savedHistory(computer)) {
        if (what.deleted.contains({entry.courseID, entry.recordedAt}))
            throw Finding("a deleted visit came back");
    }
    if (!program.stores.history.isEnabled() &&
        fs::exists(computer.home / "data/RosterHistory.json"))
        throw Finding("the history's file is there although it is switched off");
    if (!program.stores.contacts.isEnabled() && fs::exists(computer.home / "data/ContactLog.json"))
        throw Finding("the contacts' file is there although they are switched off");
    checkWidgets(computer, what);
}

/// The widgets show nothing of another account, and nothing after signing out.
void Simulation::checkWidgets(const Computer &computer, Known &what) const {
    const MainWindowController &controller = *computer.program->controller;
    if (controller.isLoading() || !computer.network.isIdle())
        return;
    const auto file = readWidgetSnapshot(computer.home / "widgets");
    if (!file)
        return;
    const auto school = schools.find(computer.program->defaults.value(preferences::canvasBaseURL));
    if (school == schools.end())
        throw Finding("the widgets show courses after signing out");
    for (const WidgetTermSummary &term : file->terms) {
        for (const WidgetCourseSummary &course : term.courses) {
            const School::OneCourse *own = school->second.find(course.id);
            if (own != nullptr && own->course.name == course.name)
                continue;
            if (what.lostSettings)
                return;
            throw Finding("the widgets show a course of another account");
        }
    }
    what.lostSettings = false;
}

} // namespace ellwynd::simulation
