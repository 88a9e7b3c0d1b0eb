// Plays terms of a simulated teacher. Usage: ellwynd-simulation [COUNT] [--seed FIRST]
// Prints the shortest history of each term that ends with a finding, and how many terms it played
// each second. The exit status is 1 if there was a finding, or if the terms leave memory allocated.
#include "base/log.h"
#include "simulation.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QThreadPool>
#include <QTimer>

#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <malloc.h>

namespace {

using namespace ellwynd;
using namespace ellwynd::simulation;

/// The finding of a history; empty if there is none.
std::string play(const std::vector<Event> &events) {
    // In memory where there is such a folder: every change is written through to the disk.
    const QTemporaryDir folder(
        std::filesystem::exists("/dev/shm") ? QStringLiteral("/dev/shm/ellwynd-XXXXXX")
                                            : QString());
    try {
        Simulation simulation(folder.path().toStdString());
        simulation.play(events);
    } catch (const std::exception &finding) {
        return finding.what();
    }
    return {};
}

/// Leaves out events for as long as the history ends with the same finding.
std::vector<Event> shortest(std::vector<Event> events, const std::string &finding) {
    for (std::size_t size = events.size() / 2; size > 0; size /= 2) {
        for (std::size_t at = 0; at + size <= events.size();) {
            std::vector<Event> fewer = events;
            const auto first = fewer.begin() + std::ptrdiff_t(at);
            fewer.erase(first, first + std::ptrdiff_t(size));
            if (play(fewer) == finding)
                events = std::move(fewer);
            else
                at += size;
        }
    }
    return events;
}

/// Measures what each term leaves in memory.
class Growth {
  public:
    /// Call after each term.
    void measure() {
        if (++terms == warmUp)
            before = allocated();
    }
    /// In bytes a term, after the first ones, which fill caches; 0 while there are too few.
    [[nodiscard]] double perTerm() const {
        constexpr int enough = 2 * warmUp;
        return terms < enough ? 0 : (double(allocated()) - double(before)) / (terms - warmUp);
    }

  private:
    static constexpr int warmUp = 20;

    /// A large value is released 100 ms after its last owner, on a thread of the pool. What it
    /// holds may be large as well and then has a delay of its own.
    static void waitForReleases() {
        using namespace std::chrono_literals;
        for (int depth = 0; depth < 3; ++depth) {
            QEventLoop loop;
            QTimer::singleShot(200ms, &loop, &QEventLoop::quit);
            loop.exec();
            QThreadPool::globalInstance()->waitForDone();
        }
    }

    static std::size_t allocated() {
        waitForReleases();
        const struct mallinfo2 info = ::mallinfo2();
        return info.uordblks + info.hblkhd;
    }

    int terms = 0;
    std::size_t before = 0;
};

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    // A write to a full disk fails.
    std::signal(SIGXFSZ, SIG_IGN);
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    QCommandLineParser parser;
    parser.addPositionalArgument(
        QStringLiteral("COUNT"), QStringLiteral("How many terms to play, 200 by default."));
    const QCommandLineOption seedOption(
        QStringLiteral("seed"), QStringLiteral("Begins with the term of this seed."),
        QStringLiteral("SEED"));
    parser.addOption(seedOption);
    parser.addHelpOption();
    parser.process(application);
    const bool hasSeed = parser.isSet(seedOption);
    const QStringList counts = parser.positionalArguments();
    bool isSeed = true;
    bool isCount = true;
    const unsigned first = hasSeed ? parser.value(seedOption).toUInt(&isSeed) : 1;
    const unsigned count = counts.isEmpty() ? (hasSeed ? 1 : 200) : counts.front().toUInt(&isCount);
    if (!isSeed || !isCount || counts.size() > 1)
        parser.showHelp(2);
    const auto begin = std::chrono::steady_clock::now();
    unsigned findings = 0;
    Growth memory;
    unsigned seed = first;
    for (; seed < first + count && findings < 3; ++seed) {
        const std::vector<Event> events = randomTerm(seed);
        const std::string finding = play(events);
        memory.measure();
        if (finding.empty())
            continue;
        ++findings;
        fmt::print("seed {}: {}\n", seed, finding);
        std::fflush(stdout);
        fmt::print("{}\n", textOf(shortest(events, finding)));
        std::fflush(stdout);
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    const unsigned played = seed - first;
    fmt::print("{} terms, {:.1f} a second\n", played, played / time.count());
    constexpr double maxGrowth = 1024;
    const double growth = memory.perTerm();
    if (findings == 0 && growth > maxGrowth) {
        fmt::print("The memory grows by {:.0f} bytes a term.\n", growth);
        ++findings;
    }
    return findings > 0 ? 1 : 0;
}
