// A year of roster history: 200 students on 364 days, in one course or five.
#include "base/log.h"
#include "memory/historyfile.h"
#include "memory/movement.h"

#include <QCoreApplication>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <fstream>

namespace {

using namespace ellwynd;
using std::chrono::days;

const Date today = *parseInstant("2026-09-24T12:00:00Z");

Date clockToday() {
    return today;
}

struct Year {
    QTemporaryDir folder;
    std::filesystem::path home = folder.path().toStdString();
    UserDefaults defaults{home / "Preferences.json", {}};
    std::vector<RiskRow> rows;

    explicit Year(std::int64_t courses) {
        constexpr std::int64_t students = 200;
        for (std::int64_t id = 0; id < students / courses; ++id)
            rows.push_back({.id = id, .name = "Student", .level = RiskLevel(id % 3)});
        std::vector<RosterSnapshot> entries;
        for (int day = 364; day > 0; --day) {
            for (std::int64_t course = 1; course <= courses; ++course) {
                for (const RiskRow &row : rows) {
                    entries.push_back(
                        {course, row.id, today - days(day),
                         std::string(levelName(RiskLevel((row.id + day) % 3))), 2});
                }
            }
        }
        std::ofstream(home / "RosterHistory.json") << encodeHistory(visitsOf(entries));
    }
};

void loadYear(benchmark::State &state) {
    Year year(state.range(0));
    for (auto _ : state) {
        const RosterHistory history(year.defaults, year.home, clockToday);
        benchmark::DoNotOptimize(history.visits().data());
    }
}

void recordAndSave(benchmark::State &state) {
    Year year(state.range(0));
    RosterHistory history(year.defaults, year.home, clockToday);
    for (auto _ : state)
        history.record(year.rows, 1, today);
}

/// As when a course is opened: the history has no index yet.
void movementOfCourse(benchmark::State &state) {
    Year year(state.range(0));
    const RosterHistory source(year.defaults, year.home, clockToday);
    RosterHistory history(year.defaults, std::nullopt, clockToday);
    const std::vector<RosterSnapshot> entries = source.entries();
    for (auto _ : state) {
        state.PauseTiming();
        history.fill(entries);
        state.ResumeTiming();
        benchmark::DoNotOptimize(changes(history, year.rows, 1, today).data());
    }
}

} // namespace

BENCHMARK(loadYear)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond);
BENCHMARK(recordAndSave)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond);
// Each iteration fills a history first, which takes far longer.
BENCHMARK(movementOfCourse)->Arg(1)->Arg(5)->Unit(benchmark::kMillisecond)->Iterations(20);

int main(int argc, char **argv) {
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
