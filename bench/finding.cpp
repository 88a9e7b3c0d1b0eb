// Finds among 8,000 students while a name is typed; each key has to be answered within one frame.
#include "app/find/findindex.h"

#include <benchmark/benchmark.h>

namespace {

using namespace ellwynd;

constexpr std::int64_t students = 8000;

std::vector<FindEntry> manyStudents() {
    const char *given[] = {"Ada", "José", "Siobhán", "Chloe", "山田", "Maximilian", "Zoë", "Priya"};
    const char *family[] = {"Lovelace",      "Núñez", "O'Brien", "Łukasiewicz",
                            "von Hohenlohe", "Adams", "Ray",     "Quill-Ladd"};
    std::vector<FindEntry> entries;
    for (std::int64_t id = 0; id < students; ++id) {
        const std::string first = given[id % 8];
        const std::string last = family[id / 8 % 8] + std::string(1, char('a' + id % 26));
        entries.push_back(
            {.title = first + " " + last,
             .detail = "CS 101 4021 - Intro to Programming",
             .level = id % 4 == 0 ? std::optional(RiskLevel::watch) : std::nullopt,
             .id = id,
             .courseID = id % 40,
             .otherNames = {last + ", " + first}});
    }
    return entries;
}

void prepareStudents(benchmark::State &state) {
    const std::vector<FindEntry> entries = manyStudents();
    for (auto _ : state)
        benchmark::DoNotOptimize(FindIndex(entries));
}
BENCHMARK(prepareStudents)->Unit(benchmark::kMillisecond);

void find(benchmark::State &state, const char *typed) {
    const FindIndex index(manyStudents());
    for (auto _ : state)
        benchmark::DoNotOptimize(index.find(typed));
}
BENCHMARK_CAPTURE(find, oneLetter, "a")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(find, twoWords, "lo ad")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(find, nobody, "xyzzy")->Unit(benchmark::kMillisecond);

} // namespace
