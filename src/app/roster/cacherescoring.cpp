#include "app/roster/cacherescoring.h"

namespace ellwynd {

namespace {

/// The longest time for which a slice holds the event loop, one course more at most.
constexpr std::chrono::milliseconds sliceLimit{4};

} // namespace

CacheRescoring::CacheRescoring(
    RosterCache &rosterCache, const UserDefaults &defaults, ElapsedClock elapsed)
    : rosterCache(rosterCache), defaults(defaults), elapsed(elapsed) {
    timer.setInterval(0);
    connect(&timer, &QTimer::timeout, this, [this] {
        // What follows the end is a step of its own.
        if (queue.empty())
            end();
        else
            runSlice(this->elapsed());
    });
}

void CacheRescoring::start(ElapsedTime begun) {
    queue.clear();
    for (const auto &[id, course] : rosterCache.entries)
        queue.push_back(id);
    runSlice(begun);
    if (queue.empty())
        end();
    else
        timer.start();
}

void CacheRescoring::stop() {
    queue.clear();
    timer.stop();
}

void CacheRescoring::runSlice(ElapsedTime begun) {
    while (!queue.empty() && elapsed() - begun < sliceLimit) {
        const SharedCourse course = rosterCache.find(queue.back());
        queue.pop_back();
        if (!course)
            continue;
        const SharedCourse current = withCurrentThresholds(course, defaults);
        if (current == course)
            continue;
        rosterCache.store(current);
        Q_EMIT courseDidRescore(current);
    }
}

void CacheRescoring::end() {
    timer.stop();
    Q_EMIT rescoringDidEnd();
}

} // namespace ellwynd
