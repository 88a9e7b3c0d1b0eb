#include "app/updates/updater.h"

#include "base/calendar.h"
#include "base/log.h"
#include "net/task.h"

#include <QPointer>

#include <fmt/format.h>

namespace ellwynd {

namespace {

constexpr Log logger{"settings"};

} // namespace

Updater::Updater(
    UserDefaults &defaults, UpdateFeed &feed, std::string runningBuild, Clock now,
    std::chrono::milliseconds lookEvery)
    : defaults(defaults), feed(feed), runningBuild(std::move(runningBuild)), now(now) {
    timer.setTimerType(Qt::VeryCoarseTimer);
    timer.setInterval(lookEvery);
    connect(&timer, &QTimer::timeout, this, [this] {
        // The interval is measured by the wall clock, which also counts time asleep.
        if (!lookedRecently())
            checkIfDue();
    });
}

void Updater::start() {
    const auto pending = pendingUpdate();
    if (!pending)
        forgetPending();
    // Without a feed, an update that another copy of the program found could not be withdrawn.
    if (!feed.mayCheck())
        return;
    if (pending)
        Q_EMIT updateDidAppear(QString::fromStdString(pending->version));
    checkIfDue();
    timer.start();
}

std::optional<Update> Updater::pendingUpdate() const {
    const Update update{
        .build = defaults.value(preferences::pendingUpdateBuild),
        .version = defaults.value(preferences::pendingUpdateVersion)};
    return isNewerBuild(update.build, runningBuild) ? std::optional{update} : std::nullopt;
}

bool Updater::lookedRecently() const {
    const auto last = feed.lastCheck();
    // A last check in the future means that the clock was wrong at the time.
    return last && *last <= now() && now() - *last < minimumInterval;
}

void Updater::checkIfDue() {
    if (checking || !feed.mayCheck() || !feed.checksAutomatically())
        return;
    if (lookedRecently()) {
        logger.info("Skipping the update check; Sparkle looked recently");
        return;
    }
    beginCheck();
}

void Updater::checkForUpdates() {
    if (!feed.mayCheck())
        return;
    askedFor = true;
    if (!checking)
        beginCheck();
}

void Updater::beginCheck() {
    logger.info("Checking for updates");
    checking = true;
    detach(check(), "The update check");
}

QCoro::Task<> Updater::check() {
    const QPointer<Updater> self(this);
    // The day that the request is counted for, even if midnight passes before it ends.
    const std::string today = calendar::dayKey(now());
    const bool firstOfDay = defaults.value(preferences::lastCountedCheckDay) != today;
    std::optional<Update> newest;
    std::optional<std::string> failure;
    try {
        auto task = feed.newest(firstOfDay);
        newest = co_await task;
    } catch (const std::exception &error) {
        failure = error.what();
    }
    if (!self)
        co_return;
    checking = false;
    const bool asked = std::exchange(askedFor, false);
    if (failure) {
        logger.error(fmt::format("The update check failed: {}", *failure));
        if (asked)
            Q_EMIT checkDidFail(QString::fromStdString(*failure));
        co_return;
    }
    defaults.set(preferences::lastCountedCheckDay, today);
    if (newest && isNewerBuild(newest->build, runningBuild)) {
        announce(*newest);
        if (asked)
            Q_EMIT checkDidFindUpdate(QString::fromStdString(newest->version));
        co_return;
    }
    if (pendingUpdate()) {
        forgetPending();
        Q_EMIT updateDidDisappear();
    }
    if (asked)
        Q_EMIT checkDidFindNothing();
}

void Updater::announce(const Update &update) {
    logger.info(fmt::format("Update {} found; showing the sidebar banner", update.version));
    defaults.set(preferences::pendingUpdateBuild, update.build);
    defaults.set(preferences::pendingUpdateVersion, update.version);
    Q_EMIT updateDidAppear(QString::fromStdString(update.version));
}

void Updater::forgetPending() {
    for (const auto &key : {preferences::pendingUpdateBuild, preferences::pendingUpdateVersion}) {
        if (defaults.object(key.name))
            defaults.remove(key.name);
    }
}

} // namespace ellwynd
