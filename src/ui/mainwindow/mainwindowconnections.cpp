// What the commands and the views of the main window do.
#include "app/mainwindowcontroller.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/dashboard/studentlist.h"
#include "ui/details/studentdetails.h"
#include "ui/mainwindow/connectionviews.h"
#include "ui/mainwindow/contextmenus.h"
#include "ui/mainwindow/coursesheets.h"
#include "ui/mainwindow/findcommands.h"
#include "ui/mainwindow/mainmenus.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/roster/rosterdesktopactions.h"
#include "ui/roster/rosterpane.h"
#include "ui/settings/settingswindow.h"
#include "ui/sidebar/sidebar.h"
#include "ui/support/appearance.h"
#include "ui/support/statusnotes.h"
#include "ui/write/writecommands.h"
#include "uikit/convert.h"
#include "uikit/painting.h"

#include <QAction>
#include <QMenu>

#include <utility>

namespace ellwynd {

void MainWindow::connectCommands() {
    const auto on = [this](const QAction *action, auto &&command) {
        connect(action, &QAction::triggered, this, std::forward<decltype(command)>(command));
    };
    on(menus->refreshAll, [this] { controller.refresh(); });
    on(menus->refreshRoster, [this] { controller.refreshRoster(); });
    on(menus->exportCSV, [this] { desktopActions->exportRoster(ExportFormat::csv); });
    on(menus->exportMarkdown, [this] { desktopActions->exportRoster(ExportFormat::markdown); });
    on(menus->print, [this] { sheets->openPrint(roster()->table()->selectedRows()); });
    on(menus->sampleMode, &MainWindow::sampleSwitchRequested);
    on(menus->settings, [this] { settings().open(SettingsWindow::general); });
    on(menus->quit, &MainWindow::quitRequested);
    on(menus->undo, [this] { controller.undoStack().undo(); });
    on(menus->findStudent, [this] { roster()->focusFilter(); });

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
    RosterTable *table = roster()->table();
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

/// Called when the roster is made.
void MainWindow::connectRoster() {
    RosterTable *table = rosterPane->table();
    connect(rosterPane, &RosterPane::thresholdsRequested, this, &MainWindow::openThresholds);
    connect(rosterPane, &RosterPane::missingWorkRequested, this, &MainWindow::openMissingWork);
    connect(rosterPane, &RosterPane::coverageRequested, sheets, &CourseSheets::openCoverage);
    connect(
        rosterPane, &RosterPane::refreshRequested, &controller,
        &MainWindowController::refreshRoster);
    connect(rosterPane, &RosterPane::contextMenuRequested, this, &MainWindow::showContextMenu);
    connect(rosterPane, &RosterPane::rowsDidChange, this, [this] {
        showPane();
        updateActions();
    });
    connect(table, &RosterTable::selectionDidChange, this, &MainWindow::showSelection);
    connect(table, &RosterTable::detailsRequested, this, &MainWindow::openDetails);
    connect(table, &RosterTable::gradesRequested, this, [this](const RiskRow &row) {
        controller.actions().openGrades(row.courseID, row.id);
    });
    connect(table, &RosterTable::contactRemovalRequested, this, [this](const RiskRow &row) {
        controller.actions().removeContactMarks({row});
    });
}

void MainWindow::connectDetails() {
    RosterActions &actions = controller.actions();
    connect(
        details, &StudentDetails::messagesRequested, desktopActions,
        &RosterDesktopActions::fillCopyMenu);
    connect(details, &StudentDetails::writeRequested, this, &MainWindow::openWriteSheet);
    connect(details, &StudentDetails::contactsRequested, &actions, &RosterActions::markContacted);
    connect(details, &StudentDetails::studentRequested, this, &MainWindow::showStudent);
    connect(details, &StudentDetails::gradesRequested, this, [&actions](const RiskRow &row) {
        actions.openGrades(row.courseID, row.id);
    });
    connect(
        details, &StudentDetails::assignmentRequested, this,
        [&actions](const RiskRow &row, std::int64_t id) {
            actions.openAssignment(row.courseID, id);
        });
}

void MainWindow::connectViews() {
    connectDetails();
    connect(
        connectionViews, &ConnectionViews::sampleRequested, this,
        &MainWindow::sampleSwitchRequested);
    connect(&appearance, &Appearance::appearanceDidChange, this, &MainWindow::showPane);
    connect(&controller, &MainWindowController::coursesDidChange, this, [this] {
        // After a sign-out, and before another account's courses arrive.
        if (controller.courses().isEmpty())
            forgetTexts();
    });
    connect(
        desktopActions, &RosterDesktopActions::noteRequested, this,
        [this](const QString &note) { notes->showNote(note); });
    connect(sheets, &CourseSheets::noteRequested, notes, &StatusNotes::showNote);
    const auto showTemplates = [this] { settings().open(SettingsWindow::messages); };
    connect(desktopActions, &RosterDesktopActions::templatesRequested, this, showTemplates);
    connect(writing, &WriteCommands::templatesRequested, this, showTemplates);

    connect(dashboardPane, &DashboardPane::courseRequested, this, [this](std::int64_t id) {
        controller.select(CourseSelection{id});
        roster()->table()->setFocus();
    });
    connect(dashboardPane, &DashboardPane::termRequested, this, [this](std::int64_t id) {
        controller.select(TermSelection{id});
        roster()->table()->setFocus();
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
        roster()->table()->setFocus();
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
    dashboardPane->setRefreshing(controller.isLoading());
    // Once there is a roster, it announces its changes.
    connect(&controller, &MainWindowController::rosterDidChange, this, [this] {
        if (rosterPane != nullptr)
            return;
        showPane();
        updateActions();
    });
    connect(&controller, &MainWindowController::errorDidOccur, this, &MainWindow::showError);
    connect(
        sheets, &CourseSheets::studentsRequested, this,
        [this](const std::set<StudentKey> &students) {
            roster()->table()->selectStudents(students);
            roster()->table()->setFocus();
        });
    const UndoStack &undo = controller.undoStack();
    connect(&undo, &UndoStack::newestDidChange, this, [this, &undo] {
        menus->showUndo(undo.newest() != nullptr ? undo.newest()->texts.name : std::string());
    });
}

} // namespace ellwynd
