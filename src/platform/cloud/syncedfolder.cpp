#include "platform/cloud/syncedfolder.h"

#include "base/log.h"
#include "base/observerlist.h"
#include "platform/cloud/foldercontents.h"

#include <QFileSystemWatcher>
#include <QTimer>

#include <atomic>

namespace ellwynd {

namespace {

constexpr Log logger{"sync"};
/// Sync services replace files in several steps, so a scan waits until the changes have settled.
constexpr auto settleDelay = std::chrono::milliseconds(200);

/// What one piece of work in the background found.
struct Outcome {
    /// Null if the folder could not be scanned.
    std::shared_ptr<const folderContents::Scan> scan;
    std::string problem;
    std::vector<std::string> notWritten;
};

/// The keys that differ, those removed included.
std::vector<std::string> changedKeys(const CloudContents &before, const CloudContents &now) {
    std::vector<std::string> keys;
    for (const auto &[key, value] : now.values) {
        const auto old = before.values.find(key);
        if (old == before.values.end() || old->second != value)
            keys.push_back(key);
    }
    for (const auto &[key, value] : before.values) {
        if (!now.values.contains(key) && !now.unreadable.contains(key))
            keys.push_back(key);
    }
    return keys;
}

/// The contents after this process's changes, as far as they were written.
CloudContents
withChanges(CloudContents contents, const CloudContents &written, const PreferenceChanges &own) {
    for (const auto &[key, value] : own) {
        const auto there = written.values.find(key);
        if (value && there != written.values.end() && there->second == *value)
            contents.values.insert_or_assign(key, *value);
        else if (!value && there == written.values.end())
            contents.values.erase(key);
    }
    return contents;
}

} // namespace

struct SyncedFolder::State : std::enable_shared_from_this<State> {
    std::filesystem::path folder;
    WorkQueue &queue;
    std::string knownMark;
    Clock now;

    /// What the last scan that succeeded found; null before the first.
    std::shared_ptr<const folderContents::Scan> last;
    /// Whether the last scan succeeded.
    bool isAvailable = false;
    std::string problem;
    std::optional<Date> lastScan;
    /// Whether a scan was asked for that has not begun. Cleared in the background.
    std::shared_ptr<std::atomic<bool>> scanIsQueued = std::make_shared<std::atomic<bool>>(false);
    ObserverList<const CloudChange &> observers;
    ObserverList<> scanObservers;
    std::unique_ptr<QFileSystemWatcher> watcher;
    QTimer settleTimer;

    State(std::filesystem::path folder, WorkQueue &queue, std::string knownMark, Clock now)
        : folder(std::move(folder)), queue(queue), knownMark(std::move(knownMark)), now(now) {}

    /// Adds work to the queue, which scans afterwards.
    void run(std::function<void(Outcome &)> before, PreferenceChanges own, bool isWrite) {
        auto outcome = std::make_shared<Outcome>();
        auto scan = [outcome, before = std::move(before), folder = folder, mark = knownMark] {
            try {
                before(*outcome);
            } catch (const FolderError &error) {
                outcome->problem = error.what();
            }
            try {
                outcome->scan =
                    std::make_shared<folderContents::Scan>(folderContents::scan(folder, mark));
            } catch (const FolderError &error) {
                outcome->problem = error.what();
            }
        };
        auto report = [weak = weak_from_this(), outcome, own = std::move(own), isWrite] {
            if (const auto alive = weak.lock())
                alive->scanned(*outcome, own, isWrite);
        };
        queue.run(std::move(scan), std::move(report));
    }

    void scanned(const Outcome &outcome, const PreferenceChanges &own, bool isWrite) {
        if (!outcome.problem.empty() && problem != outcome.problem)
            logger.error(outcome.problem);
        problem = outcome.problem;
        isAvailable = outcome.scan != nullptr;
        if (!outcome.notWritten.empty())
            observers.notify(
                {.reason = CloudChange::Reason::quotaViolation, .keys = outcome.notWritten});
        if (isAvailable) {
            lastScan = now();
            watchAgain();
            observers.notify(takeOver(outcome.scan, own, isWrite));
        }
        scanObservers.notify();
    }

    /// Makes a scan the last one, and returns what is new in it.
    CloudChange takeOver(
        std::shared_ptr<const folderContents::Scan> scan, const PreferenceChanges &own,
        bool isWrite) {
        const auto before = std::exchange(last, std::move(scan));
        const CloudContents &found = last->contents;
        if (!found.mark.empty())
            knownMark = found.mark;
        CloudChange change{.followsWrite = isWrite};
        // A folder gets its mark with the first write.
        const bool isSameStore = before &&
            (before->contents.mark == found.mark || (isWrite && before->contents.mark.empty()));
        if (isSameStore) {
            change.keys = changedKeys(withChanges(before->contents, found, own), found);
        } else {
            change.reason = CloudChange::Reason::initialSync;
            for (const auto &[key, value] : found.values)
                change.keys.push_back(key);
        }
        return change;
    }

    /// A folder that was away is watched as soon as it is there.
    void watchAgain() const {
        if (watcher && watcher->directories().isEmpty())
            watcher->addPath(QString::fromStdString(folder.string()));
    }
};

SyncedFolder::SyncedFolder(
    std::filesystem::path folder, WorkQueue &queue, std::string knownMark, Clock now)
    : state(std::make_shared<State>(std::move(folder), queue, std::move(knownMark), now)) {
    state->settleTimer.setSingleShot(true);
    state->settleTimer.setInterval(settleDelay);
    QObject::connect(
        &state->settleTimer, &QTimer::timeout, &state->settleTimer, [this] { synchronize(); });
}

SyncedFolder::~SyncedFolder() {
    // Work in the queue may hold the state for a moment longer.
    state->settleTimer.stop();
    state->watcher.reset();
}

void SyncedFolder::watch() {
    state->watcher = std::make_unique<QFileSystemWatcher>();
    QObject::connect(
        state->watcher.get(), &QFileSystemWatcher::directoryChanged, &state->settleTimer,
        qOverload<>(&QTimer::start));
}

const CloudContents *SyncedFolder::contents() const {
    return state->last ? &state->last->contents : nullptr;
}

void SyncedFolder::update(PreferenceChanges changes) {
    if (!state->isAvailable)
        return;
    // What is left alone is decided by what the caller knew.
    auto write = [folder = state->folder, last = state->last, changes](Outcome &outcome) {
        outcome.notWritten = folderContents::update(folder, *last, changes);
    };
    state->run(std::move(write), std::move(changes), true);
}

void SyncedFolder::synchronize() {
    if (state->scanIsQueued->exchange(true))
        return;
    state->run([queued = state->scanIsQueued](Outcome &) { *queued = false; }, {}, false);
}

std::shared_ptr<void> SyncedFolder::observe(Observer observer) {
    return state->observers.add(std::move(observer));
}

const std::string &SyncedFolder::problem() const {
    return state->problem;
}

std::optional<Date> SyncedFolder::lastScan() const {
    return state->lastScan;
}

std::shared_ptr<void> SyncedFolder::observeScans(std::function<void()> observer) {
    return state->scanObservers.add(std::move(observer));
}

} // namespace ellwynd
