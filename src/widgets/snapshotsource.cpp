#include "widgets/snapshotsource.h"

#include "outputs/snapshot/snapshotfiles.h"
#include "platform/session/widgettimelines.h"

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

/// The folder itself, or the nearest one above it that is there.
fs::path nearestFolder(fs::path folder) {
    std::error_code error;
    while (!fs::is_directory(folder, error) && folder.has_relative_path())
        folder = folder.parent_path();
    return folder;
}

} // namespace

SnapshotSource::SnapshotSource(fs::path container) : container(std::move(container)) {
    connect(&watcher, &QFileSystemWatcher::directoryChanged, this, &SnapshotSource::check);
    reloads = widgetTimelines::observe([this] { check(); });
    check();
}

void SnapshotSource::check() {
    // Watched first: what changes between the two is announced.
    watch();
    const files::Stamp now = files::stamp(container / widgetFiles::versionTwo);
    if (now == seen)
        return;
    seen = now;
    auto read = readWidgetSnapshot(container);
    if (read == current)
        return;
    current = std::move(read);
    Q_EMIT snapshotDidChange();
}

void SnapshotSource::watch() {
    // Files are replaced rather than written to, which their folder notices. A folder's own going
    // and coming is noticed by the one above it. Watches follow a folder that is moved away, so
    // they are set anew each time; what happens meanwhile is seen by who looks afterwards.
    const QStringList before = watcher.directories();
    if (!before.isEmpty())
        watcher.removePaths(before);
    fs::path nearest;
    while (nearest != nearestFolder(container)) {
        nearest = nearestFolder(container);
        watcher.addPaths(
            {QString::fromStdString(nearest.string()),
             QString::fromStdString(nearest.parent_path().string())});
    }
}

} // namespace ellwynd
