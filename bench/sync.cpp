// A thousand synced settings: the first push of one computer, and the first take-over of another,
// with the main window and the settings window open. Reports wall time and the longest time for
// which the main thread did not return to its event loop.
#include "application.h"
#include "base/log.h"
#include "measuredapplication.h"
#include "platform/cloud/foldercontents.h"
#include "preferences/userdefaults.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/settings/settingswindow.h"

#include <QApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fstream>

namespace {

using namespace ellwynd;
namespace fs = std::filesystem;
using MeasuredApplication = bench::MeasuredApplication<QApplication>;

constexpr int settings = 1000;

std::string keyOf(int id) {
    return "Course." + std::to_string(id) + ".PassingScore";
}

/// Runs the program until a condition holds, and reports the longest step.
template<class Condition>
void runUntil(benchmark::State &state, const fs::path &home, Condition condition) {
    ApplicationEnvironment environment{
        .preferencesFile = home / "Preferences.json",
        .data = home,
        .state = home,
        .widgetContainer = home / "widgets",
        .secrets = std::make_shared<test::MemorySecrets>(),
        .notifications = std::make_unique<test::MemoryNotifications>()};
    test::LoneService service;
    Application program(std::move(environment), service);
    program.window().show();
    program.window().settings().open(SettingsWindow::riskThresholds);
    for (int i = 0; i < 8; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    MeasuredApplication::takeLongestStep();
    program.defaults().set(preferences::syncSettings, true);
    const auto begin = std::chrono::steady_clock::now();
    while (!condition(program.defaults()) &&
           std::chrono::steady_clock::now() - begin < std::chrono::seconds(60))
        QApplication::processEvents(QEventLoop::WaitForMoreEvents, 5);
    if (!condition(program.defaults()))
        state.SkipWithError("it did not end");
    // Until what follows is done too.
    for (int i = 0; i < 50; ++i)
        QApplication::processEvents(QEventLoop::AllEvents, 5);
    state.counters["longest_step_ms"] = MeasuredApplication::takeLongestStep();
}

void push(benchmark::State &state) {
    for (auto _ : state) {
        const QTemporaryDir folder;
        const fs::path home = folder.path().toStdString();
        folderContents::create(home / "Ellwynd");
        PreferenceChanges changes{{"CloudStoreFolder", (home / "Ellwynd").string()}};
        for (int id = 0; id < settings; ++id)
            changes.emplace(keyOf(id), 60.5);
        UserDefaults(home / "Preferences.json", {}).update(changes);
        const fs::path last = home / "Ellwynd" / folderContents::fileName(keyOf(settings - 1));
        runUntil(state, home, [&](const UserDefaults &) { return fs::exists(last); });
    }
}

void takeOver(benchmark::State &state) {
    for (auto _ : state) {
        const QTemporaryDir folder;
        const fs::path home = folder.path().toStdString();
        folderContents::create(home / "Ellwynd");
        for (int id = 0; id < settings; ++id)
            std::ofstream(home / "Ellwynd" / folderContents::fileName(keyOf(id)))
                << "{\"value\": 60.5}";
        UserDefaults(home / "Preferences.json", {})
            .set(preferences::cloudStoreFolder, (home / "Ellwynd").string());
        runUntil(state, home, [&](const UserDefaults &defaults) {
            return defaults.object(keyOf(settings - 1)).has_value();
        });
    }
}

} // namespace

BENCHMARK(push)->Unit(benchmark::kMillisecond)->Iterations(1);
BENCHMARK(takeOver)->Unit(benchmark::kMillisecond)->Iterations(1);

int main(int argc, char **argv) {
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    const MeasuredApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
