// The alerts of the shell, over the main window.
#pragma once

#include <QObject>

class QWidget;

namespace ellwynd {

class AppDelegate;
class Updater;

/// Asks before the sample college is entered, and shows how what the teacher asked for ended.
class ShellAlerts : public QObject {
    Q_OBJECT

  public:
    /// @param window owns the alerts; the other arguments must outlive it.
    ShellAlerts(AppDelegate &shell, Updater &updater, QWidget *window);

  public Q_SLOTS:
    /// Enters the sample college after asking, or leaves it.
    void switchSampleMode();

  private:
    void showMessage(const QString &message, const QString &detail);

    AppDelegate &shell;
    QWidget *window;
};

} // namespace ellwynd
