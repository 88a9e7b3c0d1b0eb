// A scoring pass over HTTPS with a latency of 50 ms: ten courses of 120 students and 40
// assignments, or, after the number of passes, others: pass_bench 1 40 200 60. Reports wall time
// relative to its lower bound, and the client's CPU time and memory.
#include "app/mainwindowcontroller.h"
#include "base/heap.h"
#include "base/log.h"
#include "canvas/tokenstore.h"
#include "servedcanvas.h"
#include "support/memorysecrets.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdlib>
#include <vector>

namespace {

using namespace ellwynd;
using std::chrono::steady_clock;

bench::ServedShape shape{.courses = 10};

void scoreAllCourses(benchmark::State &state) {
    const bench::ServedCanvas canvas(shape);
    const QTemporaryDir folder;
    const std::filesystem::path home = folder.path().toStdString();
    UserDefaults defaults(home / "Preferences.json", {});
    test::MemorySecrets secrets;
    secrets.secrets[{TokenStore::service, TokenStore::accountOf(canvas.address())}] = canvas.token;
    defaults.set(preferences::canvasBaseURL, canvas.address());
    AsyncTokenStore tokens(secrets.shared());
    CanvasSession session;
    const Connector connector(defaults, tokens, session);
    Stores stores(defaults, home / "data");
    TrendSync trends(defaults);
    WidgetSnapshotWriter widgets(home / "widgets", [] {});
    MainWindowController controller(defaults, connector, stores, trends, {.widgets = widgets});

    QEventLoop loop;
    bool complete = false;
    steady_clock::time_point begin;
    QObject::connect(&controller.dashboard(), &Dashboard::dashboardModelDidChange, &loop, [&] {
        if (begin == steady_clock::time_point{} && controller.dashboard().progress().running)
            begin = steady_clock::now();
    });
    QObject::connect(&controller, &MainWindowController::passDidEnd, &loop, [&](bool whole) {
        complete = whole;
        loop.quit();
    });
    std::vector<double> walls;
    for (auto _ : state) {
        begin = {};
        controller.refresh();
        loop.exec();
        const std::chrono::duration<double> wall = steady_clock::now() - begin;
        state.SetIterationTime(wall.count());
        walls.push_back(wall.count());
        const DashboardTerm *term = controller.dashboard().shownTerm();
        if (!complete || term == nullptr || std::int64_t(term->cards.size()) != shape.courses ||
            term->cards.back().total != shape.students)
            state.SkipWithError("the pass was incomplete");
    }
    std::ranges::sort(walls);
    const std::chrono::duration<double> bound = shape.bound();
    state.counters["median_s"] = walls[walls.size() / 2];
    state.counters["bound_s"] = bound.count();
    state.counters["ratio"] = walls[walls.size() / 2] / bound.count();
    state.counters["peak_MB"] = bench::peakResidentMemory() / 1e6;
}

} // namespace

int main(int argc, char **argv) {
    returnLargeBlocks();
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    // The number of passes of one process.
    const int passes = argc > 1 ? std::atoi(argv[1]) : 5;
    if (argc > 4) {
        shape.courses = std::atoi(argv[2]);
        shape.students = std::atoi(argv[3]);
        shape.assignments = std::atoi(argv[4]);
    }
    benchmark::RegisterBenchmark("scoreAllCourses", scoreAllCourses)
        ->Unit(benchmark::kSecond)
        ->Iterations(passes)
        ->MeasureProcessCPUTime()
        ->UseManualTime();
    benchmark::RunSpecifiedBenchmarks();
}
