// The main window.
#pragma once

#include "app/courses/courseselection.h"
#include "ui/settings/templateeditor.h"

#include <QMainWindow>
#include <QMessageBox>
#include <QPointer>

class QStackedWidget;

namespace ellwynd {

class Appearance;
class CanvasError;
class ConnectionViews;
class ContextMenus;
class CourseSheets;
class DashboardPane;
class ConnectionCheck;
class FontPreparation;
class MainMenus;
class MainWindowController;
class MissingWorkSheet;
class PaneSplitter;
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
class WriteCommands;
class WriteSheet;
struct Stores;

/// Sidebar, roster and student details side by side, with the menus. It contains no logic: commands
/// go to the controller, and the controller's signals update the views.
class MainWindow : public QMainWindow {
    Q_OBJECT

  public:
    /// The arguments must outlive the window.
    MainWindow(
        MainWindowController &controller, UserDefaults &defaults, Stores &stores,
        ConnectionCheck &connection, SyncService &sync, UserNotifications &notifications,
        Appearance &appearance);

    /// Made on first use, or when the window has been shown for a moment.
    [[nodiscard]] RosterPane *roster();

  public Q_SLOTS:
    /// Opens "Missing Work by Assignment…"; null when no course is displayed.
    ellwynd::MissingWorkSheet *openMissingWork();
    /// Opens the course's thresholds; null when no course is displayed.
    ellwynd::ThresholdsSheet *openThresholds();

    /// Opens the Write sheet for students of one or several courses; null without students.
    ellwynd::WriteSheet *openWriteSheet(const ellwynd::SharedList<ellwynd::RiskRow> &students);

    /// Shows the welcome window when it is due.
    void showWelcomeIfDue();
    /// Whether closing the window only hides it, with its other windows.
    void setKeepsRunning(bool keeps) { keepsRunning = keeps; }
    /// Whether this build checks for updates, so that the command and the setting are shown.
    void setUpdateChecksAvailable(bool available);

    /// The settings window, created on first use.
    ellwynd::SettingsWindow &settings();

    /// Shows the window in front of all others.
    /// @param activationToken XDG activation token; may be empty.
    void activate(const QString &activationToken);
    /// Shows the banner of an available update; an empty version hides it.
    void showUpdate(const QString &version);
    /// Shows an alert, in place of the last one.
    void showError(const CanvasError &error);

  Q_SIGNALS:
    /// The teacher asked to enter or leave the sample college.
    void sampleSwitchRequested();
    void updateCheckRequested();
    void quitRequested();

  protected:
    void closeEvent(QCloseEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void connectCommands();
    void fillSortMenu();
    [[nodiscard]] PreviewStudents previewStudents() const;
    void connectViews();
    void connectRoster();
    void connectDetails();
    void updateActions();
    void updateActionsFor(const SharedList<RiskRow> &selected);
    void showPane();
    void showSelection();
    /// Shows the details, even in a narrow window, and moves the focus to them.
    void openDetails();
    void toggleDetails();
    /// Whether the window is too narrow for the details unless they are asked for.
    [[nodiscard]] bool isNarrow() const;
    [[nodiscard]] bool wantsDetails() const;
    void restoreLayout();
    /// The students that commands apply to: those selected in the roster, or on the dashboard the
    /// current one.
    [[nodiscard]] SharedList<RiskRow> selectedStudents() const;
    void showContextMenu(const QPoint &position);
    void showStudent(const StudentKey &student);

    MainWindowController &controller;
    UserDefaults &defaults;
    Stores &stores;
    ConnectionCheck &connection;
    SyncService &sync;
    UserNotifications &notifications;
    Appearance &appearance;
    FontPreparation *fonts;
    PaneSplitter *splitter;
    Sidebar *sidebar;
    QStackedWidget *middle;
    DashboardPane *dashboardPane;
    /// Null until it is needed.
    RosterPane *rosterPane = nullptr;
    StudentDetails *details;
    RosterDesktopActions *desktopActions;
    WriteCommands *writing;
    MainMenus *menus;
    StatusNotes *notes;
    CourseSheets *sheets;
    ContextMenus *contextMenus;
    ConnectionViews *connectionViews;
    SettingsWindow *settingsWindow = nullptr;
    bool updateChecksAvailable = false;
    /// The version of the update that is offered; empty if there is none.
    QString shownUpdate;
    bool keepsRunning = false;
    /// The teacher asked for the details in a narrow window.
    bool detailsInNarrowWindow = false;
    /// The alert of the latest error; null after it was closed.
    QPointer<QMessageBox> errorAlert;
    std::shared_ptr<void> observing;
};

} // namespace ellwynd
