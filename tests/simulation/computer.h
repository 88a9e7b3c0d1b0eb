// One computer of a simulated teacher.
#pragma once

#include "app/mainwindowcontroller.h"
#include "app/sync/settingssync.h"
#include "network.h"
#include "platform/cloud/syncedfolder.h"
#include "support/cloudservice.h"
#include "support/directqueue.h"
#include "support/latework.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"

namespace ellwynd::simulation {

/// The clocks of all computers.
Date now();
ElapsedTime elapsed();
/// Each simulation begins at the same time.
void resetClocks();
/// Time passes, asleep or awake.
void passTime(ElapsedTime time);
/// Somebody sets the clock.
void setClock(ElapsedTime by);

/// The program on this computer while it runs. Without windows.
struct Program {
    Program(
        const std::filesystem::path &home, const std::filesystem::path &folder,
        const PreferenceMap &arguments, const Schools &schools, Network &network,
        const Keyring &keyring);
    ~Program();

    UserDefaults defaults;
    bool isSample = defaults.value(preferences::sampleData);
    bool isActive = false;
    test::MemorySecrets secrets;
    AsyncTokenStore tokens{secrets.shared()};
    CanvasSession session;
    Network &network;
    SimulatedConnector connector;
    /// Reads and saves the history.
    test::LateWork work;
    Stores stores;
    TrendSync trends{defaults};
    test::DirectQueue queue;
    SyncedFolder store;
    SettingsSync sync;
    test::MemoryNotifications notifications;
    MovementNotifier notices;
    WidgetSnapshotWriter widgets;
    std::optional<MainWindowController> controller;
};

/// The files of a computer, and its program.
struct Computer {
    Computer(std::filesystem::path home, test::CloudServer &server, const Schools &schools);

    /// Starts the program, or starts it again. What was not answered is never answered.
    void start(const PreferenceMap &arguments = {});

    std::filesystem::path home;
    test::Replica replica;
    const Schools &schools;
    Network network;
    Keyring keyring;
    bool diskIsFull = false;
    std::optional<Program> program;
};

/// While it lives, no file grows if the computer's disk is full.
class DiskOf {
  public:
    explicit DiskOf(const Computer &computer);
    ~DiskOf();
    DiskOf(const DiskOf &) = delete;
    DiskOf &operator=(const DiskOf &) = delete;

  private:
    bool isFull;
};

} // namespace ellwynd::simulation
