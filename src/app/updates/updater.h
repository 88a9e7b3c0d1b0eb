// The checks for updates. An update is announced; whoever installed the program installs it.
#pragma once

#include "app/updates/updatefeed.h"

#include <QObject>
#include <QTimer>

namespace ellwynd {

/// Checks for updates by itself once a day and whenever the teacher asks, and remembers what it
/// found until the running program is as new. The first check of a day is counted: its request says
/// so, and nothing else.
///
/// A check that is under way when this goes is let go of; the feed has to outlive it.
class Updater : public QObject {
    Q_OBJECT

  public:
    /// Between the checks that nobody asked for.
    static constexpr std::chrono::hours minimumInterval{24};

    /// @param runningBuild of this program; one that is not made of numbers is older than nothing.
    /// @param lookEvery how often the clock is looked at for whether a check is due.
    Updater(
        UserDefaults &defaults, UpdateFeed &feed, std::string runningBuild, Clock now = systemNow,
        std::chrono::milliseconds lookEvery = std::chrono::hours(1));

    /// Forgets an update that is installed by now, makes the start's own check, and goes on by the
    /// clock. Where the feed may not be asked nothing more happens.
    void start();

    /// Whether the teacher can be offered a check at all.
    [[nodiscard]] bool mayCheck() const { return feed.mayCheck(); }
    /// Announced earlier, and newer than the running program.
    [[nodiscard]] std::optional<Update> pendingUpdate() const;

  public Q_SLOTS:
    /// A check that nobody asked for: left out when the feed may not be asked, when the teacher
    /// does not want it, or when the last check was less than the minimum interval ago.
    void checkIfDue();
    /// The teacher's own check. How it ended is always announced.
    void checkForUpdates();

  Q_SIGNALS:
    /// By any check, or by an earlier run of the program.
    void updateDidAppear(const QString &version);
    /// Only after the teacher's own check; follows `updateDidAppear`.
    void checkDidFindUpdate(const QString &version);
    /// What was announced is offered no more.
    void updateDidDisappear();
    /// Only after the teacher's own check.
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
    /// Whether the teacher waits for the check that is under way.
    bool askedFor = false;
};

} // namespace ellwynd
