#include "widgets/snapshotsource.h"

#include "outputs/snapshot/snapshotfiles.h"
#include "platform/session/widgettimelines.h"

namespace ellwynd {

namespace {

namespace fs = std::filesystem;

/// The folder, or its nearest existing parent.
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
    // Watch before reading, so that a change in between is noticed.
    watch();
    const files::Stamp now = files::stamp(container / widgetFiles::versionTwo);
    if (now == seen)
        return;
    std::optional<WidgetSnapshotFile> read;
    try {
        read = readWidgetSnapshot(container);
    } catch (const FileUnavailable &) {
        // The last snapshot is shown until a later check can read the file.
        return;
    }
    seen = now;
    if (read == current)
        return;
    current = std::move(read);
    Q_EMIT snapshotDidChange();
}

void SnapshotSource::watch() {
    // The file is replaced rather than written to, which a watch of its folder reports. A watch of
    // the parent reports that the folder is created or removed. Watches follow a folder that is
    // moved, so they are set again each time; the loop catches changes made meanwhile.
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
