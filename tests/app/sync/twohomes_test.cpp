// Two computers of one teacher and a cloud service that keeps a folder of theirs in step, badly.
#include "app/sync/settingssync.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/directqueue.h"

#include <QTemporaryDir>

#include <fmt/format.h>
#include <gmock/gmock.h>

#include <fstream>
#include <random>

namespace ellwynd {
namespace {

namespace fs = std::filesystem;

struct Step {
    enum class Kind {
        change,
        changeElsewhere,
        remove,
        push,
        scan,
        partOfPush,
        kill,
        restart,
        runWithArgument,
        sampleRun,
        folderAway,
        folderBack,
        emptyMountPoint,
        switchOff,
        switchOn,
        upload,
        download,
        downloadTorn,
        downloadOld,
    };
    static constexpr int kinds = int(Kind::downloadOld) + 1;

    Kind kind{};
    int home = 0;
    int key = 0;
    int value = 0;
};

/// "Step{Kind(3), 0, 1, 5}", to be copied into a test.
std::string textOf(const std::vector<Step> &steps) {
    std::string text;
    for (const Step &step : steps)
        text += fmt::format(
            "{{Kind({}), {}, {}, {}}}, ", int(step.kind), step.home, step.key, step.value);
    return text;
}

const std::vector<std::string> keys{"TextScale",         "SidebarTermLimit",
                                    "RosterCompactRows", "Course.1.PassingScore",
                                    "Course.2.Icon",     "Course.3.OfANewerVersion"};
/// The keys from here on are never removed.
constexpr int firstKept = 3;
/// The last key is changed by the first home alone.
const int keyOfFirstHome = int(keys.size()) - 1;

PreferenceValue valueOf(int key, int value) {
    switch (key) {
    case 1:
        return std::int64_t(value % 12);
    case 2:
        return value % 2 == 0;
    case 4:
        return fmt::format("icon{}", value);
    default:
        return 1.0 + double(value % 20) / 32;
    }
}

std::string readFile(const fs::path &path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// What the service holds, with all older contents of each file. Absent for a removed file.
using Content = std::optional<std::string>;
using Server = std::map<std::string, std::vector<Content>>;

/// A copy of the folder on one computer, which the service updates.
struct Replica {
    fs::path path;
    fs::path away;
    Server &server;
    /// The number of the server's version that the file on this computer is based on, and its
    /// content when the service last looked.
    std::map<std::string, std::pair<std::size_t, Content>> base;

    [[nodiscard]] fs::path current() const { return fs::exists(away) ? away : path; }
    [[nodiscard]] Content content(const std::string &name) const {
        const fs::path file = current() / name;
        return fs::exists(file) ? Content(readFile(file)) : std::nullopt;
    }
    [[nodiscard]] std::set<std::string> names() const {
        std::set<std::string> all;
        for (const auto &[name, versions] : server)
            all.insert(name);
        for (const auto &entry : fs::directory_iterator(current()))
            all.insert(entry.path().filename());
        return all;
    }

    void write(const std::string &name, const Content &content) const {
        if (content)
            std::ofstream(current() / name, std::ios::binary) << *content;
        else
            fs::remove(current() / name);
    }

    /// Of two changes of one file the service keeps the first that reached it, and leaves the other
    /// one beside it.
    void upload(const std::string &name) {
        auto &[version, known] = base[name];
        const Content now = content(name);
        auto &versions = server[name];
        if (now == known)
            return;
        if (version < versions.size()) {
            if (now)
                write(name + " (conflicted copy)", now);
            known = versions.back();
            version = versions.size();
            write(name, known);
            return;
        }
        versions.push_back(now);
        version = versions.size();
        known = now;
    }

    /// Delivers the latest content, a part of it, or an older one that this computer does not have
    /// yet. Its own changes are not delivered to it.
    void download(const std::string &name, Step::Kind kind, int draw) {
        if (!pending.contains(name))
            upload(name);
        auto &[version, known] = base[name];
        const auto &versions = server[name];
        const std::size_t missing = versions.size() - version;
        if (versions.empty() || (missing == 0 && kind != Step::Kind::download))
            return;
        const bool isOld = kind == Step::Kind::downloadOld;
        known = isOld ? versions[version + std::size_t(draw) % missing] : versions.back();
        if (kind == Step::Kind::downloadTorn && known)
            known = known->substr(0, std::size_t(draw) % (known->size() + 1));
        write(name, known);
        if (kind == Step::Kind::download) {
            version = versions.size();
            pending.erase(name);
        } else {
            pending.insert(name);
        }
    }

    /// Files whose delivery is not complete.
    std::set<std::string> pending;

    void downloadAll() {
        for (const std::string &name : names()) {
            if (!pending.contains(name))
                upload(name);
        }
        for (const auto &[name, versions] : server) {
            if (versions.empty())
                continue;
            pending.erase(name);
            if (content(name) != versions.back())
                write(name, versions.back());
            base[name] = {versions.size(), versions.back()};
        }
    }
};

struct Home {
    fs::path root;
    Replica replica;
    test::DirectQueue queue;
    std::optional<UserDefaults> defaults;
    std::optional<SyncedFolder> store;
    std::optional<SettingsSync> sync;

    Home(fs::path folder, Server &server)
        : root(std::move(folder)), replica{root / "cloud", root / "away", server, {}, {}} {
        fs::create_directories(replica.path);
        UserDefaults(preferences(), {}).set(preferences::syncSettings, true);
    }

    [[nodiscard]] fs::path preferences() const { return root / "Preferences.json"; }

    void start(const PreferenceMap &arguments = {}) {
        stop();
        defaults.emplace(preferences(), arguments);
        restartSync();
    }
    /// As the service of the window does when it is switched on or off.
    void restartSync() {
        sync.reset();
        store.reset();
        const bool isOn = defaults->value(preferences::syncSettings);
        if (!isOn && !defaults->value(preferences::sampleData))
            defaults->remove(preferences::syncedFolderMark.name);
        store.emplace(replica.path, queue, defaults->value(preferences::syncedFolderMark));
        sync.emplace(*defaults, *store, queue, root / "Synced.json", std::chrono::hours(1));
        sync->start();
    }
    void stop() {
        sync.reset();
        store.reset();
        defaults.reset();
        queue.isHeld = false;
        queue.finish();
    }
    [[nodiscard]] PreferenceMap synced() const {
        PreferenceMap map = defaults->persistentDomain();
        std::erase_if(map, [](const auto &entry) { return !preferences::isSynced(entry.first); });
        return map;
    }
};

class Histories : public testing::Test {
  protected:
    /// Plays a history to its end. @return what went wrong; empty if nothing did
    static std::string play(const std::vector<Step> &steps) {
        // In memory where there is such a folder: every change is written through to the disk.
        const QTemporaryDir folder(
            fs::exists("/dev/shm") ? QStringLiteral("/dev/shm/ellwynd-XXXXXX") : QString());
        const fs::path root = folder.path().toStdString();
        Server server;
        std::array<Home, 2> homes{Home(root / "a", server), Home(root / "b", server)};
        folderContents::create(homes[0].replica.path);
        homes[0].replica.downloadAll();
        homes[1].replica.downloadAll();
        for (Home &home : homes)
            home.start();
        std::optional<PreferenceValue> ofFirstHome;
        bool wasSwitched = false;
        std::set<std::string> everSet;
        for (const Step &step : steps) {
            perform(step, homes[std::size_t(step.home)]);
            wasSwitched = wasSwitched || step.kind == Step::Kind::switchOff;
            const bool changes =
                step.kind == Step::Kind::change || step.kind == Step::Kind::changeElsewhere;
            if (!changes)
                continue;
            everSet.insert(keys[std::size_t(step.key)]);
            if (step.key == keyOfFirstHome)
                ofFirstHome = valueOf(step.key, step.value);
        }
        return end(homes, everSet, wasSwitched ? std::nullopt : ofFirstHome);
    }

  private:
    static void change(UserDefaults &defaults, const Step &step) {
        defaults.set(keys[std::size_t(step.key)], valueOf(step.key, step.value));
    }

    static void perform(const Step &step, Home &home) {
        Replica &replica = home.replica;
        const bool isAway = fs::exists(replica.away);
        const std::string file = step.value % 8 == 0
            ? std::string(folderContents::markName)
            : folderContents::fileName(keys[std::size_t(step.key)]);
        switch (step.kind) {
        case Step::Kind::change:
            change(*home.defaults, step);
            break;
        case Step::Kind::changeElsewhere: {
            UserDefaults commandLine(home.preferences(), {});
            change(commandLine, step);
            if (step.value % 2 == 0)
                home.defaults->reloadIfChanged();
            break;
        }
        case Step::Kind::remove:
            if (step.key < firstKept)
                home.defaults->remove(keys[std::size_t(step.key)]);
            break;
        case Step::Kind::push:
            home.sync->push();
            break;
        case Step::Kind::scan:
            home.store->synchronize();
            break;
        case Step::Kind::partOfPush:
            home.queue.isHeld = true;
            home.sync->push();
            for (int i = 0; i < step.value % 4; ++i)
                home.queue.step();
            break;
        case Step::Kind::kill:
            home.queue.drop();
            [[fallthrough]];
        case Step::Kind::restart:
            home.start();
            break;
        case Step::Kind::runWithArgument:
            home.start({{"TextScale", 1.9}});
            break;
        case Step::Kind::sampleRun:
            home.start({{"SampleData", true}});
            home.defaults->set("TextScale", 1.7);
            home.defaults->remove("Course.2.Icon");
            home.sync->push();
            home.start();
            break;
        case Step::Kind::folderAway:
            if (!isAway)
                fs::rename(replica.path, replica.away);
            break;
        case Step::Kind::emptyMountPoint:
            if (isAway && !fs::exists(replica.path))
                fs::create_directory(replica.path);
            break;
        case Step::Kind::folderBack:
            if (isAway) {
                fs::remove_all(replica.path);
                fs::rename(replica.away, replica.path);
            }
            break;
        case Step::Kind::switchOff:
        case Step::Kind::switchOn:
            home.defaults->set(preferences::syncSettings, step.kind == Step::Kind::switchOn);
            home.restartSync();
            break;
        case Step::Kind::upload:
            if (!replica.pending.contains(file))
                replica.upload(file);
            break;
        default:
            replica.download(file, step.kind, step.value);
        }
    }

    /// Lets everything be delivered, and compares.
    static std::string
    end(std::array<Home, 2> &homes, const std::set<std::string> &everSet,
        const std::optional<PreferenceValue> &ofFirstHome) {
        for (Home &home : homes) {
            perform({.kind = Step::Kind::folderBack}, home);
            home.start();
            home.defaults->set(preferences::syncSettings, true);
            home.restartSync();
        }
        const auto deliver = [&] {
            for (Home &home : homes) {
                home.replica.downloadAll();
                home.sync->push();
                home.replica.downloadAll();
            }
        };
        for (int round = 0; round < 6; ++round)
            deliver();
        const auto versions = [&] {
            std::size_t count = 0;
            for (const auto &[name, all] : homes[0].replica.server)
                count += all.size();
            return count;
        };
        const std::size_t before = versions();
        deliver();
        if (versions() != before)
            return "they do not come to rest";
        if (homes[0].synced() != homes[1].synced())
            return "they differ";
        if (homes[0].synced() != homes[0].store->all())
            return "the folder differs";
        for (std::size_t key = firstKept; key < keys.size(); ++key) {
            if (everSet.contains(keys[key]) && !homes[0].synced().contains(keys[key]))
                return keys[key] + " was lost";
        }
        if (ofFirstHome && homes[1].synced()[keys.back()] != *ofFirstHome)
            return "the last value is not in effect";
        return {};
    }
};

/// Removes steps for as long as the history still fails.
std::vector<Step>
shortest(std::vector<Step> steps, const std::function<bool(const std::vector<Step> &)> &fails) {
    for (std::size_t size = steps.size() / 2; size > 0; size /= 2) {
        for (std::size_t at = 0; at + size <= steps.size();) {
            std::vector<Step> fewer = steps;
            const auto first = fewer.begin() + std::ptrdiff_t(at);
            fewer.erase(first, first + std::ptrdiff_t(size));
            if (fails(fewer))
                steps = std::move(fewer);
            else
                at += size;
        }
    }
    return steps;
}

TEST_F(Histories, EndWithBothHomesEqualAndNothingLost) {
    constexpr unsigned histories = 100;
    constexpr int length = 100;
    for (unsigned seed = 1; seed <= histories; ++seed) {
        std::mt19937 random(seed);
        const auto draw = [&](int below) { return int(random() % unsigned(below)); };
        // Some histories never switch the sync off, so that the last value is known.
        const bool mayBeSwitched = draw(2) == 0;
        std::vector<Step> steps;
        while (steps.size() < length) {
            Step step{Step::Kind(draw(Step::kinds)), draw(2), draw(int(keys.size())), draw(1000)};
            if (step.key == keyOfFirstHome)
                step.home = 0;
            if (step.kind == Step::Kind::switchOff && !mayBeSwitched)
                continue;
            steps.push_back(step);
        }
        const std::string problem = play(steps);
        if (problem.empty())
            continue;
        steps = shortest(steps, [&](const auto &fewer) { return play(fewer) == problem; });
        FAIL() << "seed " << seed << ": " << problem << "\n" << textOf(steps);
    }
}

} // namespace
} // namespace ellwynd
