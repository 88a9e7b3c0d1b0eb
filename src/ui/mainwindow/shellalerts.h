// The main window's alerts about restarts and updates.
#pragma once

#include <QObject>

class QWidget;

namespace ellwynd {

class AppDelegate;
class Updater;

/// Asks before entering the sample college, and reports failed restarts and the results of update
/// checks that the teacher started.
class ShellAlerts : public QObject {
    Q_OBJECT

  public:
    /// @param window owns this object and the alerts; the other arguments must outlive it.
    ShellAlerts(AppDelegate &shell, Updater &updater, QWidget *window);

  public Q_SLOTS:
    /// Enters the sample college after confirmation, or leaves it.
    void switchSampleMode();

  private:
    void showMessage(const QString &message, const QString &detail);

    AppDelegate &shell;
    QWidget *window;
};

} // namespace ellwynd
