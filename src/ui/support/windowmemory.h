// The place of a window, and the widths of its columns.
#pragma once

#include "preferences/userdefaults.h"

#include <QTimer>

class QSplitter;
class QWidget;

namespace ellwynd {

/// Remembers a window's place and size, and the columns of a splitter in it, soon after they
/// change, so that nothing is left to be done when the program ends.
class WindowMemory : public QObject {
    Q_OBJECT

  public:
    using Key = PreferenceKey<std::string>;

    WindowMemory(QWidget &window, UserDefaults &defaults, const Key &geometryKey);

    /// Gives the window its last place and size, as far as the screens allow it; whether it is
    /// shown does not matter. False when nothing is remembered.
    [[nodiscard]] bool restoreGeometry();
    /// Gives the columns their widths, and remembers them from now on; false when there were none.
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
