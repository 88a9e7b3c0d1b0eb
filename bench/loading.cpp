// Loads and scores one large course over HTTPS with a latency of 50 ms. Reports wall time relative
// to its lower bound, and the client's CPU time and memory.
#include "app/roster/rosterloader.h"
#include "canvas/client/canvasclient.h"
#include "net/runtoend.h"
#include "servedcanvas.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

using namespace ellwynd;

void loadLargeCourse(benchmark::State &state) {
    const bench::ServedShape shape{.students = 400, .assignments = 60};
    const bench::ServedCanvas canvas(shape);
    const QTemporaryDir folder;
    const UserDefaults defaults(folder.path().toStdString() + "/Preferences.json", {});
    CanvasSession session;
    const auto client = std::make_shared<CanvasClient>(canvas.address(), canvas.token, session);
    const std::vector<Course> courses = runToEnd(client->fetchCourses()).records;

    std::chrono::duration<double> spent{};
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        const ScoredCourse course =
            runToEnd(loadCourse(client, courses.at(0), defaults, systemNow));
        spent += std::chrono::steady_clock::now() - begin;
        if (course.rows.size() != 400 || course.records->submissions.size() != 24'000)
            state.SkipWithError("records were lost");
    }
    const std::chrono::duration<double> bound = shape.bound();
    state.counters["bound_s"] = bound.count();
    state.counters["ratio"] = spent / bound / double(state.iterations());
    state.counters["peak_MB"] = bench::peakResidentMemory() / 1e6;
}

} // namespace

BENCHMARK(loadLargeCourse)
    ->Unit(benchmark::kSecond)
    ->Iterations(1)
    ->MeasureProcessCPUTime()
    ->UseRealTime();

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
