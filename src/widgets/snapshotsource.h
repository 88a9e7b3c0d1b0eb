// The current content of the widget file.
#pragma once

#include "base/files.h"
#include "outputs/snapshot/widgetsnapshot.h"

#include <QFileSystemWatcher>
#include <QObject>

namespace ellwynd {

/// Reads the widget file, and reads it again when it is replaced, when it or its folder is removed
/// or created, and when the program signals a change.
class SnapshotSource : public QObject {
    Q_OBJECT

  public:
    /// @param container the folder shared with the program; it need not exist yet.
    explicit SnapshotSource(std::filesystem::path container);

    /// The last snapshot read; absent when there is none.
    [[nodiscard]] const std::optional<WidgetSnapshotFile> &snapshot() const { return current; }

    /// Reads the file again if it has changed.
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
