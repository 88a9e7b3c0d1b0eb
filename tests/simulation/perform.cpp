// What the events do.
#include "app/messages/writesession.h"
#include "platform/cloud/foldercontents.h"
#include "simulation.h"

#include <cstdlib>
#include <ctime>
#include <fstream>

namespace ellwynd::simulation {

namespace {

namespace fs = std::filesystem;
using Kind = Event::Kind;
using namespace std::chrono_literals;

const std::array<const char *, 4> zones{"America/Chicago", "UTC", "Asia/Tokyo", "Pacific/Auckland"};

const std::array<PreferenceMap, 4> launchArguments{
    PreferenceMap{{"TextScale", 1.5}}, PreferenceMap{{"DefaultPassingScore", 55.0}},
    PreferenceMap{{"RememberContacts", false}}, PreferenceMap{{"RememberRosterHistory", false}}};

/// One of each kind.
std::array<CanvasError, 15> failures() {
    using Error = CanvasError;
    return {
        Error::cannotReachHost("one.example"),
        Error::tlsFailed("one.example"),
        Error::network("The connection was reset."),
        Error::forbidden({}),
        Error::canvasUnavailable(503),
        Error::unexpectedStatus(418, {}),
        Error::notCanvas("one.example"),
        Error(Error::Kind::offline),
        Error(Error::Kind::timedOut),
        Error(Error::Kind::unauthorized),
        Error(Error::Kind::rateLimited),
        Error(Error::Kind::notFound),
        Error(Error::Kind::decodingFailed),
        Error(Error::Kind::nonHTTP),
        Error(Error::Kind::badURL)};
}

} // namespace

void Simulation::enterZone(int number) {
    ::setenv("TZ", zones[std::size_t(number) % zones.size()], 1);
    ::tzset();
}

void Simulation::perform(const Event &event) {
    Computer &computer = computers[std::size_t(event.computer)];
    Known &what = known[std::size_t(event.computer)];
    if (!isQuiet(event.kind) && event.kind != Kind::activate)
        what.freshSince.reset();
    switch (event.kind) {
    case Kind::passSeconds:
        return passTime(std::chrono::seconds(1 + event.draw % 29));
    case Kind::passMinutes:
        return passTime(std::chrono::minutes(1 + event.draw % 50));
    case Kind::passHours:
        return passTime(std::chrono::minutes(60 * (event.draw % 30) + event.draw % 60));
    case Kind::setClock:
        setClock(std::chrono::seconds(event.draw % 200'001 - 100'000));
        for (Known &each : known) {
            each.zoneChangedAt = now();
            // A visit of the same second is possible again.
            each.deleted.clear();
        }
        return;
    case Kind::kill:
        what.killedAt = 1 + event.draw % 60;
        return;
    case Kind::travel:
        enterZone(event.draw);
        for (std::size_t i = 0; i < computers.size(); ++i) {
            known[i].shownInOtherZone = computers[i].program->controller->roster().fetchedAt;
            known[i].zoneChangedAt = now();
        }
        return;
    default:
        break;
    }
    constexpr std::array asking{
        Kind::openCourse, Kind::openTerm,  Kind::refresh, Kind::refreshRoster,   Kind::signIn,
        Kind::signOut,    Kind::saveToken, Kind::restart, Kind::runWithArgument, Kind::runInSample};
    what.isAsked = what.isAsked || std::ranges::find(asking, event.kind) != asking.end();
    performInSchools(event);
    if (isOfCloud(event.kind))
        return performInCloud(event, computer);
    const DiskOf disk(computer);
    performOnScreen(event, computer, what);
    performOnMachine(event, computer, what);
    performElsewhere(event, computer, what);
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
        student.score = event.draw % 101 + (event.draw % 2 != 0 ? gradeFraction : 0);
        break;
    case Kind::beActive:
        student.lastActivityAt = now();
        student.secondsInCourse += event.draw % 20'000;
        break;
    case Kind::join:
        if (course.students.size() < 8)
            school.join(course);
        break;
    case Kind::leave:
    case Kind::comeBack:
        student.enrolled = event.kind == Kind::comeBack;
        break;
    case Kind::endTerm:
        school.endTerm(course.course.term->id, now());
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
    const SharedList<RiskRow> rows = controller.roster().rows;
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
    case Kind::copyMessage:
        if (!rows.empty())
            copyMessages(event, *computer.program, what);
        break;
    case Kind::undo:
        controller.undoStack().undo();
        what.contacts.undo();
        break;
    default:
        break;
    }
}

/// Copies a message to up to three students, which is a contact with each.
void Simulation::copyMessages(const Event &event, Program &program, Known &what) {
    RosterActions &actions = program.controller->actions();
    const SharedList<RiskRow> &rows = program.controller->roster().rows;
    const std::vector<RiskRow> students(
        rows.begin(), rows.begin() + std::min(rows.size(), std::size_t(1 + event.draw % 3)));
    std::string copied;
    const ClipboardWriter clipboard = [&](const std::string &text) {
        copied = text;
        return true;
    };
    if (event.draw % 2 == 0) {
        const auto &templates = program.stores.templates.templates();
        actions.copyMessages(
            templates[std::size_t(event.draw / 6) % templates.size()], students, clipboard);
    } else {
        WriteSession session(
            students, program.defaults, program.stores, program.controller->undoStack(), clipboard,
            now);
        while (session.current()) {
            if (session.copyAndNext() != WriteSession::CopyResult::copied)
                throw Finding("a message could not be copied");
        }
    }
    if (copied.find(nameMarker) == std::string::npos)
        throw Finding("the message that was copied does not greet the student");
    if (program.isSample || !program.stores.contacts.isEnabled())
        return;
    std::map<StudentKey, std::optional<Date>> after;
    for (const RiskRow &student : students)
        after[keyOf(student)] = now();
    what.contacts.change(after);
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
        const std::int64_t id = event.kind == Kind::failList ? 0 : 100 + event.draw % 2;
        const auto all = failures();
        computer.network.failures.insert_or_assign(
            id, all[std::size_t(event.draw / 2) % all.size()]);
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
    case Kind::saveToken:
        program.controller->connectionDidChange();
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
        changePreference(defaults, event);
        break;
    case Kind::changeElsewhere:
        // A change that cannot be saved ends with the command line.
        if (!computer.diskIsFull) {
            UserDefaults commandLine(computer.home / "Preferences.json", {});
            changePreference(commandLine, event);
        }
        if (event.draw % 5 != 0)
            defaults.reloadIfChanged();
        break;
    case Kind::switchSync:
        defaults.set(preferences::syncSettings, event.draw % 2 == 0);
        if (event.draw % 2 != 0) {
            defaults.remove(preferences::syncedFolderMark.name);
            folderIsForgotten();
        }
        restart(computer, what);
        break;
    case Kind::switchHistory: {
        const std::vector<RosterSnapshot> before = program.stores.history.entries();
        defaults.set(preferences::rememberRosterHistory, event.draw % 2 == 0);
        if (program.stores.history.visits().empty())
            noteDeleted(before, what);
        passTime(1s);
        break;
    }
    case Kind::switchContacts:
        defaults.set(preferences::rememberContacts, event.draw % 2 == 0);
        if (event.draw % 2 != 0)
            what.contacts = {};
        break;
    case Kind::deleteHistory:
        noteDeleted(snapshotsOf(program.stores.history.deleteAll()), what);
        passTime(1s);
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
        restart(computer, what, launchArguments[std::size_t(event.draw) % launchArguments.size()]);
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

void Simulation::folderIsForgotten() {
    hasForgottenFolder = true;
    latestValue.reset();
}

/// A setting that both computers change, or one of a newer version that only the first one changes.
void Simulation::changePreference(UserDefaults &defaults, const Event &event) {
    if (event.computer != 0 || event.draw % 3 == 0) {
        defaults.set(preferences::rosterCompactRows, event.draw % 2 == 0);
        return;
    }
    const PreferenceValue value = double(event.draw);
    defaults.set(std::string(newerSetting), value);
    if (!hasForgottenFolder)
        latestValue = value;
}

/// What the command line does on the computer meanwhile.
void Simulation::performElsewhere(const Event &event, Computer &computer, Known &what) {
    if (event.kind != Kind::visitElsewhere && event.kind != Kind::deleteElsewhere)
        return;
    UserDefaults defaults(computer.home / "Preferences.json", {});
    RosterHistory history(defaults, computer.home / "data", now);
    if (event.kind == Kind::deleteElsewhere) {
        noteDeleted(snapshotsOf(history.deleteAll()), what);
        passTime(1s);
        return;
    }
    const auto school = schools.find(defaults.value(preferences::canvasBaseURL));
    // A launch argument of the program does not concern the command line.
    if (school == schools.end() || !computer.program->stores.history.isEnabled())
        return;
    const auto &courses = school->second.courses;
    const School::OneCourse &course = courses[std::size_t(event.draw) % courses.size()];
    const std::int64_t id = course.course.id;
    std::vector<RiskRow> rows;
    for (const Judged &each :
         judge(course, courseThresholds(defaults, id), course.course.term->endAt, now())) {
        rows.push_back({.id = each.id, .level = each.level(), .missingCount = each.missing});
    }
    readAt[now()] = versions.back();
    what.visits.emplace(id, std::chrono::floor<std::chrono::seconds>(now()));
    history.record(rows, id, now());
}

/// What the cloud service does on a computer. It has room of its own.
void Simulation::performInCloud(const Event &event, Computer &computer) {
    const std::vector<std::string> files{
        folderContents::fileName("Course.100.PassingScore"),
        folderContents::fileName("DefaultPassingScore"),
        folderContents::fileName("CanvasBaseURL"),
        folderContents::fileName("RosterCompactRows"),
        folderContents::fileName(newerSetting),
        std::string(folderContents::markName)};
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
    case Kind::createMountPoint:
        computer.replica.createMountPoint();
        break;
    default:
        break;
    }
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

} // namespace ellwynd::simulation
