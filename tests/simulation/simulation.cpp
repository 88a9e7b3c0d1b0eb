#include "simulation.h"

#include "base/calendar.h"
#include "memory/movement.h"
#include "platform/cloud/foldercontents.h"

#include <QCoreApplication>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include <ctime>
#include <fstream>

namespace ellwynd::simulation {

namespace {

namespace fs = std::filesystem;
using Kind = Event::Kind;
using namespace std::chrono_literals;

const std::array<std::string, 2> addresses{"https://one.example", "https://two.example"};
const std::array<const char *, 4> zones{"America/Chicago", "UTC", "Asia/Tokyo", "Pacific/Auckland"};

bool passesTime(Kind kind) {
    return kind == Kind::passSeconds || kind == Kind::passMinutes || kind == Kind::passHours ||
        kind == Kind::sleep || kind == Kind::setClock || kind == Kind::travel;
}

bool changesSchools(Kind kind) {
    return kind >= Kind::setWork && kind <= Kind::beginTerm;
}

void setZone(const char *zone) {
    ::setenv("TZ", zone, 1);
    ::tzset();
}

} // namespace

Simulation::Simulation(fs::path root)
    : root(std::move(root)),
      schools{{addresses[0], School(1, now())}, {addresses[1], School(2, now())}},
      computers{
          Computer(this->root / "a", server, schools),
          Computer(this->root / "b", server, schools)} {
    setZone(zones[0]);
    folderContents::create(computers[0].replica.path());
    schoolsDidChange();
    for (Computer &computer : computers) {
        computer.replica.synchronize();
        UserDefaults defaults(computer.home / "Preferences.json", {});
        defaults.update(
            {{"SyncSettingsViaICloud", true},
             {"CloudStoreFolder", computer.replica.path().string()},
             {"MovementNotifications", true}});
        connect(computer, 0);
        computer.start();
    }
    settle();
}

void Simulation::connect(Computer &computer, int number) {
    const std::string &address = addresses[std::size_t(number)];
    computer.keyring.tokens.insert(address);
    if (computer.program) {
        computer.program->defaults.set(preferences::canvasBaseURL, address);
        computer.program->controller->connectionDidChange();
    } else {
        UserDefaults(computer.home / "Preferences.json", {})
            .set(preferences::canvasBaseURL, address);
    }
}

void Simulation::schoolsDidChange() {
    passTime(1s);
    versions.push_back(std::make_shared<const Schools>(schools));
}

// ---- Events ------------------------------------------------------------------------------------

void Simulation::play(const std::vector<Event> &events) {
    std::size_t count = 0;
    for (const Event &event : events) {
        playOne(event);
        if (++count % 25 == 0) {
            for (const Computer &computer : computers)
                checkFiles(computer);
        }
    }
    end();
}

void Simulation::playOne(const Event &event) {
    if (passesTime(event.kind) || changesSchools(event.kind))
        settle();
    const auto index = std::size_t(event.computer);
    Network &network = computers[index].network;
    const std::size_t requests = network.requests;
    perform(event);
    for (std::size_t i = 0; i < computers.size(); ++i) {
        settle(computers[i], i != index || event.draw % 4 != 0);
        check(computers[i], known[i]);
    }
    Known &what = known[index];
    // A roster and a pass count as fresh for a minute.
    if (event.kind == Kind::activate && what.freshSince && elapsed() - *what.freshSince < 50s &&
        network.requests != requests)
        throw Finding("what is fresh was read again");
    const MainWindowController &controller = *computers[index].program->controller;
    if (event.kind == Kind::refresh && network.isIdle() && network.isOnline &&
        network.failures.empty() && !controller.isLoading() && !controller.courses().isEmpty())
        what.freshSince = elapsed();
}

void Simulation::perform(const Event &event) {
    Computer &computer = computers[std::size_t(event.computer)];
    Known &what = known[std::size_t(event.computer)];
    if (event.kind != Kind::passSeconds && event.kind != Kind::activate)
        what.freshSince.reset();
    switch (event.kind) {
    case Kind::passSeconds:
        return passTime(std::chrono::seconds(1 + event.draw % 29));
    case Kind::passMinutes:
        return passTime(std::chrono::minutes(1 + event.draw % 50));
    case Kind::passHours:
        return passTime(std::chrono::minutes(60 * (event.draw % 30) + event.draw % 60));
    case Kind::setClock:
        return setClock(std::chrono::seconds(event.draw % 200'001 - 100'000));
    case Kind::travel:
        setZone(zones[std::size_t(event.draw) % zones.size()]);
        for (std::size_t i = 0; i < computers.size(); ++i)
            known[i].shownInOtherZone = computers[i].program->controller->roster().fetchedAt;
        return;
    default:
        break;
    }
    constexpr std::array asking{Kind::openCourse,    Kind::openTerm,        Kind::refresh,
                                Kind::refreshRoster, Kind::signIn,          Kind::signOut,
                                Kind::restart,       Kind::runWithArgument, Kind::runInSample};
    what.isAsked = what.isAsked || std::ranges::find(asking, event.kind) != asking.end();
    performInSchools(event);
    if (event.kind >= Kind::upload && event.kind <= Kind::folderBack)
        return performInCloud(event, computer);
    const DiskOf disk(computer);
    performOnScreen(event, computer, what);
    performOnMachine(event, computer, what);
}

void Simulation::performInSchools(const Event &event) {
    if (!changesSchools(event.kind))
        return;
    School &school = schools.at(addresses[std::size_t(event.draw / 7) % 2]);
    School::OneCourse &course =
        school.courses[std::size_t(event.draw / 11) % school.courses.size()];
    School::Student &student =
        course.students[std::size_t(event.draw / 13) % course.students.size()];
    switch (event.kind) {
    case Kind::setWork:
        if (course.assignments.size() < 12)
            school.setWork(course, now());
        break;
    case Kind::handIn:
        for (SubmissionSummary &work : course.submissions) {
            if (work.userID == student.id && work.workflowState == "unsubmitted") {
                work.workflowState = "submitted";
                break;
            }
        }
        break;
    case Kind::grade:
        student.score = event.draw % 101;
        break;
    case Kind::beActive:
        student.lastActivityAt = now();
        break;
    case Kind::join:
        if (course.students.size() < 8)
            school.join(course);
        break;
    case Kind::leave:
    case Kind::comeBack:
        student.enrolled = event.kind == Kind::comeBack;
        break;
    case Kind::beginTerm:
        if (lastTermID < 4)
            school.beginTerm(++lastTermID, now());
        break;
    default:
        break;
    }
    schoolsDidChange();
}

void Simulation::performOnScreen(const Event &event, Computer &computer, Known &what) {
    MainWindowController &controller = *computer.program->controller;
    const std::vector<Course> courses = controller.courses().latest();
    const auto chosen = [&](const auto &list) -> const auto & {
        return list[std::size_t(event.draw) % list.size()];
    };
    const std::vector<RiskRow> rows = controller.roster().rows;
    switch (event.kind) {
    case Kind::openCourse:
        if (!courses.empty())
            controller.select(CourseSelection{chosen(courses).id});
        break;
    case Kind::openTerm:
        if (!courses.empty())
            controller.select(TermSelection{chosen(courses).term ? chosen(courses).term->id : 0});
        break;
    case Kind::openDashboard:
        controller.select(DashboardSelection{});
        break;
    case Kind::refresh:
        controller.refresh();
        break;
    case Kind::refreshRoster:
        controller.refreshRoster();
        break;
    case Kind::activate:
    case Kind::deactivate:
        computer.program->isActive = event.kind == Kind::activate;
        controller.setActive(computer.program->isActive);
        break;
    case Kind::timer:
        controller.timerFired();
        break;
    case Kind::markContacted:
    case Kind::removeMark: {
        if (rows.empty())
            break;
        const bool isMark = event.kind == Kind::markContacted;
        if (isMark)
            controller.actions().markContacted({chosen(rows)});
        else
            controller.actions().removeContactMarks({chosen(rows)});
        const StudentKey key = keyOf(chosen(rows));
        const bool changes = isMark || what.contacts.records.contains(key);
        if (!computer.program->isSample && changes && computer.program->stores.contacts.isEnabled())
            what.contacts.change({{key, isMark ? std::optional(now()) : std::nullopt}});
        break;
    }
    case Kind::undo:
        controller.undoStack().undo();
        what.contacts.undo();
        break;
    default:
        break;
    }
}

void Simulation::performOnMachine(const Event &event, Computer &computer, Known &what) {
    Program &program = *computer.program;
    UserDefaults &defaults = program.defaults;
    const std::string course = "Course." + std::to_string(100 + event.draw % 2);
    switch (event.kind) {
    case Kind::sleep:
        passTime(std::chrono::minutes(5 + event.draw % 900));
        program.controller->computerDidWake();
        break;
    case Kind::loseNetwork:
        computer.network.isOnline = false;
        break;
    case Kind::findNetwork:
        computer.network.isOnline = true;
        program.controller->networkDidReturn();
        break;
    case Kind::failCourse:
    case Kind::failList: {
        constexpr std::array kinds{
            CanvasError::Kind::timedOut, CanvasError::Kind::unauthorized,
            CanvasError::Kind::rateLimited, CanvasError::Kind::decodingFailed,
            CanvasError::Kind::offline};
        const std::int64_t id = event.kind == Kind::failList ? 0 : 100 + event.draw % 2;
        computer.network.failures.insert_or_assign(
            id, CanvasError(kinds[std::size_t(event.draw / 2) % kinds.size()]));
        break;
    }
    case Kind::endFailures:
        computer.network.failures.clear();
        break;
    case Kind::lockKeyring:
    case Kind::unlockKeyring:
        computer.keyring.isLocked = event.kind == Kind::lockKeyring;
        break;
    case Kind::signOut:
        computer.keyring.tokens.erase(defaults.value(preferences::canvasBaseURL));
        defaults.remove(preferences::canvasBaseURL.name);
        program.controller->connectionDidChange();
        break;
    case Kind::signIn:
        if (!program.isSample)
            connect(computer, event.draw % 2);
        break;
    case Kind::changeThreshold:
        if (event.draw % 3 == 0)
            defaults.set(preferences::defaultPassingScore, 40.0 + event.draw % 50);
        else
            defaults.set(course + ".PassingScore", 40.0 + event.draw % 50);
        break;
    case Kind::useDefaults:
        defaults.remove(course + ".PassingScore");
        break;
    case Kind::changePreference:
        defaults.set(preferences::rosterCompactRows, event.draw % 2 == 0);
        break;
    case Kind::switchHistory:
        defaults.set(preferences::rememberRosterHistory, event.draw % 2 == 0);
        break;
    case Kind::switchContacts:
        defaults.set(preferences::rememberContacts, event.draw % 2 == 0);
        if (event.draw % 2 != 0)
            what.contacts = {};
        break;
    case Kind::deleteHistory:
        program.stores.history.deleteAll();
        break;
    case Kind::fillDisk:
    case Kind::freeDisk:
        // From the next event on.
        computer.diskIsFull = event.kind == Kind::fillDisk;
        break;
    case Kind::restart:
        restart(computer, what);
        break;
    case Kind::runWithArgument:
        restart(computer, what, {{"TextScale", 1.5}});
        break;
    case Kind::runInSample:
        runInSample(computer, what);
        break;
    case Kind::push:
        program.sync.push();
        break;
    default:
        break;
    }
}

/// What the cloud service does on a computer. It has room of its own.
void Simulation::performInCloud(const Event &event, Computer &computer) {
    const std::vector<std::string> files{
        folderContents::fileName("Course.100.PassingScore"),
        folderContents::fileName("DefaultPassingScore"), folderContents::fileName("CanvasBaseURL"),
        folderContents::fileName("RosterCompactRows"), std::string(folderContents::markName)};
    const std::string &file = files[std::size_t(event.draw / 3) % files.size()];
    switch (event.kind) {
    case Kind::upload:
        computer.replica.upload(file);
        break;
    case Kind::deliver:
        computer.replica.deliver(file, test::Delivery::latest);
        break;
    case Kind::deliverTorn:
        computer.replica.deliver(file, test::Delivery::torn, event.draw);
        break;
    case Kind::deliverOld:
        computer.replica.deliver(file, test::Delivery::old, event.draw);
        break;
    case Kind::folderAway:
    case Kind::folderBack:
        computer.replica.setAway(event.kind == Kind::folderAway);
        break;
    default:
        break;
    }
}

std::map<StudentKey, Date> Simulation::recordsOf(const Program &program) {
    std::map<StudentKey, Date> records;
    for (const ContactRecord &record : program.stores.contacts.records())
        records[{record.courseID, record.studentID}] = record.contactedAt;
    return records;
}

void Simulation::restart(Computer &computer, Known &what, const PreferenceMap &arguments) {
    const auto isSaved = [](const Program &program) {
        return program.stores.contacts.isSaved() && program.defaults.isSaved();
    };
    const bool isWhole = !computer.program || isSaved(*computer.program);
    computer.start(arguments);
    if (!isWhole) {
        // What could not be saved is lost with the program.
        what.contacts.records = recordsOf(*computer.program);
        what.hasPreference = false;
    }
    what.contacts.steps.clear();
    what.noticesSeen = 0;
    what.mentioned.clear();
}

void Simulation::runInSample(Computer &computer, Known &what) {
    const auto contentsOf = [&](const fs::path &folder) {
        std::map<fs::path, std::string> all;
        for (const auto &entry : fs::directory_iterator(folder)) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::string name = entry.path().filename().string();
            if (entry.is_regular_file() && name != "Preferences.sample.json" &&
                !name.ends_with(".lock"))
                all[entry.path()] = {std::istreambuf_iterator<char>(file), {}};
        }
        return all;
    };
    if (computer.diskIsFull)
        return;
    computer.program.reset();
    const auto before = contentsOf(computer.home);
    fs::create_directories(computer.home / "data");
    const auto data = contentsOf(computer.home / "data");
    restart(computer, what, {{"SampleData", true}});
    const std::size_t requests = computer.network.requests;
    settle(computer, true);
    Program &program = *computer.program;
    program.defaults.set(preferences::defaultPassingScore, 55.0);
    program.defaults.set(preferences::rememberContacts, false);
    program.stores.history.deleteAll();
    program.controller->select(CourseSelection{900'101});
    settle(computer, true);
    program.controller->actions().markContacted(program.controller->roster().rows);
    program.sync.push();
    settle(computer, true);
    if (computer.network.requests != requests)
        throw Finding("the sample college asked Canvas");
    computer.program.reset();
    if (contentsOf(computer.home) != before || contentsOf(computer.home / "data") != data)
        throw Finding("a run in the sample college changed the teacher's files");
    restart(computer, what);
}

// ---- Answers -----------------------------------------------------------------------------------

void Simulation::settle() {
    for (Computer &computer : computers)
        settle(computer, true);
}

void Simulation::settle(Computer &computer, bool completely) {
    constexpr int maxAnswers = 20'000;
    const DiskOf disk(computer);
    int moments = completely ? 3 : 0;
    for (int i = 0; i < maxAnswers; ++i) {
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        if (computer.program->queue.step())
            continue;
        if (!computer.network.isIdle()) {
            readAt[now()] = versions.back();
            computer.network.answer(unsigned(random()));
            if (!completely && random() % 3 == 0)
                return;
        } else if (moments-- > 0) {
            // A selection is read after a moment, and a pass waits for the roster on screen.
            passTime(moments == 0 ? ElapsedTime(6s) : ElapsedTime(200ms));
            computer.program->controller->checkDeadline();
        } else {
            return;
        }
    }
    throw Finding("the requests do not end");
}

// ---- Checks ------------------------------------------------------------------------------------

void Simulation::check(Computer &computer, Known &what) {
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
    const bool hasPreference = program.defaults.persistentDomain().contains("RosterCompactRows");
    if (what.hasPreference && !hasPreference)
        throw Finding("a setting was lost that nobody removed");
    what.hasPreference = hasPreference;
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

/// What is on screen is what the records of its time give.
void Simulation::checkRoster(const Program &program, const Known &what) const {
    const RosterView &roster = program.controller->roster();
    if (roster.state != RosterView::State::shown || !roster.courseID)
        return;
    const auto read = readAt.find(roster.fetchedAt);
    if (read == readAt.end())
        throw Finding("the roster is of a time at which nothing was read");
    const std::string address = program.defaults.value(preferences::canvasBaseURL);
    const School::OneCourse &course = *read->second->at(address).find(*roster.courseID);
    const ScoredCourse expected = scoreCourse(
        course.course, School::enrollments(course), School::groups(course),
        School::submissions(course, roster.fetchedAt),
        courseThresholds(program.defaults, *roster.courseID), roster.fetchedAt);
    if (roster.rows != expected.rows)
        throw Finding("the roster differs from the records of its time");
    if (what.shownInOtherZone != roster.fetchedAt)
        checkMovement(program);
    for (const auto &[key, outcome] : roster.outreach) {
        if (!what.contacts.records.contains(key))
            throw Finding("an outcome is shown for a student who was not written to");
    }
}

/// Each student is compared with the last entry of an earlier day, and with nothing else.
void Simulation::checkMovement(const Program &program) const {
    const RosterView &roster = program.controller->roster();
    const Date today = calendar::startOfDay(roster.fetchedAt);
    std::map<std::int64_t, const RosterSnapshot *> last;
    bool hasEarlier = false;
    for (const RosterSnapshot &entry : program.stores.history.entries()) {
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
void Simulation::checkVisit(const Program &program, Known &what) const {
    const std::size_t entries = program.stores.history.entries().size();
    if (entries > what.entries && !program.isActive && !what.isAsked)
        throw Finding("a visit was recorded although nobody looked");
    what.entries = entries;
}

/// Every student is counted in notices at most once until the course is opened.
void Simulation::checkNotices(Program &program, Known &what) const {
    const std::string address = program.defaults.value(preferences::canvasBaseURL);
    const auto school = schools.find(address);
    if (school == schools.end())
        return;
    const auto &posted = program.notifications.posted;
    for (; what.noticesSeen < posted.size(); ++what.noticesSeen) {
        const UserNotice &notice = posted[what.noticesSeen];
        for (const School::OneCourse &course : school->second.courses) {
            const std::string &name = *course.course.name;
            const std::size_t at = notice.body.find(name);
            if (at == std::string::npos)
                continue;
            const bool isOnly = notice.body == name;
            const std::string count =
                isOnly ? notice.title : notice.body.substr(at + name.size() + 2);
            std::size_t &mentioned = what.mentioned[name];
            mentioned += std::size_t(std::stoul(count));
            if (mentioned > course.students.size())
                throw Finding("a student was counted twice in notices: " + notice.body);
        }
    }
    const RosterView &roster = program.controller->roster();
    if (roster.state == RosterView::State::shown && roster.courseID)
        what.mentioned.erase(roster.title);
}

/// Every file is whole, and none names a student or a token.
void Simulation::checkFiles(const Computer &computer) const {
    for (const auto &entry : fs::recursive_directory_iterator(computer.home)) {
        if (!entry.is_regular_file())
            continue;
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text(std::istreambuf_iterator<char>(file), {});
        const std::string name = entry.path().filename().string();
        if (text.find(nameMarker) != std::string::npos)
            throw Finding("a student's name is in " + name);
        const bool isOfService = entry.path().string().find("/cloud/") != std::string::npos ||
            entry.path().string().find("/away/") != std::string::npos;
        if (name.ends_with(".json") && !isOfService && !nlohmann::json::accept(text))
            throw Finding("not whole: " + name);
        if (name.find(".new-") != std::string::npos)
            throw Finding("a temporary file is left: " + name);
    }
}

/// Both computers have the same settings once everything is delivered.
void Simulation::end() {
    for (std::size_t i = 0; i < computers.size(); ++i) {
        computers[i].replica.setAway(false);
        computers[i].diskIsFull = false;
        restart(computers[i], known[i]);
    }
    settle();
    for (int round = 0; round < 5; ++round) {
        for (Computer &computer : computers) {
            computer.replica.synchronize();
            computer.program->sync.push();
            settle(computer, true);
            computer.replica.synchronize();
        }
    }
    const auto synced = [](const Computer &computer) {
        PreferenceMap map = computer.program->defaults.persistentDomain();
        std::erase_if(map, [](const auto &entry) {
            // An address is never replaced by none.
            return !preferences::isSynced(entry.first) || entry.first == "CanvasBaseURL";
        });
        return map;
    };
    if (synced(computers[0]) != synced(computers[1]))
        throw Finding("the two computers have different settings");
    settle();
    for (std::size_t i = 0; i < computers.size(); ++i) {
        check(computers[i], known[i]);
        checkFiles(computers[i]);
    }
}

void Simulation::Contacts::change(const std::map<StudentKey, std::optional<Date>> &after) {
    Step step{.before = {}, .after = after};
    for (const auto &[key, date] : after) {
        const auto found = records.find(key);
        step.before[key] = found != records.end() ? std::optional(found->second) : std::nullopt;
        if (date)
            records[key] = *date;
        else
            records.erase(key);
    }
    steps.push_back(std::move(step));
}

/// Restores what has not changed since.
void Simulation::Contacts::undo() {
    if (steps.empty())
        return;
    const Step step = std::move(steps.back());
    steps.pop_back();
    for (const auto &[key, date] : step.after) {
        const auto found = records.find(key);
        const auto current = found != records.end() ? std::optional(found->second) : std::nullopt;
        if (current != date)
            continue;
        if (const auto &before = step.before.at(key))
            records[key] = *before;
        else
            records.erase(key);
    }
}

} // namespace ellwynd::simulation
