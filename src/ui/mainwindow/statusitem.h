// The program's item in the desktop's status area.
#pragma once

#include "preferences/userdefaults.h"

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

#include <memory>

namespace ellwynd {

class Dashboard;

/// Shown while the preference "KeepRunningInBackground" is on, on desktops that have a status area.
/// It says how many students are at risk, and opens the window, refreshes and quits.
class StatusItem : public QObject {
    Q_OBJECT

  public:
    /// The arguments must outlive this object.
    StatusItem(Dashboard &dashboard, UserDefaults &defaults, QObject *parent = nullptr);

    /// Whether the program can be opened with it, so that its window may be closed.
    [[nodiscard]] bool isShown() const { return icon != nullptr; }

  Q_SIGNALS:
    void isShownDidChange();
    void windowRequested();
    void refreshRequested();
    void quitRequested();

  private:
    void update();
    void show();
    void showCount();

    Dashboard &dashboard;
    UserDefaults &defaults;
    /// These are null while it is not shown.
    std::unique_ptr<QMenu> menu;
    QAction *count = nullptr;
    std::unique_ptr<QSystemTrayIcon> icon;
    std::shared_ptr<void> observing;
};

/// "5 at risk in Fall 2026"; while nothing is scored yet, "Not scored yet".
[[nodiscard]] std::string statusItemText(const Dashboard &dashboard);

} // namespace ellwynd
