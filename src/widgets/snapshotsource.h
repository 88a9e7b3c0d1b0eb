// The widget file as it is now.
#pragma once

#include "base/files.h"
#include "outputs/snapshot/widgetsnapshot.h"

#include <QFileSystemWatcher>
#include <QObject>

namespace ellwynd {

/// Holds what the program last wrote for its widgets, and reads it again when the file is replaced,
/// when it or its folder goes and comes back, and when the program signals it.
class SnapshotSource : public QObject {
    Q_OBJECT

  public:
    /// @param container the folder shared with the program; it need not exist yet.
    explicit SnapshotSource(std::filesystem::path container);

    /// Absent when there is nothing to show.
    [[nodiscard]] const std::optional<WidgetSnapshotFile> &snapshot() const { return current; }

    /// Reads the file again if it is not the one last read.
    void check();

  Q_SIGNALS:
    void snapshotDidChange();

  private:
    void watch();

    std::filesystem::path container;
    std::optional<WidgetSnapshotFile> current;
    files::Stamp seen;
    QFileSystemWatcher watcher;
    std::shared_ptr<void> reloads;
};

} // namespace ellwynd
