#include "app/roster/cacherescoring.h"

#include "base/elapsedtime.h"

namespace ellwynd {

namespace {

/// The longest time for which a slice holds the event loop, one course more at most.
constexpr std::chrono::milliseconds sliceLimit{8};

} // namespace

CacheRescoring::CacheRescoring(RosterCache &rosterCache, const UserDefaults &defaults)
    : rosterCache(rosterCache), defaults(defaults) {
    timer.setInterval(0);
    connect(&timer, &QTimer::timeout, this, &CacheRescoring::runSlice);
}

void CacheRescoring::start() {
    queue.clear();
    for (const auto &[id, course] : rosterCache.entries)
        queue.push_back(id);
    timer.start();
    runSlice();
}

void CacheRescoring::stop() {
    queue.clear();
    timer.stop();
}

void CacheRescoring::runSlice() {
    const ElapsedTime begin = elapsedNow();
    while (!queue.empty() && elapsedNow() - begin < sliceLimit) {
        if (const SharedCourse course = rosterCache.find(queue.back()))
            rosterCache.store(withCurrentThresholds(course, defaults));
        queue.pop_back();
    }
    if (!queue.empty())
        return;
    timer.stop();
    Q_EMIT rescoringDidEnd();
}

} // namespace ellwynd
