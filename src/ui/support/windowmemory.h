// Saves a window's geometry and the widths of its columns.
#pragma once

#include "preferences/userdefaults.h"

#include <QTimer>

class QSplitter;
class QWidget;

namespace ellwynd {

/// Saves a window's geometry and the columns of a splitter in it shortly after they change, so that
/// nothing has to be saved at exit.
class WindowMemory : public QObject {
    Q_OBJECT

  public:
    using Key = PreferenceKey<std::string>;

    WindowMemory(QWidget &window, UserDefaults &defaults, const Key &geometryKey);

    /// Restores the window's geometry, adjusted to the available screens. The window may be hidden.
    /// False when nothing is saved.
    [[nodiscard]] bool restoreGeometry();
    /// Restores the widths of the columns, and saves their changes from now on. False when nothing
    /// is saved.
    [[nodiscard]] bool restoreColumns(QSplitter &columns, const Key &key);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void save();

    QWidget &window;
    UserDefaults &defaults;
    const Key &geometryKey;
    QSplitter *splitter = nullptr;
    const Key *columnsKey = nullptr;
    QTimer saveSoon;
};

} // namespace ellwynd
