// Checks for updates. Updates are only announced, not installed.
#pragma once

#include "app/updates/updatefeed.h"

#include <QObject>
#include <QTimer>

namespace ellwynd {

/// Checks for updates once a day and when the teacher requests it, and saves the update found until
/// the running program is as new or the feed no longer offers it. Until a check has succeeded on a
/// day, the requests of that day are marked, so that the feed's server can count them.
///
/// Destroying this object discards the result of a running check. The feed must outlive the check.
/// Used on the main thread.
class Updater : public QObject {
    Q_OBJECT

  public:
    /// The time between automatic checks.
    static constexpr std::chrono::hours minimumInterval{24};

    /// @param runningBuild this program's build. If it is not made of numbers, no update is newer.
    /// @param lookEvery how often to test whether a check is due.
    Updater(
        UserDefaults &defaults, UpdateFeed &feed, std::string runningBuild, Clock now = systemNow,
        std::chrono::milliseconds lookEvery = std::chrono::hours(1));

    /// Forgets a saved update that is not newer than the running program. Then, if the feed can be
    /// checked, announces a saved update, checks if that is due, and starts the automatic checks.
    void start();

    /// Whether updates can be checked for at all.
    [[nodiscard]] bool mayCheck() const { return feed.mayCheck(); }
    /// The saved update; absent unless it is newer than the running program.
    [[nodiscard]] std::optional<Update> pendingUpdate() const;

  public Q_SLOTS:
    /// Starts an automatic check unless one is running, the feed cannot be checked, the teacher has
    /// switched automatic checks off, or the last check was less than the minimum interval ago.
    void checkIfDue();
    /// Starts a check requested by the teacher, or joins a running one, and announces its result.
    /// Does nothing if the feed cannot be checked.
    void checkForUpdates();

  Q_SIGNALS:
    /// An update was found, by any check or in an earlier run of the program.
    void updateDidAppear(const QString &version);
    /// The check requested by the teacher found an update; follows `updateDidAppear`.
    void checkDidFindUpdate(const QString &version);
    /// The announced update is no longer offered.
    void updateDidDisappear();
    // The other results of a check requested by the teacher.
    void checkDidFindNothing();
    void checkDidFail(const QString &message);

  private:
    [[nodiscard]] bool lookedRecently() const;
    void beginCheck();
    QCoro::Task<> check();
    void announce(const Update &update);
    void forgetPending();

    UserDefaults &defaults;
    UpdateFeed &feed;
    std::string runningBuild;
    Clock now;
    QTimer timer;
    bool checking = false;
    /// Whether the teacher requested the running check.
    bool askedFor = false;
};

} // namespace ellwynd
