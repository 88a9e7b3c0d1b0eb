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
#include "ui/mainwindow/findcommands.h"
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

#include <algorithm>

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
      splitter(new PaneSplitter(appearance, defaults, this)),
      sidebar(new Sidebar(controller, defaults, appearance, splitter)),
      middle(new QStackedWidget(splitter)),
      dashboardPane(new DashboardPane(controller.dashboard(), defaults, appearance)),
      rosterPane(new RosterPane(controller, defaults, appearance)),
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
    middle->addWidget(rosterPane);
    setCentralWidget(splitter);
    new HelpCommands(*menus, defaults, appearance, *this);
    connectCommands();
    connectViews();
    restoreLayout();
    updateActions();
}

// ---- Commands ----------------------------------------------------------------------------------

void MainWindow::connectCommands() {
    const auto on = [this](const QAction *action, auto &&command) {
        connect(action, &QAction::triggered, this, std::forward<decltype(command)>(command));
    };
    on(menus->refreshAll, [this] { controller.refresh(); });
    on(menus->refreshRoster, [this] { controller.refreshRoster(); });
    on(menus->exportCSV, [this] { desktopActions->exportRoster(ExportFormat::csv); });
    on(menus->exportMarkdown, [this] { desktopActions->exportRoster(ExportFormat::markdown); });
    on(menus->print, [this] { sheets->openPrint(rosterPane->table()->selectedRows()); });
    on(menus->sampleMode, &MainWindow::sampleSwitchRequested);
    on(menus->settings, [this] { settings().open(SettingsWindow::general); });
    on(menus->quit, &MainWindow::quitRequested);
    on(menus->undo, [this] { controller.undoStack().undo(); });
    on(menus->findStudent, [this] { rosterPane->focusFilter(); });

    on(menus->showDashboard, [this] {
        controller.select(DashboardSelection{});
        dashboardPane->focusCards();
    });
    connect(menus->sortBy, &QMenu::aboutToShow, this, &MainWindow::fillSortMenu);
    on(menus->hideDetails, [this] { toggleDetails(); });
    on(menus->zoomIn, [this] { appearance.zoom(1); });
    on(menus->zoomOut, [this] { appearance.zoom(-1); });
    on(menus->actualSize, [this] { appearance.zoom(0); });

    on(menus->missingWork, &MainWindow::openMissingWork);
    on(menus->thresholds, &MainWindow::openThresholds);
    on(menus->lookBack, [this] { sheets->openLookBack(); });
    on(menus->courseIcon, [this] { sheets->openIcon(); });
    on(menus->copySetup, [this] { sheets->openCopySetup(); });
    on(menus->openCourse, [this] {
        if (const auto id = controller.roster().courseID)
            controller.actions().openCourse(*id);
    });
    on(menus->write, [this] { openWriteSheet(selectedStudents()); });
    connect(menus->copyMessage, &QMenu::aboutToShow, this, [this] {
        desktopActions->fillCopyMenu(menus->copyMessage);
    });
    on(menus->markContacted, [this] { controller.actions().markContacted(selectedStudents()); });
    on(menus->removeContactMark,
       [this] { controller.actions().removeContactMarks(selectedStudents()); });
    on(menus->openGrades, [this] {
        const RiskRow row = selectedStudents().front();
        controller.actions().openGrades(row.courseID, row.id);
    });

    on(menus->checkForUpdates, &MainWindow::updateCheckRequested);
}

void MainWindow::fillSortMenu() {
    menus->sortBy->clear();
    RosterTable *table = rosterPane->table();
    for (const RosterSort sort : allRosterSorts) {
        // A course's roster has no column of courses.
        if (sort == RosterSort::course && controller.roster().courseID)
            continue;
        QAction *order = menus->sortBy->addAction(menuText(sortName(sort)));
        order->setCheckable(true);
        order->setChecked(table->query().sort == sort);
        connect(order, &QAction::triggered, this, [table, sort] { table->sortBy(sort); });
    }
}

/// The students of the roster, of whom the first selected one is previewed.
PreviewStudents MainWindow::previewStudents() const {
    const std::vector<RiskRow> selected = selectedStudents();
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

void MainWindow::connectViews() {
    RosterTable *table = rosterPane->table();
    connect(rosterPane, &RosterPane::thresholdsRequested, this, &MainWindow::openThresholds);
    connect(rosterPane, &RosterPane::missingWorkRequested, this, &MainWindow::openMissingWork);
    connect(rosterPane, &RosterPane::coverageRequested, sheets, &CourseSheets::openCoverage);
    connect(
        rosterPane, &RosterPane::refreshRequested, &controller,
        &MainWindowController::refreshRoster);
    connect(rosterPane, &RosterPane::contextMenuRequested, this, &MainWindow::showContextMenu);
    connect(
        connectionViews, &ConnectionViews::sampleRequested, this,
        &MainWindow::sampleSwitchRequested);
    connect(table, &RosterTable::selectionDidChange, this, &MainWindow::showSelection);
    connect(table, &RosterTable::detailsRequested, this, &MainWindow::openDetails);
    connect(rosterPane, &RosterPane::rowsDidChange, this, [this] {
        showPane();
        updateActions();
    });
    connect(&appearance, &Appearance::appearanceDidChange, this, &MainWindow::showPane);
    const auto grades = [this](const RiskRow &row) {
        controller.actions().openGrades(row.courseID, row.id);
    };
    const auto assignment = [this](const RiskRow &row, std::int64_t id) {
        controller.actions().openAssignment(row.courseID, id);
    };
    connect(table, &RosterTable::gradesRequested, this, grades);
    connect(table, &RosterTable::contactRemovalRequested, this, [this](const RiskRow &row) {
        controller.actions().removeContactMarks({row});
    });
    connect(
        details, &StudentDetails::messagesRequested, desktopActions,
        &RosterDesktopActions::fillCopyMenu);
    connect(
        desktopActions, &RosterDesktopActions::noteRequested, this,
        [this](const QString &note) { notes->showNote(note); });
    connect(sheets, &CourseSheets::noteRequested, notes, &StatusNotes::showNote);
    const auto showTemplates = [this] { settings().open(SettingsWindow::messages); };
    connect(desktopActions, &RosterDesktopActions::templatesRequested, this, showTemplates);
    connect(writing, &WriteCommands::templatesRequested, this, showTemplates);
    connect(details, &StudentDetails::writeRequested, this, &MainWindow::openWriteSheet);
    connect(
        details, &StudentDetails::contactsRequested, &controller.actions(),
        &RosterActions::markContacted);
    connect(details, &StudentDetails::studentRequested, this, &MainWindow::showStudent);
    connect(details, &StudentDetails::gradesRequested, this, grades);
    connect(details, &StudentDetails::assignmentRequested, this, assignment);

    connect(dashboardPane, &DashboardPane::courseRequested, this, [this](std::int64_t id) {
        controller.select(CourseSelection{id});
        rosterPane->table()->setFocus();
    });
    connect(dashboardPane, &DashboardPane::termRequested, this, [this](std::int64_t id) {
        controller.select(TermSelection{id});
        rosterPane->table()->setFocus();
    });
    connect(
        dashboardPane, &DashboardPane::courseMenuRequested, contextMenus,
        [this](std::int64_t id, const QPoint &position) {
            contextMenus->showSelection(CourseSelection{id}, position);
        });
    connect(sidebar, &Sidebar::menuRequested, contextMenus, &ContextMenus::showSelection);
    connect(contextMenus, &ContextMenus::studentRequested, this, &MainWindow::showStudent);
    const auto showRoster = [this](const Selection &selection) {
        controller.select(selection);
        rosterPane->table()->setFocus();
    };
    connect(contextMenus, &ContextMenus::rosterRequested, this, showRoster);
    const auto *finding = new FindCommands(controller, *menus, appearance, *this);
    connect(finding, &FindCommands::studentRequested, this, &MainWindow::showStudent);
    connect(finding, &FindCommands::rosterRequested, this, showRoster);
    connect(
        contextMenus, &ContextMenus::thresholdsRequested, this, [this](const Selection &selection) {
            controller.select(selection);
            openThresholds();
        });
    connect(contextMenus, &ContextMenus::iconRequested, this, [this](const Selection &selection) {
        controller.select(selection);
        sheets->openIcon();
    });
    const StudentList *needs = dashboardPane->students();
    connect(needs, &StudentList::studentRequested, this, &MainWindow::showStudent);
    connect(needs, &StudentList::contextMenuRequested, this, &MainWindow::showContextMenu);
    connect(needs, &StudentList::selectionDidChange, this, &MainWindow::updateActions);
    connect(needs, &StudentList::writeRequested, this, &MainWindow::openWriteSheet);
    connect(
        needs, &StudentList::contactsRequested, &controller.actions(),
        &RosterActions::markContacted);
    connect(
        dashboardPane, &DashboardPane::refreshRequested, &controller,
        &MainWindowController::refresh);
    connect(&controller, &MainWindowController::loadingDidChange, this, [this] {
        dashboardPane->setRefreshing(controller.isLoading());
    });
    connect(&controller, &MainWindowController::rosterDidChange, this, [this] {
        showPane();
        updateActions();
    });
    connect(&controller, &MainWindowController::errorDidOccur, this, &MainWindow::showError);
    connect(
        sheets, &CourseSheets::studentsRequested, this,
        [table](const std::set<StudentKey> &students) {
            table->selectStudents(students);
            table->setFocus();
        });
    const UndoStack &undo = controller.undoStack();
    connect(&undo, &UndoStack::newestDidChange, this, [this, &undo] {
        menus->showUndo(undo.newest() != nullptr ? undo.newest()->texts.name : std::string());
    });
}

void MainWindow::updateActions() {
    updateActionsFor(selectedStudents());
}

void MainWindow::updateActionsFor(const std::vector<RiskRow> &selected) {
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
    const std::vector<RiskRow> selected = rosterPane->table()->selectedRows();
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
        middle->setCurrentWidget(rosterPane);
    const bool shown = showsRoster(roster) && rosterPane->table()->hasRows() && wantsDetails();
    if (!shown && details->isAncestorOf(QApplication::focusWidget()))
        rosterPane->table()->setFocus();
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

void MainWindow::resizeEvent(QResizeEvent *event) {
    QMainWindow::resizeEvent(event);
    if (!isNarrow())
        detailsInNarrowWindow = false;
    showPane();
    updateActions();
}

std::vector<RiskRow> MainWindow::selectedStudents() const {
    return middle->currentWidget() == dashboardPane ? dashboardPane->students()->selectedRows()
                                                    : rosterPane->table()->selectedRows();
}

void MainWindow::showStudent(const StudentKey &student) {
    controller.select(CourseSelection{student.courseID});
    rosterPane->table()->selectStudents({student});
    rosterPane->table()->setFocus();
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

WriteSheet *MainWindow::openWriteSheet(const std::vector<RiskRow> &students) {
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
