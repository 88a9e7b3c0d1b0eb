// What the shell asks and says, as alerts over the main window.
#pragma once

#include <QObject>

class QWidget;

namespace ellwynd {

class AppDelegate;
class Updater;

/// Asks before the sample college is entered, and tells how what the teacher asked for ended.
class ShellAlerts : public QObject {
    Q_OBJECT

  public:
    /// What is handed over outlives the alerts, which belong to the window.
    ShellAlerts(AppDelegate &shell, Updater &updater, QWidget *window);

  public Q_SLOTS:
    /// Enters the sample college after asking, or leaves it.
    void switchSampleMode();

  private:
    void tell(const QString &message, const QString &detail);

    AppDelegate &shell;
    QWidget *window;
};

} // namespace ellwynd
