#include "simulation.h"

#include "base/files.h"
#include "memory/historyfile.h"
#include "platform/cloud/foldercontents.h"
#include "support/failingcalls.h"

#include <QCoreApplication>

#include <cerrno>
#include <fstream>

namespace ellwynd::simulation {

namespace {

namespace fs = std::filesystem;
using Kind = Event::Kind;
using namespace std::chrono_literals;

/// Whether everything that the teacher did is on the disk.
bool isSaved(const Program &program) {
    return program.stores.contacts.isSaved() && program.stores.history.isSaved() &&
        program.defaults.isSaved();
}

} // namespace

Simulation::Simulation(fs::path root)
    : root(std::move(root)),
      schools{{addresses[0], School(1, now())}, {addresses[1], School(2, now())}},
      computers{
          Computer(this->root / "a", server, schools),
          Computer(this->root / "b", server, schools)} {
    enterZone(0);
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
            for (std::size_t i = 0; i < computers.size(); ++i)
                checkFiles(computers[i], known[i]);
        }
    }
    end();
}

void Simulation::playOne(const Event &event) {
    // What happens by chance does not depend on earlier events, which may be left out.
    random.seed(unsigned(event.draw));
    if (passesTime(event.kind) || changesSchools(event.kind))
        settle();
    for (Computer &computer : computers) {
        // The program learns of the end of a save during or after the event.
        if (random() % 4 == 0)
            finishWork(computer);
    }
    const auto index = std::size_t(event.computer);
    Known &what = known[index];
    const std::size_t requests = computers[index].network.requests;
    if (what.killedAt > 0 && canBeKilled(event.kind))
        playKilled(event, computers[index], what);
    else
        perform(event);
    for (std::size_t i = 0; i < computers.size(); ++i) {
        settle(computers[i], i != index || event.draw % 4 != 0);
        check(computers[i], known[i]);
    }
    checkRequests(event, computers[index], what, computers[index].network.requests - requests);
}

/// The program ends at a file call in the middle of an event, and is started again.
void Simulation::playKilled(const Event &event, Computer &computer, Known &what) {
    const Contacts::Records before = what.contacts.records;
    const std::vector<RosterSnapshot> history = savedHistory(computer);
    const bool wasSaved = isSaved(*computer.program);
    const test::Fault fault{
        .code = what.killedAt % 3 == 0 ? test::Fault::shortTransfer : EIO, .isLasting = true};
    {
        const test::FailingCall kill(what.killedAt, fault);
        perform(event);
        settle(computer, event.draw % 4 != 0);
        computer.program.reset();
    }
    what.killedAt = 0;
    noteLeftovers(computer);
    const Contacts::Records after = what.contacts.records;
    const DiskOf disk(computer);
    restart(computer, what);
    what.contacts.records = recordsOf(*computer.program);
    if (latestValue && &computer == computers.data()) {
        const PreferenceMap settings = computer.program->defaults.persistentDomain();
        const auto newer = settings.find(std::string(newerSetting));
        latestValue = newer != settings.end() ? std::optional(newer->second) : std::nullopt;
    }
    constexpr std::array deleting{
        Kind::deleteHistory, Kind::deleteElsewhere, Kind::switchHistory, Kind::runWithArgument};
    if (std::ranges::find(deleting, event.kind) != deleting.end())
        what.deleted.clear();
    else if (computer.program->stores.history.isEnabled())
        checkHistoryIsKept(history, computer, what, "a kill removed an entry of the history");
    if (!wasSaved) {
        what.keys.clear();
        what.lostSettings = true;
        folderIsForgotten();
        return;
    }
    checkContactsAfterKill(before, after, what.contacts.records);
}

/// The contacts of each course are saved in one write. Each is the old one or the new one.
void Simulation::checkContactsAfterKill(
    const Contacts::Records &before, const Contacts::Records &after,
    const Contacts::Records &saved) {
    const auto recordIn = [](const Contacts::Records &records, const StudentKey &key) {
        const auto found = records.find(key);
        return found != records.end() ? std::optional(found->second) : std::nullopt;
    };
    Contacts::Records all = before;
    all.insert(after.begin(), after.end());
    all.insert(saved.begin(), saved.end());
    for (const auto &[key, date] : all) {
        const auto record = recordIn(saved, key);
        if (record != recordIn(before, key) && record != recordIn(after, key))
            throw Finding("a contact after a kill is neither the old one nor the new one");
    }
}

/// What a killed program leaves behind stays until the same file is replaced again.
void Simulation::noteLeftovers(const Computer &computer) {
    for (const auto &entry : fs::recursive_directory_iterator(computer.home)) {
        const std::string name = entry.path().filename().string();
        if (files::isTemporaryName(name))
            leftovers.insert(name);
    }
}

std::map<StudentKey, Date> Simulation::recordsOf(const Program &program) {
    std::map<StudentKey, Date> records;
    for (const ContactRecord &record : program.stores.contacts.records())
        records[{record.courseID, record.studentID}] = record.contactedAt;
    return records;
}

void Simulation::restart(Computer &computer, Known &what, const PreferenceMap &arguments) {
    const bool isWhole = !computer.program || isSaved(*computer.program);
    // During a kill the files cannot be read.
    const bool isKilled = what.killedAt > 0;
    const bool isOwn = computer.program && !computer.program->isSample;
    std::vector<RosterSnapshot> history;
    if (isOwn && isWhole && !isKilled && !computer.diskIsFull)
        history = computer.program->stores.history.entries();
    computer.program.reset();
    checkHistoryIsKept(history, computer, what, "the end of the program lost a visit");
    std::vector<RosterSnapshot> saved;
    if (!isKilled)
        saved = savedHistory(computer);
    what.visits.merge(visitsOf(saved));
    computer.start(arguments);
    if (!computer.program->isSample && !computer.program->stores.history.isEnabled())
        noteDeleted(saved, what);
    if (!isWhole) {
        // What could not be saved is lost with the program.
        what.contacts.records = recordsOf(*computer.program);
        what.keys.clear();
        what.lostSettings = true;
        folderIsForgotten();
    }
    if (!computer.program->isSample && !computer.program->stores.contacts.isEnabled())
        what.contacts.records.clear();
    what.isAsked = true;
    what.freshSince.reset();
    what.contacts.steps.clear();
    what.noticesSeen = 0;
    what.unseen.clear();
}

// ---- The history's file ------------------------------------------------------------------------

std::vector<RosterSnapshot> Simulation::savedHistory(const Computer &computer) {
    std::ifstream file(computer.home / "data/RosterHistory.json", std::ios::binary);
    if (!file)
        return {};
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    return snapshotsOf(decodeHistory(text));
}

/// Each entry is in the file, unless its day has, or had before a deletion, another visit.
void Simulation::checkHistoryIsKept(
    const std::vector<RosterSnapshot> &entries, const Computer &computer, const Known &what,
    const std::string &finding) {
    if (entries.empty())
        return;
    const std::vector<RosterSnapshot> saved = savedHistory(computer);
    std::set<VisitKey> others = visitsOf(saved);
    others.insert(what.everDeleted.begin(), what.everDeleted.end());
    for (RosterSnapshot entry : entries) {
        entry.recordedAt = std::chrono::floor<std::chrono::seconds>(entry.recordedAt);
        const VisitKey own{entry.courseID, entry.recordedAt};
        const bool mayBeReplaced = std::ranges::any_of(others, [&](const VisitKey &other) {
            // The day may be that of another zone.
            return other.first == own.first && std::chrono::abs(other.second - own.second) < 24h &&
                (other != own || what.everDeleted.contains(own));
        });
        if (!mayBeReplaced && std::ranges::find(saved, entry) == saved.end())
            throw Finding(finding);
    }
}

std::set<Simulation::VisitKey> Simulation::visitsOf(const std::vector<RosterSnapshot> &entries) {
    std::set<VisitKey> visits;
    for (const RosterSnapshot &entry : entries)
        visits.emplace(entry.courseID, std::chrono::floor<std::chrono::seconds>(entry.recordedAt));
    return visits;
}

void Simulation::noteDeleted(const std::vector<RosterSnapshot> &entries, Known &what) {
    what.deleted.merge(visitsOf(entries));
    what.everDeleted.merge(visitsOf(entries));
}

// ---- Answers -----------------------------------------------------------------------------------

/// What was begun in the background ends.
void Simulation::finishWork(Computer &computer) {
    const DiskOf disk(computer);
    computer.program->work.finish();
}

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
        if (random() % 64 == 0)
            computer.program->work.finish();
        if (!computer.network.isIdle()) {
            if (computer.network.waiting() > mostRequests())
                throw Finding("too many requests are waiting");
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

// ---- The end -----------------------------------------------------------------------------------

/// Both computers have the same settings once everything is delivered.
void Simulation::end() {
    for (std::size_t i = 0; i < computers.size(); ++i) {
        computers[i].replica.setAway(false);
        computers[i].diskIsFull = false;
        computers[i].program->defaults.set(preferences::syncSettings, true);
        restart(computers[i], known[i]);
    }
    settle();
    // Visits that follow each other fast: one is made while the other is saved.
    for (std::size_t i = 0; i < computers.size(); ++i) {
        known[i].isAsked = true;
        for (const Course &course : computers[i].program->controller->courses().latest()) {
            computers[i].program->controller->select(CourseSelection{course.id});
            settle(computers[i], false);
        }
    }
    settle();
    for (std::size_t i = 0; i < computers.size(); ++i)
        check(computers[i], known[i]);
    const auto deliver = [&] {
        for (std::size_t i = 0; i < computers.size(); ++i) {
            computers[i].replica.synchronize();
            computers[i].program->sync.push();
            settle(computers[i], true);
            computers[i].replica.synchronize();
            check(computers[i], known[i]);
        }
    };
    for (int round = 0; round < 5; ++round)
        deliver();
    const auto versions = [&] {
        std::size_t count = 0;
        for (const auto &[name, all] : server)
            count += all.size();
        return count;
    };
    const std::size_t before = versions();
    deliver();
    if (versions() != before)
        throw Finding("the settings of the two computers do not come to rest");
    const auto synced = [](PreferenceMap map) {
        std::erase_if(map, [](const auto &entry) {
            // An address is never replaced by none.
            return !preferences::isSynced(entry.first) || entry.first == "CanvasBaseURL";
        });
        return map;
    };
    const PreferenceMap settings = synced(computers[0].program->defaults.persistentDomain());
    if (settings != synced(computers[1].program->defaults.persistentDomain()))
        throw Finding("the two computers have different settings");
    if (settings != synced(computers[0].program->store.all()))
        throw Finding("the folder has other settings than the computers");
    const auto newer = settings.find(std::string(newerSetting));
    if (latestValue && (newer == settings.end() || newer->second != *latestValue))
        throw Finding("the last value of a setting is not in effect");
    for (const School::OneCourse &course : schools.at(addresses[0]).courses) {
        const auto counts = [&](const Computer &computer) {
            return computer.program->trends.remoteCounts(course.course.id, Date());
        };
        if (counts(computers[0]) != counts(computers[1]))
            throw Finding("the two computers have different counts of flagged students");
    }
    settle();
    for (std::size_t i = 0; i < computers.size(); ++i) {
        do {
            finishWork(computers[i]);
            QCoreApplication::sendPostedEvents();
        } while (computers[i].program->work.isPending());
        check(computers[i], known[i]);
        checkFiles(computers[i], known[i]);
        if (!isSaved(*computers[i].program))
            throw Finding("something is not saved although it can be");
        std::vector<RosterSnapshot> history = computers[i].program->stores.history.entries();
        for (RosterSnapshot &entry : history)
            entry.recordedAt = std::chrono::floor<std::chrono::seconds>(entry.recordedAt);
        if (history != savedHistory(computers[i]))
            throw Finding("the history in memory differs from its file");
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
    if (steps.size() > 100)
        steps.erase(steps.begin());
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
