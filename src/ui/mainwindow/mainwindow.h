// The main window.
#pragma once

#include "ui/settings/templateeditor.h"

#include <QMainWindow>

class QSplitter;
class QStackedWidget;

namespace ellwynd {

class Appearance;
class CanvasError;
class CourseSheets;
class DashboardPane;
class ConnectionCheck;
class MainMenus;
class MainWindowController;
class MissingWorkSheet;
class RosterDesktopActions;
class RosterPane;
class SettingsWindow;
class Sidebar;
class StatusNotes;
class StudentDetails;
class SyncService;
class ThresholdsSheet;
class UserDefaults;
class UserNotifications;
struct Stores;

/// Sidebar, roster and student details side by side, with the menus. It decides nothing: commands
/// go to the controller, and what the controller announces is shown.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// The arguments must outlive the window.
    MainWindow(
        MainWindowController &controller, UserDefaults &defaults, Stores &stores,
        ConnectionCheck &connection, SyncService &sync, UserNotifications &notifications,
        Appearance &appearance);

    [[nodiscard]] RosterPane *roster() const { return rosterPane; }

  public Q_SLOTS:
    /// Opens "Missing Work by Assignment…"; null when no course is shown.
    ellwynd::MissingWorkSheet *openMissingWork();
    /// Opens the course's thresholds; null when no course is shown.
    ellwynd::ThresholdsSheet *openThresholds();

    /// Shows the first-run steps where they are due.
    void showWelcomeIfDue();
    /// Whether the program can look for updates, so that its commands and settings are shown.
    void offerUpdates(bool offered);

    /// The settings window, made on first use.
    ellwynd::SettingsWindow &settings();

    /// Comes to the front.
    /// @param activationToken the desktop's activation token; may be empty.
    void activate(const QString &activationToken);
    /// Shows that an update can be installed; an empty version takes the banner away.
    void showUpdate(const QString &version);

  Q_SIGNALS:
    /// The teacher wants to enter or to leave the sample college.
    void sampleSwitchRequested();
    void updateCheckRequested();

  protected:
    bool event(QEvent *event) override;

  private:
    void connectCommands();
    [[nodiscard]] std::optional<PreviewStudent> previewStudent() const;
    void connectViews();
    void updateActions();
    void showPane();
    void restorePlace();
    void showContextMenu(const QPoint &position);
    void showError(const CanvasError &error);

    MainWindowController &controller;
    UserDefaults &defaults;
    Stores &stores;
    ConnectionCheck &connection;
    SyncService &sync;
    UserNotifications &notifications;
    Appearance &appearance;
    QSplitter *splitter;
    Sidebar *sidebar;
    QStackedWidget *middle;
    DashboardPane *dashboardPane;
    RosterPane *rosterPane;
    StudentDetails *details;
    RosterDesktopActions *desktopActions;
    MainMenus *menus;
    StatusNotes *notes;
    CourseSheets *sheets;
    SettingsWindow *settingsWindow = nullptr;
    bool updatesOffered = false;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
