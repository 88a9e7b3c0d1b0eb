#include "ui/mainwindow/mainwindow.h"

#include "app/mainwindowcontroller.h"
#include "generated/version.h"
#include "platform/session/activation.h"
#include "risk/coursethresholds.h"
#include "ui/about/aboutwindow.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/details/studentdetails.h"
#include "ui/help/helpwindow.h"
#include "ui/mainwindow/mainmenus.h"
#include "ui/roster/rosterdesktopactions.h"
#include "ui/roster/rosterpane.h"
#include "ui/settings/settingswindow.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "ui/sidebar/sidebar.h"
#include "ui/support/alert.h"
#include "ui/support/announce.h"
#include "ui/support/appearance.h"
#include "ui/support/windowmemory.h"
#include "ui/welcome/welcomewindow.h"
#include "uikit/convert.h"

#include <QAction>
#include <QDesktopServices>
#include <QEvent>
#include <QGuiApplication>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QPushButton>
#include <QSplitter>
#include <QStackedWidget>
#include <QStatusBar>
#include <QUrl>

#include <algorithm>

namespace ellwynd {

namespace {

enum Pane { sidebarPane, middlePane, detailsPane };

/// Sidebar, roster and details at first: the outer two grow with the text, up to a share of the
/// window.
QList<int> paneWidths(int window, const Appearance &appearance) {
    const int left = std::min(appearance.px(224), window * 24 / 100);
    const int right = std::min(appearance.px(256), window / 4);
    return {left, window - left - right, right};
}

/// Whether a roster is there, comes, or failed to: neither the dashboard nor signed out.
bool showsRoster(const RosterView &roster) {
    return roster.state != RosterView::State::nothingSelected &&
        roster.state != RosterView::State::notConnected;
}

} // namespace

MainWindow::MainWindow(
    MainWindowController &driver, UserDefaults &store, Stores &memory, ConnectionCheck &check,
    SyncService &service, UserNotifications &system, Appearance &look)
    : controller(driver),
      defaults(store),
      stores(memory),
      connection(check),
      sync(service),
      notifications(system),
      appearance(look),
      splitter(new QSplitter(this)),
      sidebar(new Sidebar(driver, store, look, splitter)),
      middle(new QStackedWidget(splitter)),
      dashboardPane(new DashboardPane(driver.dashboard(), store, look)),
      rosterPane(new RosterPane(driver, store, look)),
      details(new StudentDetails(look, splitter)),
      outlets(new RosterOutlets(
          driver.actions(), memory.templates,
          [this] { return rosterPane->table()->selectedRows(); }, *this)),
      menus(new MainMenus(*menuBar(), store)),
      observing(store.observe([this](std::string_view key) {
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
    middle->addWidget(rosterPane);
    splitter->setChildrenCollapsible(false);
    splitter->setHandleWidth(1);
    splitter->setStretchFactor(middlePane, 1);
    setCentralWidget(splitter);
    statusBar()->setSizeGripEnabled(false);
    statusBar()->hide();
    connectCommands();
    connectViews();
    restorePlace();
    updateActions();
}

// ---- Commands ----------------------------------------------------------------------------------

void MainWindow::connectCommands() {
    const auto on = [this](const QAction *action, auto &&command) {
        connect(action, &QAction::triggered, this, std::forward<decltype(command)>(command));
    };
    on(menus->refreshAll, [this] { controller.refresh(); });
    on(menus->refreshRoster, [this] { controller.refreshRoster(); });
    on(menus->exportCSV, [this] { outlets->exportRoster(ExportFormat::csv); });
    on(menus->exportMarkdown, [this] { outlets->exportRoster(ExportFormat::markdown); });
    on(menus->sampleMode, &MainWindow::sampleSwitchRequested);
    on(menus->settings, [this] { settings().open(SettingsWindow::general); });
    on(menus->quit, &QWidget::close);
    on(menus->findStudent, [this] { rosterPane->focusFilter(); });

    on(menus->showDashboard, [this] {
        controller.select(DashboardSelection{});
        dashboardPane->focusCards();
    });
    on(menus->hideDetails, [this] {
        const bool hidden = defaults.value(preferences::studentDetailsHidden);
        defaults.set(preferences::studentDetailsHidden, !hidden);
    });
    on(menus->zoomIn, [this] { appearance.zoom(1); });
    on(menus->zoomOut, [this] { appearance.zoom(-1); });
    on(menus->actualSize, [this] { appearance.zoom(0); });

    on(menus->missingWork, &MainWindow::openMissingWork);
    on(menus->thresholds, &MainWindow::openThresholds);
    on(menus->courseIcon, &MainWindow::openIconSheet);
    on(menus->copySetup, &MainWindow::openCopySetup);
    on(menus->openCourse, [this] {
        if (const auto id = controller.roster().courseID)
            controller.actions().openCourse(*id);
    });
    connect(menus->copyMessage, &QMenu::aboutToShow, this, [this] {
        outlets->fillCopyMenu(menus->copyMessage);
    });
    on(menus->markContacted,
       [this] { controller.actions().markContacted(rosterPane->table()->selectedRows()); });
    on(menus->openGrades, [this] {
        const RiskRow row = rosterPane->table()->selectedRows().front();
        controller.actions().openGrades(row.courseID, row.id);
    });

    on(menus->help, [this] { help().showTopic("getting-started"); });
    on(menus->keyboardShortcuts, [this] { help().showTopic("keyboard"); });
    on(menus->whatsNew, [this] { help().showReleaseNotes(); });
    on(menus->sendFeedback, &MainWindow::sendFeedback);
    on(menus->checkForUpdates, &MainWindow::updateCheckRequested);
    on(menus->about, [this] {
        auto *box = new AboutWindow(appearance, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->show();
    });
}

/// The selected student, else the first of the roster.
std::optional<PreviewStudent> MainWindow::previewStudent() const {
    const std::vector<RiskRow> selected = rosterPane->table()->selectedRows();
    const RosterView &roster = controller.roster();
    if (selected.empty() && roster.rows.empty())
        return std::nullopt;
    const RiskRow &row = selected.empty() ? roster.rows.front() : selected.front();
    return PreviewStudent{
        .row = row,
        .courseName = row.courseName,
        .passingScore = courseThresholds(defaults, row.courseID).passingScore};
}

void MainWindow::connectViews() {
    RosterTable *table = rosterPane->table();
    connect(rosterPane, &RosterPane::thresholdsRequested, this, &MainWindow::openThresholds);
    connect(rosterPane, &RosterPane::missingWorkRequested, this, &MainWindow::openMissingWork);
    connect(
        rosterPane, &RosterPane::refreshRequested, &controller,
        &MainWindowController::refreshRoster);
    connect(rosterPane, &RosterPane::contextMenuRequested, this, &MainWindow::showContextMenu);
    connect(rosterPane, &RosterPane::connectionRequested, this, [this] {
        settings().open(SettingsWindow::connection);
    });
    connect(table, &RosterTable::selectionDidChange, this, [this, table] {
        const std::vector<RiskRow> selected = table->selectedRows();
        details->show(
            selected,
            selected.size() == 1 ? controller.studentHistory(selected.front()) : StudentHistory{});
        updateActions();
        if (settingsWindow != nullptr)
            settingsWindow->refreshPreview();
    });
    const auto grades = [this](const RiskRow &row) {
        controller.actions().openGrades(row.courseID, row.id);
    };
    const auto assignment = [this](const RiskRow &row, std::int64_t id) {
        controller.actions().openAssignment(row.courseID, id);
    };
    connect(table, &RosterTable::gradesRequested, this, grades);
    connect(table, &RosterTable::assignmentRequested, this, assignment);
    connect(details, &StudentDetails::messagesRequested, outlets, &RosterOutlets::fillCopyMenu);
    connect(outlets, &RosterOutlets::noted, this, [this](const QString &note) { tell(note); });
    connect(
        details, &StudentDetails::contactsRequested, &controller.actions(),
        &RosterActions::markContacted);
    connect(details, &StudentDetails::gradesRequested, this, grades);
    connect(details, &StudentDetails::assignmentRequested, this, assignment);

    connect(dashboardPane, &DashboardPane::courseRequested, this, [this](std::int64_t id) {
        controller.select(CourseSelection{id});
        rosterPane->table()->setFocus();
    });
    connect(
        dashboardPane, &DashboardPane::refreshRequested, &controller,
        &MainWindowController::refresh);
    connect(&controller, &MainWindowController::rosterDidChange, this, [this] {
        showPane();
        updateActions();
    });
    connect(&controller, &MainWindowController::errorDidOccur, this, &MainWindow::showError);
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString &message) {
        statusBar()->setVisible(!message.isEmpty());
        if (!message.isEmpty())
            return;
        delete std::exchange(undoSetup, nullptr);
        setAccessibleDescription({});
    });
}

void MainWindow::updateActions() {
    const RosterView &roster = controller.roster();
    const bool shown = roster.state == RosterView::State::shown;
    const std::size_t selected = rosterPane->table()->selectedRows().size();
    details->offerContacts(stores.contacts.isEnabled());
    menus->update({
        .rosterPane = showsRoster(roster),
        .rosterShown = shown,
        .oneCourse = roster.courseID.has_value(),
        .anyStudents = shown && !roster.rows.empty(),
        .anySelected = selected > 0,
        .oneSelected = selected == 1,
        .remembersContacts = stores.contacts.isEnabled(),
        .detailsHidden = defaults.value(preferences::studentDetailsHidden),
    });
}

/// The dashboard, or a roster with its details; what was chosen for the details waits meanwhile.
void MainWindow::showPane() {
    const RosterView &roster = controller.roster();
    const bool dashboard = roster.state == RosterView::State::nothingSelected;
    middle->setCurrentWidget(dashboard ? static_cast<QWidget *>(dashboardPane) : rosterPane);
    details->setVisible(showsRoster(roster) && !defaults.value(preferences::studentDetailsHidden));
}

void MainWindow::showContextMenu(const QPoint &position) {
    if (rosterPane->table()->selectedRows().empty())
        return;
    QMenu menu(this);
    QMenu *messages = menu.addMenu(menus->copyMessage->title());
    outlets->fillCopyMenu(messages);
    menu.addAction(menus->markContacted);
    menu.addSeparator();
    menu.addAction(menus->openGrades);
    menu.addAction(menus->openCourse);
    menu.exec(position);
}

/// No command has a status tip, and an empty one would wipe a note.
bool MainWindow::event(QEvent *event) {
    return event->type() == QEvent::StatusTip || QMainWindow::event(event);
}

/// Says something in passing, to screen readers too.
void MainWindow::tell(const QString &note, int milliseconds) {
    delete std::exchange(undoSetup, nullptr);
    statusBar()->show();
    statusBar()->showMessage(note, milliseconds);
    announce(*this, note);
}

void MainWindow::showError(const CanvasError &error) {
    QMessageBox *box = plainAlert(
        this, QStringLiteral("Ellwynd"),
        qstring(error.errorDescription()) + QStringLiteral("\n\n") +
            qstring(error.recoverySuggestion()));
    if (error.which() == CanvasError::Case::unauthorized) {
        auto *open =
            box->addButton(QStringLiteral("Open Connection Settings…"), QMessageBox::ActionRole);
        connect(open, &QPushButton::clicked, this, [this] {
            settings().open(SettingsWindow::connection);
        });
    }
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    box->open();
}

void MainWindow::activate(const QString &activationToken) {
    // Where a token is needed to come to the front, the window system's plugin takes it from there.
    if (!activationToken.isEmpty() &&
        QGuiApplication::platformName().startsWith(QStringLiteral("wayland")))
        setActivationToken(activationToken);
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::showUpdate(const QString &newVersion) {
    sidebar->showUpdate(newVersion);
    if (!newVersion.isEmpty())
        announce(*this, QStringLiteral("Ellwynd %1 is available.").arg(newVersion));
}

// ---- Sheets ------------------------------------------------------------------------------------

MissingWorkSheet *MainWindow::openMissingWork() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return nullptr;
    auto *sheet =
        new MissingWorkSheet(roster.missedWork, std::int64_t(roster.rows.size()), appearance, this);
    connect(
        sheet, &MissingWorkSheet::studentsChosen, this,
        [this, courseID = *roster.courseID](const std::vector<std::int64_t> &ids) {
            std::set<StudentKey> students;
            for (const std::int64_t id : ids)
                students.insert({courseID, id});
            rosterPane->clearFilter();
            rosterPane->table()->selectStudents(students);
            rosterPane->table()->setFocus();
        });
    sheet->show();
    return sheet;
}

void MainWindow::openIconSheet() {
    const RosterView &roster = controller.roster();
    if (roster.courseID) {
        (new IconSheet(*roster.courseID, roster.title, defaults, appearance, this))->show();
    }
}

/// What was copied can be taken back from the note that says so.
void MainWindow::openCopySetup() {
    const auto courseID = controller.roster().courseID;
    if (!courseID)
        return;
    auto *sheet =
        new CopySetupSheet(*courseID, controller.courses().known(), defaults, appearance, this);
    connect(
        sheet, &CopySetupSheet::setupCopied, this,
        [this](const QString &note, const PreferenceChanges &replaced) {
            tell(note, 2 * noteMilliseconds);
            undoSetup = new QPushButton(QStringLiteral("Undo"), this);
            undoSetup->setAccessibleName(QStringLiteral("Undo: ") + note);
            connect(undoSetup, &QPushButton::clicked, this, [this, replaced] {
                defaults.update(replaced);
                statusBar()->clearMessage();
            });
            statusBar()->addPermanentWidget(undoSetup);
        });
    sheet->show();
}

ThresholdsSheet *MainWindow::openThresholds() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return nullptr;
    auto *sheet = new ThresholdsSheet(*roster.courseID, roster.title, defaults, appearance, this);
    sheet->show();
    return sheet;
}

// ---- Other windows -----------------------------------------------------------------------------

void MainWindow::showWelcomeIfDue() {
    const bool connected = controller.roster().state != RosterView::State::notConnected;
    if (!WelcomeWindow::isDue(defaults, connected))
        return;
    auto *welcome = new WelcomeWindow(defaults, connection, appearance, this);
    connect(welcome, &WelcomeWindow::sampleRequested, this, &MainWindow::sampleSwitchRequested);
    connect(
        welcome, &WelcomeWindow::connectionDidChange, &controller, &MainWindowController::refresh);
    connect(welcome, &WelcomeWindow::announced, welcome, [welcome](const QString &text) {
        announce(*welcome, text);
    });
    welcome->show();
}

void MainWindow::offerUpdates(bool offered) {
    menus->checkForUpdates->setVisible(offered);
    updatesOffered = offered;
    if (settingsWindow != nullptr)
        settingsWindow->offerUpdates(offered);
}

/// The keys in the help are those of the menus.
HelpWindow &MainWindow::help() {
    if (helpWindow == nullptr)
        helpWindow = new HelpWindow(defaults, appearance, menus->shortcuts(), this);
    return *helpWindow;
}

void MainWindow::sendFeedback() {
    const QUrl mail(QStringLiteral("mailto:") + qstring(feedbackAddress));
    if (QDesktopServices::openUrl(mail))
        return;
    QMessageBox *box = plainAlert(
        this, QStringLiteral("Couldn’t open your email app"),
        QStringLiteral("Write to ") + qstring(feedbackAddress) + QStringLiteral("."));
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    box->open();
}

SettingsWindow &MainWindow::settings() {
    if (settingsWindow == nullptr) {
        settingsWindow = new SettingsWindow(
            defaults, stores, connection, sync, notifications, [this] { return previewStudent(); },
            appearance, this);
        settingsWindow->offerUpdates(updatesOffered);
        connect(
            settingsWindow, &SettingsWindow::connectionDidChange, &controller,
            &MainWindowController::refresh);
    }
    return *settingsWindow;
}

// ---- Geometry ----------------------------------------------------------------------------------

void MainWindow::restorePlace() {
    auto *memory = new WindowMemory(*this, defaults, preferences::mainWindowGeometry);
    if (!memory->restoreGeometry())
        resize(1280, 800);
    if (!memory->restoreColumns(*splitter, preferences::mainWindowColumns))
        splitter->setSizes(paneWidths(width(), appearance));
    sidebar->setMinimumWidth(140);
    details->setMinimumWidth(200);
    middle->setMinimumWidth(360);
    showPane();
}

} // namespace ellwynd
