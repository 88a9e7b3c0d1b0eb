// Scores the cached courses again after a change of thresholds.
#pragma once

#include "app/roster/rostercache.h"
#include "base/elapsedtime.h"
#include "preferences/userdefaults.h"

#include <QObject>
#include <QTimer>

#include <vector>

namespace ellwynd {

/// Works in slices that let the window paint in between. Nothing is fetched. Lives on the main
/// thread.
class CacheRescoring : public QObject {
    Q_OBJECT

  public:
    /// The references must outlive this object.
    CacheRescoring(RosterCache &rosterCache, const UserDefaults &defaults, ElapsedClock elapsed);

    /// Starts again from the first course. A small cache is done when this returns.
    /// @param begun when the caller began its own work, which takes time from the first slice.
    void start(ElapsedTime begun);
    /// Leaves the rest of the courses as they are.
    void stop();

  Q_SIGNALS:
    /// A course was scored again with other thresholds, and stored in the cache.
    void courseDidRescore(const ellwynd::SharedCourse &course);
    void rescoringDidEnd();

  private:
    void runSlice(ElapsedTime begun);
    void end();

    RosterCache &rosterCache;
    const UserDefaults &defaults;
    ElapsedClock elapsed;
    /// The courses still to be scored, by id.
    std::vector<std::int64_t> queue;
    QTimer timer;
};

} // namespace ellwynd
