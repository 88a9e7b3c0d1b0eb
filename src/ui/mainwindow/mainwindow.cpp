#include "ui/mainwindow/mainwindow.h"

#include "app/mainwindowcontroller.h"
#include "platform/session/activation.h"
#include "risk/coursethresholds.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/dashboard/studentlist.h"
#include "ui/details/studentdetails.h"
#include "ui/mainwindow/connectionviews.h"
#include "ui/mainwindow/contextmenus.h"
#include "ui/mainwindow/coursesheets.h"
#include "ui/mainwindow/helpcommands.h"
#include "ui/mainwindow/mainmenus.h"
#include "ui/mainwindow/panesplitter.h"
#include "ui/roster/rosterdesktopactions.h"
#include "ui/roster/rosterpane.h"
#include "ui/settings/settingswindow.h"
#include "ui/sidebar/sidebar.h"
#include "ui/support/alert.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "ui/support/fontpreparation.h"
#include "ui/support/statusnotes.h"
#include "ui/support/windowmemory.h"
#include "ui/write/writecommands.h"
#include "ui/write/writesheet.h"
#include "uikit/convert.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace ellwynd {

namespace {

/// Whether a roster is displayed, loading or failed to load.
bool showsRoster(const RosterView &roster) {
    return roster.state != RosterView::State::nothingSelected &&
        roster.state != RosterView::State::notConnected;
}

} // namespace

MainWindow::MainWindow(
    MainWindowController &controller, UserDefaults &defaults, Stores &stores,
    ConnectionCheck &connection, SyncService &sync, UserNotifications &notifications,
    Appearance &appearance)
    : controller(controller),
      defaults(defaults),
      stores(stores),
      connection(connection),
      sync(sync),
      notifications(notifications),
      appearance(appearance),
      fonts(new FontPreparation(appearance, this)),
      splitter(new PaneSplitter(appearance, defaults, this)),
      sidebar(new Sidebar(controller, defaults, appearance, splitter)),
      middle(new QStackedWidget(splitter)),
      dashboardPane(new DashboardPane(controller.dashboard(), defaults, appearance, middle)),
      details(new StudentDetails(appearance, splitter)),
      desktopActions(new RosterDesktopActions(
          controller.actions(), stores.templates, defaults, [this] { return selectedStudents(); },
          *this)),
      writing(new WriteCommands(defaults, stores, controller.undoStack(), appearance, *this)),
      menus(new MainMenus(*menuBar(), defaults)),
      notes(new StatusNotes(
          *middle, controller.undoStack(), appearance,
          [this] {
              return !writing->isInFront() &&
                  (settingsWindow == nullptr || !settingsWindow->isActiveWindow());
          })),
      sheets(new CourseSheets(controller, defaults, stores, appearance, *this)),
      contextMenus(new ContextMenus(controller, *menus, *desktopActions, *this)),
      connectionViews(
          new ConnectionViews(defaults, connection, controller, appearance, *middle, *this)),
      observing(defaults.observe([this](std::string_view key) {
          if (key == preferences::studentDetailsHidden.name)
              showPane();
          if (key == preferences::studentDetailsHidden.name ||
              key == preferences::rememberContacts.name)
              updateActions();
      })) {
    setWindowTitle(
        defaults.value(preferences::sampleData) ? QStringLiteral("Ellwynd — Sample Data")
                                                : QStringLiteral("Ellwynd"));
    middle->addWidget(dashboardPane);
    setCentralWidget(splitter);
    auto *help = new HelpCommands(*menus, defaults, appearance, *this);
    connect(details, &StudentDetails::helpRequested, help, &HelpCommands::showTopic);
    connectCommands();
    connectViews();
    restoreLayout();
    updateActions();
}

/// The students of the roster, of whom the first selected one is previewed.
PreviewStudents MainWindow::previewStudents() const {
    const SharedList<RiskRow> selected = selectedStudents();
    PreviewStudents students;
    for (const RiskRow &row : controller.roster().rows) {
        if (!selected.empty() && keyOf(row) == keyOf(selected.front()))
            students.selected = students.all.size();
        students.all.push_back(
            {.row = row,
             .courseName = row.courseName,
             .passingScore = courseThresholds(defaults, row.courseID).passingScore});
    }
    return students;
}

RosterPane *MainWindow::roster() {
    if (rosterPane == nullptr) {
        rosterPane = new RosterPane(controller, defaults, appearance, middle);
        middle->addWidget(rosterPane);
        connectRoster();
        showSelection();
    }
    return rosterPane;
}

void MainWindow::updateActions() {
    updateActionsFor(selectedStudents());
}

void MainWindow::updateActionsFor(const SharedList<RiskRow> &selected) {
    const RosterView &roster = controller.roster();
    const bool shown = roster.state == RosterView::State::shown;
    details->setContactsEnabled(stores.contacts.isEnabled());
    menus->update({
        .rosterPane = showsRoster(roster),
        .rosterShown = shown,
        .oneCourse = roster.courseID.has_value(),
        .anyStudents = shown && !roster.rows.empty(),
        .anySelected = !selected.empty(),
        .oneSelected = selected.size() == 1,
        .anyContacted = std::ranges::any_of(
            selected,
            [this](const RiskRow &row) {
                return stores.contacts.lastContact(row.courseID, row.id).has_value();
            }),
        .remembersContacts = stores.contacts.isEnabled(),
        .detailsHidden = !wantsDetails(),
    });
}

void MainWindow::showSelection() {
    const SharedList<RiskRow> selected = rosterPane->table()->selectedRows();
    const bool one = selected.size() == 1;
    details->show(
        selected, one ? controller.studentHistory(selected.front()) : StudentHistory{},
        one ? SelectionSummary{} : selectionSummary(selected, controller.roster()));
    if (middle->currentWidget() == dashboardPane)
        updateActions();
    else
        updateActionsFor(selected);
    if (settingsWindow != nullptr)
        settingsWindow->refreshPreview();
}

bool MainWindow::isNarrow() const {
    constexpr double enough = 1000;
    return width() < appearance.px(enough);
}

bool MainWindow::wantsDetails() const {
    return !defaults.value(preferences::studentDetailsHidden) &&
        (!isNarrow() || detailsInNarrowWindow);
}

void MainWindow::openDetails() {
    detailsInNarrowWindow = true;
    defaults.set(preferences::studentDetailsHidden, false);
    showPane();
    updateActions();
    details->focusContents();
}

void MainWindow::toggleDetails() {
    if (!wantsDetails()) {
        detailsInNarrowWindow = true;
        defaults.set(preferences::studentDetailsHidden, false);
    } else if (isNarrow()) {
        detailsInNarrowWindow = false;
    } else {
        defaults.set(preferences::studentDetailsHidden, true);
    }
    showPane();
    updateActions();
}

/// Shows the dashboard, or a roster with its details, which need a student and some width.
void MainWindow::showPane() {
    const RosterView &roster = controller.roster();
    if (roster.state == RosterView::State::notConnected)
        connectionViews->showPage();
    else if (roster.state == RosterView::State::nothingSelected)
        middle->setCurrentWidget(dashboardPane);
    else
        middle->setCurrentWidget(this->roster());
    const bool shown = showsRoster(roster) && this->roster()->table()->hasRows() && wantsDetails();
    if (!shown && details->isAncestorOf(QApplication::focusWidget()))
        this->roster()->table()->setFocus();
    const bool wasShown = !details->isHidden();
    details->setVisible(shown);
    if (wasShown != shown)
        splitter->applyWidths();
}

void MainWindow::closeEvent(QCloseEvent *event) {
    QMainWindow::closeEvent(event);
    // A session that ends is not held up.
    if (!keepsRunning || qApp->isSavingSession())
        return;
    event->ignore();
    for (auto *other : findChildren<QDialog *>()) {
        if (other->isVisible() && !other->close())
            return;
    }
    hide();
}

void MainWindow::showEvent(QShowEvent *event) {
    QMainWindow::showEvent(event);
    // So that opening a course does not wait for its fonts and views.
    constexpr std::chrono::milliseconds afterFirstPaint{100};
    if (rosterPane == nullptr)
        QTimer::singleShot(afterFirstPaint, this, [this] {
            fonts->start();
            static_cast<void>(roster());
        });
}

void MainWindow::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (!isNarrow())
        detailsInNarrowWindow = false;
    showPane();
    updateActions();
}

SharedList<RiskRow> MainWindow::selectedStudents() const {
    if (middle->currentWidget() == dashboardPane)
        return dashboardPane->students()->selectedRows();
    return rosterPane != nullptr ? rosterPane->table()->selectedRows() : SharedList<RiskRow>();
}

void MainWindow::showStudent(const StudentKey &student) {
    controller.select(CourseSelection{student.courseID});
    roster()->table()->selectStudents({student});
    roster()->table()->setFocus();
}

void MainWindow::showContextMenu(const QPoint &position) {
    contextMenus->showStudents(selectedStudents(), position);
}

/// One alert at a time: a later error replaces it.
void MainWindow::showError(const CanvasError &error) {
    delete errorAlert;
    QMessageBox *box = plainAlert(
        this, QStringLiteral("Ellwynd"),
        qstring(error.errorDescription()) + QStringLiteral("\n\n") +
            qstring(error.recoverySuggestion()));
    if (error.kind() == CanvasError::Kind::unauthorized) {
        auto *open =
            box->addButton(QStringLiteral("Open Connection Settings…"), QMessageBox::ActionRole);
        connect(open, &QPushButton::clicked, this, [this] {
            settings().open(SettingsWindow::connection);
        });
    }
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    errorAlert = box;
    box->open();
}

void MainWindow::activate(const QString &activationToken) {
    // Qt's Wayland plugin reads the token from the environment and removes it; no other does.
    if (!activationToken.isEmpty() &&
        QApplication::platformName().startsWith(QStringLiteral("wayland")))
        setActivationToken(activationToken);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::showUpdate(const QString &newVersion) {
    if (std::exchange(shownUpdate, newVersion) == newVersion)
        return;
    sidebar->showUpdate(newVersion);
    if (!newVersion.isEmpty())
        announce(*this, QStringLiteral("Ellwynd %1 is available.").arg(newVersion));
}

// ---- Other windows -----------------------------------------------------------------------------

MissingWorkSheet *MainWindow::openMissingWork() {
    return sheets->openMissingWork();
}

ThresholdsSheet *MainWindow::openThresholds() {
    return sheets->openThresholds();
}

WriteSheet *MainWindow::openWriteSheet(const SharedList<RiskRow> &students) {
    return writing->open(students);
}

void MainWindow::showWelcomeIfDue() {
    connectionViews->showWelcomeIfDue();
}

void MainWindow::setUpdateChecksAvailable(bool available) {
    menus->checkForUpdates->setVisible(available);
    updateChecksAvailable = available;
    if (settingsWindow != nullptr)
        settingsWindow->setUpdateChecksAvailable(available);
}

SettingsWindow &MainWindow::settings() {
    if (settingsWindow == nullptr) {
        settingsWindow = new SettingsWindow(
            defaults, stores, controller.undoStack(), connection, sync, notifications,
            [this] { return previewStudents(); }, controller.loadedRosters(), appearance, this);
        connect(
            &controller, &MainWindowController::rescoringDidEnd, settingsWindow,
            &SettingsWindow::showThresholdEffect);
        settingsWindow->setUpdateChecksAvailable(updateChecksAvailable);
        connect(
            settingsWindow, &SettingsWindow::connectionDidChange, &controller,
            &MainWindowController::connectionDidChange);
        connect(
            settingsWindow, &SettingsWindow::leaveSampleRequested, this,
            &MainWindow::sampleSwitchRequested);
    }
    return *settingsWindow;
}

// ---- Geometry ----------------------------------------------------------------------------------

void MainWindow::restoreLayout() {
    auto *memory = new WindowMemory(*this, defaults, preferences::mainWindowGeometry);
    if (!memory->restoreGeometry())
        resize(1280, 800);
    sidebar->setMinimumWidth(140);
    details->setMinimumWidth(200);
    middle->setMinimumWidth(360);
    splitter->restoreWidths();
    showPane();
}

} // namespace ellwynd
