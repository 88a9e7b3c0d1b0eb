#include "computer.h"

#include "platform/cloud/foldercontents.h"

#include <QCoreApplication>

#include <sys/resource.h>

namespace ellwynd::simulation {

namespace {

/// 2026-01-20T08:00:00Z.
constexpr Date firstDay{std::chrono::microseconds(1'768'896'000'000'000)};

constexpr ElapsedTime firstElapsed = std::chrono::hours(1);

Date wallTime = firstDay;
ElapsedTime machineTime = firstElapsed;

} // namespace

Date now() {
    return wallTime;
}

ElapsedTime elapsed() {
    return machineTime;
}

void resetClocks() {
    wallTime = firstDay;
    machineTime = firstElapsed;
}

void passTime(ElapsedTime time) {
    wallTime += std::chrono::duration_cast<Date::duration>(time);
    machineTime += time;
}

void setClock(ElapsedTime by) {
    wallTime += std::chrono::duration_cast<Date::duration>(by);
}

Program::Program(
    const std::filesystem::path &home, const std::filesystem::path &folder,
    const PreferenceMap &arguments, const Schools &schools, Network &network,
    const Keyring &keyring)
    : defaults(home / "Preferences.json", arguments),
      network(network),
      connector(defaults, tokens, session, schools, network, keyring, now),
      stores(defaults, home / "data", now, work.starter()),
      store(folder, queue, defaults.value(preferences::syncedFolderMark), now),
      sync(defaults, store, queue, home / "Synced.json", std::chrono::hours(1)),
      notices(defaults, notifications, [this] { return isActive; }),
      widgets(home / "widgets", [] {}) {
    // As with a thread, nothing is done before the event loop runs.
    queue.isHeld = true;
    controller.emplace(
        defaults, connector, stores, trends, PassSinks{.widgets = widgets, .notices = &notices},
        now, elapsed);
    sync.start();
    trends.setStore(&store);
    trends.start();
    controller->refresh();
}

Program::~Program() {
    // The tasks must end before what they refer to.
    controller.reset();
    network.close();
    QCoreApplication::sendPostedEvents();
    queue.drop();
    trends.setStore(nullptr);
}

Computer::Computer(std::filesystem::path home, test::CloudServer &server, const Schools &schools)
    : home(std::move(home)),
      replica(this->home / "cloud", this->home / "away", server),
      schools(schools) {}

static void limitFiles(bool full) {
    rlimit limit{};
    ::getrlimit(RLIMIT_FSIZE, &limit);
    limit.rlim_cur = full ? 0 : limit.rlim_max;
    ::setrlimit(RLIMIT_FSIZE, &limit);
}

DiskOf::DiskOf(const Computer &computer) : isFull(computer.diskIsFull) {
    if (isFull)
        limitFiles(true);
}

DiskOf::~DiskOf() {
    if (isFull)
        limitFiles(false);
}

void Computer::start(const PreferenceMap &arguments) {
    program.reset();
    program.emplace(home, replica.path(), arguments, schools, network, keyring);
}

} // namespace ellwynd::simulation
