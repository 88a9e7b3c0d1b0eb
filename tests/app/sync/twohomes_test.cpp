// Two computers of one teacher and a cloud service that keeps a folder of theirs in step, badly.
#include "app/sync/settingssync.h"
#include "platform/cloud/foldercontents.h"
#include "platform/cloud/syncedfolder.h"
#include "support/cloudservice.h"
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
        deliver,
        deliverTorn,
        deliverOld,
    };
    static constexpr int kinds = int(Kind::deliverOld) + 1;

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

struct Home {
    fs::path root;
    test::Replica replica;
    test::DirectQueue queue;
    std::optional<UserDefaults> defaults;
    std::optional<SyncedFolder> store;
    std::optional<SettingsSync> sync;

    Home(fs::path folder, test::CloudServer &server)
        : root(std::move(folder)), replica(root / "cloud", root / "away", server) {
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
        store.emplace(replica.path(), queue, defaults->value(preferences::syncedFolderMark));
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
        test::CloudServer server;
        std::array<Home, 2> homes{Home(root / "a", server), Home(root / "b", server)};
        folderContents::create(homes[0].replica.path());
        homes[0].replica.synchronize();
        homes[1].replica.synchronize();
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
        return end(homes, server, everSet, wasSwitched ? std::nullopt : ofFirstHome);
    }

  private:
    static void change(UserDefaults &defaults, const Step &step) {
        defaults.set(keys[std::size_t(step.key)], valueOf(step.key, step.value));
    }

    static void perform(const Step &step, Home &home) {
        test::Replica &replica = home.replica;
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
            replica.setAway(true);
            break;
        case Step::Kind::emptyMountPoint:
            replica.createMountPoint();
            break;
        case Step::Kind::folderBack:
            replica.setAway(false);
            break;
        case Step::Kind::switchOff:
        case Step::Kind::switchOn:
            home.defaults->set(preferences::syncSettings, step.kind == Step::Kind::switchOn);
            home.restartSync();
            break;
        case Step::Kind::upload:
            replica.upload(file);
            break;
        case Step::Kind::deliver:
            replica.deliver(file, test::Delivery::latest);
            break;
        case Step::Kind::deliverTorn:
            replica.deliver(file, test::Delivery::torn, step.value);
            break;
        case Step::Kind::deliverOld:
            replica.deliver(file, test::Delivery::old, step.value);
            break;
        }
    }

    /// Lets everything be delivered, and compares.
    static std::string
    end(std::array<Home, 2> &homes, const test::CloudServer &server,
        const std::set<std::string> &everSet, const std::optional<PreferenceValue> &ofFirstHome) {
        for (Home &home : homes) {
            perform({.kind = Step::Kind::folderBack}, home);
            home.start();
            home.defaults->set(preferences::syncSettings, true);
            home.restartSync();
        }
        const auto deliver = [&] {
            for (Home &home : homes) {
                home.replica.synchronize();
                home.sync->push();
                home.replica.synchronize();
            }
        };
        for (int round = 0; round < 6; ++round)
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
