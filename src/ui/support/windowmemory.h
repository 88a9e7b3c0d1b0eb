// Saves a window's geometry.
#pragma once

#include "preferences/userdefaults.h"

#include <QTimer>

class QWidget;

namespace ellwynd {

/// Saves a window's geometry shortly after it changes, so that nothing has to be saved at exit.
class WindowMemory : public QObject {
    Q_OBJECT

  public:
    using Key = PreferenceKey<std::string>;

    WindowMemory(QWidget &window, UserDefaults &defaults, const Key &geometryKey);

    /// Restores the window's geometry, adjusted to the available screens. The window may be hidden.
    /// False when nothing is saved.
    [[nodiscard]] bool restoreGeometry();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void save();

    QWidget &window;
    UserDefaults &defaults;
    const Key &geometryKey;
    QTimer saveSoon;
};

} // namespace ellwynd
