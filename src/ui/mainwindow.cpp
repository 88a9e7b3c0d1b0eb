#include "ui/mainwindow.h"

#include "app/mainwindowcontroller.h"
#include "app/samplemode.h"
#include "generated/version.h"
#include "risk/coursethresholds.h"
#include "ui/about/aboutwindow.h"
#include "ui/dashboard/dashboardpane.h"
#include "ui/details/studentdetails.h"
#include "ui/help/helpwindow.h"
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
#include "ui/support/convert.h"
#include "ui/welcome/welcomewindow.h"

#include <QActionGroup>
#include <QClipboard>
#include <QCloseEvent>
#include <QDesktopServices>
#include <QFileDialog>
#include <QGuiApplication>
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

constexpr int noticeMilliseconds = 6000;

/// Sidebar, roster and details at first: the outer two grow with the text, up to a share of the
/// window.
QList<int> paneWidths(int window, const Appearance &appearance) {
    const int left = std::min(appearance.px(224), window * 24 / 100);
    const int right = std::min(appearance.px(256), window / 4);
    return {left, window - left - right, right};
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
      observing(store.observe([this](std::string_view key) {
          if (key == preferences::rosterCompactRows.name)
              compactRows->setChecked(defaults.value(preferences::rosterCompactRows));
          else if (key == preferences::courseInsightPanelMode.name)
              showInsightMode();
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
    makeMenus();
    connectViews();
    restoreGeometryState();
    updateActions();
}

// ---- Menus -------------------------------------------------------------------------------------

QAction *MainWindow::add(QMenu *menu, const QString &text, const QKeySequence &shortcut) {
    QAction *action = menu->addAction(text);
    action->setShortcut(shortcut);
    return action;
}

void MainWindow::makeMenus() {
    makeFileMenu();
    QMenu *edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    findStudent = add(edit, QStringLiteral("&Find Student"), QKeySequence::Find);
    connect(findStudent, &QAction::triggered, rosterPane, &RosterPane::focusFilter);
    makeViewMenu();
    makeCourseMenus();
    makeHelpMenu();
}

void MainWindow::makeFileMenu() {
    QMenu *file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction *refreshAll = add(file, QStringLiteral("&Refresh All Courses"), QKeySequence::Refresh);
    refreshAll->setShortcuts({Qt::CTRL | Qt::Key_R, Qt::Key_F5});
    refreshRoster =
        add(file, QStringLiteral("Refresh &This Roster"), Qt::CTRL | Qt::SHIFT | Qt::Key_R);
    file->addSeparator();
    exportCSV = add(file, QStringLiteral("Export Roster as &CSV…"), Qt::CTRL | Qt::Key_E);
    exportMarkdown =
        add(file, QStringLiteral("Export Roster as &Markdown…"), Qt::CTRL | Qt::SHIFT | Qt::Key_E);
    file->addSeparator();
    QAction *sample =
        add(file, menuText(samplemode::menuTitle(defaults.value(preferences::sampleData))), {});
    QAction *openSettings = add(file, QStringLiteral("&Settings"), QKeySequence::Preferences);
    openSettings->setShortcuts({QKeySequence(Qt::CTRL | Qt::Key_Comma)});
    file->addSeparator();
    QAction *quit = add(file, QStringLiteral("&Quit"), QKeySequence::Quit);

    connect(refreshAll, &QAction::triggered, &controller, &MainWindowController::refresh);
    connect(refreshRoster, &QAction::triggered, &controller, &MainWindowController::refreshRoster);
    connect(exportCSV, &QAction::triggered, this, [this] { exportRoster(ExportFormat::csv); });
    connect(exportMarkdown, &QAction::triggered, this, [this] {
        exportRoster(ExportFormat::markdown);
    });
    connect(sample, &QAction::triggered, this, &MainWindow::sampleSwitchRequested);
    connect(openSettings, &QAction::triggered, this, [this] {
        settings().open(SettingsWindow::general);
    });
    connect(quit, &QAction::triggered, this, &QWidget::close);
}

void MainWindow::makeViewMenu() {
    QMenu *view = menuBar()->addMenu(QStringLiteral("&View"));
    showDashboard = add(view, QStringLiteral("Show &Dashboard"), Qt::CTRL | Qt::Key_D);
    view->addSeparator();
    compactRows = add(view, QStringLiteral("&Compact Rows"), Qt::CTRL | Qt::SHIFT | Qt::Key_C);
    compactRows->setCheckable(true);
    compactRows->setChecked(defaults.value(preferences::rosterCompactRows));
    makeInsightMenu(view);
    hideDetails = add(view, QStringLiteral("&Hide Student Details"), Qt::CTRL | Qt::Key_I);
    view->addSeparator();
    QAction *zoomIn = add(view, QStringLiteral("Zoom &In"), QKeySequence::ZoomIn);
    zoomIn->setShortcuts({QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal});
    QAction *zoomOut = add(view, QStringLiteral("Zoom &Out"), QKeySequence::ZoomOut);
    QAction *actualSize = add(view, QStringLiteral("&Actual Size"), Qt::CTRL | Qt::Key_0);

    connect(compactRows, &QAction::toggled, this, [this](bool on) {
        defaults.set(preferences::rosterCompactRows, on);
    });
    connect(hideDetails, &QAction::triggered, this, [this] {
        detailsWanted = !detailsWanted;
        showPane();
        updateActions();
    });
    connect(showDashboard, &QAction::triggered, this, [this] {
        controller.select(DashboardSelection{});
        dashboardPane->focusCards();
    });
    connect(zoomIn, &QAction::triggered, this, [this] { appearance.zoom(1); });
    connect(zoomOut, &QAction::triggered, this, [this] { appearance.zoom(-1); });
    connect(actualSize, &QAction::triggered, this, [this] { appearance.zoom(0); });
}

void MainWindow::makeCourseMenus() {
    QMenu *course = menuBar()->addMenu(QStringLiteral("&Course"));
    missingWork = add(course, QStringLiteral("&Missing Work by Assignment…"), Qt::CTRL | Qt::Key_M);
    thresholds = add(course, QStringLiteral("Risk &Thresholds…"), Qt::CTRL | Qt::Key_T);
    courseIcon = add(course, QStringLiteral("&Icon…"), {});
    copySetup = add(course, QStringLiteral("Copy Course &Setup…"), {});
    course->addSeparator();
    openCourse = add(course, QStringLiteral("&Open Course in Canvas"), Qt::CTRL | Qt::Key_O);

    QMenu *student = menuBar()->addMenu(QStringLiteral("&Student"));
    copyMessage = student->addMenu(QStringLiteral("&Copy Message About Student"));
    markContacted =
        add(student, QStringLiteral("&Mark as Contacted"), Qt::CTRL | Qt::SHIFT | Qt::Key_M);
    student->addSeparator();
    openGrades = add(student, QStringLiteral("Open &Grades in Canvas"), Qt::CTRL | Qt::Key_G);

    connect(missingWork, &QAction::triggered, this, &MainWindow::openMissingWork);
    connect(thresholds, &QAction::triggered, this, &MainWindow::openThresholds);
    connect(courseIcon, &QAction::triggered, this, &MainWindow::openIconSheet);
    connect(copySetup, &QAction::triggered, this, &MainWindow::openCopySetup);
    connect(openCourse, &QAction::triggered, this, [this] {
        if (const auto id = controller.roster().courseID)
            controller.openCourse(*id);
    });
    connect(copyMessage, &QMenu::aboutToShow, this, [this] { fillCopyMenu(copyMessage); });
    connect(markContacted, &QAction::triggered, this, [this] {
        controller.markContacted(rosterPane->table()->selectedRows());
    });
    connect(openGrades, &QAction::triggered, this, [this] {
        for (const RiskRow &row : rosterPane->table()->selectedRows())
            controller.openGrades(row.courseID, row.id);
    });
}

void MainWindow::makeHelpMenu() {
    QMenu *menu = menuBar()->addMenu(QStringLiteral("&Help"));
    QAction *topics = add(menu, QStringLiteral("Ellwynd &Help"), QKeySequence::HelpContents);
    QAction *shortcuts = add(menu, QStringLiteral("&Keyboard Shortcuts"), {});
    QAction *news = add(menu, QStringLiteral("&What's New in Ellwynd"), {});
    menu->addSeparator();
    QAction *feedback = add(menu, QStringLiteral("Send &Feedback…"), {});
    feedback->setVisible(!std::string_view(feedbackAddress).empty());
    checkForUpdates = add(menu, QStringLiteral("Check for &Updates…"), {});
    checkForUpdates->setVisible(false);
    QAction *about = add(menu, QStringLiteral("&About Ellwynd"), {});

    connect(topics, &QAction::triggered, this, [this] { showHelp("getting-started"); });
    connect(shortcuts, &QAction::triggered, this, [this] { showHelp("keyboard"); });
    connect(news, &QAction::triggered, this, [this] { help().showReleaseNotes(); });
    connect(feedback, &QAction::triggered, this, &MainWindow::sendFeedback);
    connect(checkForUpdates, &QAction::triggered, this, &MainWindow::updateCheckRequested);
    connect(about, &QAction::triggered, this, [this] {
        auto *box = new AboutWindow(appearance, this);
        box->setAttribute(Qt::WA_DeleteOnClose);
        box->show();
    });
}

void MainWindow::makeInsightMenu(QMenu *view) {
    QMenu *menu = view->addMenu(QStringLiteral("Course &Insight"));
    insightModes = new QActionGroup(this);
    const std::pair<const char *, const char *> modes[] = {
        {"shown", "&Whole"}, {"small", "&One Line"}, {"hidden", "&Hidden"}};
    for (const auto &[mode, text] : modes) {
        QAction *action = menu->addAction(QString::fromUtf8(text));
        action->setCheckable(true);
        action->setData(QString::fromUtf8(mode));
        insightModes->addAction(action);
    }
    connect(insightModes, &QActionGroup::triggered, this, [this](const QAction *chosen) {
        defaults.set(preferences::courseInsightPanelMode, chosen->data().toString().toStdString());
    });
    showInsightMode();
}

void MainWindow::showInsightMode() {
    const QString mode = qstring(defaults.value(preferences::courseInsightPanelMode));
    for (QAction *action : insightModes->actions())
        action->setChecked(action->data().toString() == mode);
}

/// One entry a template, for the students selected when it is chosen.
void MainWindow::fillCopyMenu(QMenu *menu) {
    menu->clear();
    for (const MessageTemplate &message : stores.templates.templates()) {
        QAction *action = menu->addAction(menuText(message.name));
        connect(action, &QAction::triggered, this, [this, message] {
            controller.copyMessages(message, rosterPane->table()->selectedRows());
        });
    }
    if (menu->isEmpty()) {
        menu->addAction(QStringLiteral("No templates — add one in Settings"))->setEnabled(false);
    }
}

void MainWindow::exportRoster(ExportFormat format) {
    const bool csv = format == ExportFormat::csv;
    const RosterExport roster = controller.exported(format);
    auto *panel = new QFileDialog(
        this,
        csv ? QStringLiteral("Export Roster as CSV") : QStringLiteral("Export Roster as Markdown"));
    panel->setAcceptMode(QFileDialog::AcceptSave);
    panel->setMimeTypeFilters({csv ? QStringLiteral("text/csv") : QStringLiteral("text/markdown")});
    panel->setDefaultSuffix(csv ? QStringLiteral("csv") : QStringLiteral("md"));
    panel->selectFile(qstring(roster.fileName));
    panel->setAttribute(Qt::WA_DeleteOnClose);
    connect(panel, &QFileDialog::fileSelected, this, [this, roster](const QString &file) {
        controller.saveExport(roster, std::filesystem::path(file.toStdString()));
    });
    panel->open();
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
            selected, selected.size() == 1 ? controller.past(selected.front()) : StudentPast{});
        updateActions();
        if (settingsWindow != nullptr)
            settingsWindow->refreshPreview();
    });
    const auto grades = [this](const RiskRow &row) { controller.openGrades(row.courseID, row.id); };
    const auto assignment = [this](const RiskRow &row, std::int64_t id) {
        controller.openAssignment(row.courseID, id);
    };
    connect(table, &RosterTable::gradesRequested, this, grades);
    connect(table, &RosterTable::assignmentRequested, this, assignment);
    connect(details, &StudentDetails::messagesRequested, this, &MainWindow::fillCopyMenu);
    connect(details, &StudentDetails::contactRequested, this, [this](const RiskRow &row) {
        controller.markContacted({row});
    });
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
    connect(&controller, &MainWindowController::urlShouldOpen, this, [](const QString &url) {
        QDesktopServices::openUrl(QUrl(url));
    });
    connect(&controller, &MainWindowController::textShouldBeCopied, this, [](const QString &text) {
        QGuiApplication::clipboard()->setText(text);
    });
    connect(&controller, &MainWindowController::exportDidFail, this, [this](const QString &why) {
        QMessageBox *box = plainAlert(this, QStringLiteral("The export couldn’t be written"), why);
        box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
        box->open();
    });
    connect(&controller, &MainWindowController::pageIsInvented, this, [this] {
        statusBar()->show();
        statusBar()->showMessage(
            QStringLiteral("The sample college is invented, so it has no pages in Canvas."),
            noticeMilliseconds);
    });
    connect(statusBar(), &QStatusBar::messageChanged, this, [this](const QString &message) {
        statusBar()->setVisible(!message.isEmpty());
        if (message.isEmpty())
            delete std::exchange(undoSetup, nullptr);
    });
}

void MainWindow::updateActions() {
    const RosterView &roster = controller.roster();
    const bool shown = roster.state == RosterView::State::shown;
    const bool course = shown && roster.courseID.has_value();
    missingWork->setEnabled(course);
    thresholds->setEnabled(course);
    courseIcon->setEnabled(course);
    copySetup->setEnabled(course);
    openCourse->setEnabled(course);
    refreshRoster->setEnabled(
        roster.state != RosterView::State::nothingSelected &&
        roster.state != RosterView::State::notConnected);
    showDashboard->setEnabled(refreshRoster->isEnabled());
    hideDetails->setEnabled(middle->currentWidget() == rosterPane);
    findStudent->setEnabled(shown && !roster.rows.empty());
    const bool anySelected = !rosterPane->table()->selectedRows().empty();
    openGrades->setEnabled(anySelected);
    copyMessage->setEnabled(anySelected);
    exportCSV->setEnabled(shown);
    exportMarkdown->setEnabled(shown);
    markContacted->setEnabled(anySelected && stores.contacts.isEnabled());
    hideDetails->setText(
        detailsWanted ? QStringLiteral("&Hide Student Details")
                      : QStringLiteral("&Show Student Details"));
}

/// The dashboard, or a roster with its details; what was chosen for the details waits meanwhile.
void MainWindow::showPane() {
    const bool dashboard = controller.roster().state == RosterView::State::nothingSelected;
    middle->setCurrentWidget(dashboard ? static_cast<QWidget *>(dashboardPane) : rosterPane);
    details->setVisible(!dashboard && detailsWanted);
}

void MainWindow::showContextMenu(const QPoint &position) {
    if (rosterPane->table()->selectedRows().empty())
        return;
    QMenu menu(this);
    QMenu *messages = menu.addMenu(copyMessage->title());
    fillCopyMenu(messages);
    menu.addAction(markContacted);
    menu.addSeparator();
    menu.addAction(openGrades);
    menu.addAction(openCourse);
    menu.exec(position);
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
        qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void MainWindow::showUpdate(const QString &newVersion) {
    sidebar->showUpdate(newVersion);
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
        new CopySetupSheet(*courseID, controller.knownCourses(), defaults, appearance, this);
    connect(
        sheet, &CopySetupSheet::setupCopied, this,
        [this](const QString &note, const PreferenceChanges &replaced) {
            delete undoSetup;
            undoSetup = new QPushButton(QStringLiteral("Undo"), this);
            undoSetup->setAccessibleName(QStringLiteral("Undo: ") + note);
            connect(undoSetup, &QPushButton::clicked, this, [this, replaced] {
                defaults.update(replaced);
                statusBar()->clearMessage();
            });
            statusBar()->addPermanentWidget(undoSetup);
            statusBar()->show();
            statusBar()->showMessage(note, 2 * noticeMilliseconds);
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
    checkForUpdates->setVisible(offered);
}

/// The keys in the help are those of the menus.
HelpWindow &MainWindow::help() {
    if (helpWindow == nullptr) {
        std::vector<ShortcutGroup> groups;
        for (const QAction *menu : menuBar()->actions()) {
            ShortcutGroup group{.title = QString(menu->text()).remove(u'&').toStdString()};
            for (const QAction *action : menu->menu()->actions()) {
                if (action->shortcut().isEmpty())
                    continue;
                group.rows.push_back(
                    {QString(action->text()).remove(u'&').toStdString(),
                     action->shortcut().toString(QKeySequence::NativeText).toStdString()});
            }
            if (!group.rows.empty())
                groups.push_back(std::move(group));
        }
        helpWindow = new HelpWindow(defaults, appearance, groups, this);
    }
    return *helpWindow;
}

void MainWindow::showHelp(const std::string &topic) {
    help().showTopic(topic);
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
        connect(
            settingsWindow, &SettingsWindow::connectionDidChange, &controller,
            &MainWindowController::refresh);
    }
    return *settingsWindow;
}

// ---- Geometry ----------------------------------------------------------------------------------

void MainWindow::restoreGeometryState() {
    const auto bytes = [this](const auto &key) {
        return QByteArray::fromBase64(QByteArray::fromStdString(defaults.value(key)));
    };
    if (!restoreGeometry(bytes(preferences::mainWindowGeometry)))
        resize(1280, 800);
    if (!splitter->restoreState(bytes(preferences::mainWindowColumns)))
        splitter->setSizes(paneWidths(width(), appearance));
    sidebar->setMinimumWidth(140);
    details->setMinimumWidth(200);
    middle->setMinimumWidth(360);
    detailsWanted = !defaults.value(preferences::studentDetailsHidden);
    showPane();
}

void MainWindow::closeEvent(QCloseEvent *event) {
    defaults.set(preferences::mainWindowGeometry, saveGeometry().toBase64().toStdString());
    defaults.set(preferences::mainWindowColumns, splitter->saveState().toBase64().toStdString());
    defaults.set(preferences::studentDetailsHidden, !detailsWanted);
    QMainWindow::closeEvent(event);
}

} // namespace ellwynd
