#include "ui/mainwindow/mainmenus.h"

#include "app/shell/samplemode.h"
#include "generated/version.h"
#include "uikit/convert.h"

#include <QActionGroup>
#include <QMenuBar>

namespace ellwynd {

namespace {

QAction *add(QMenu &menu, const QString &text, const QList<QKeySequence> &keys = {}) {
    QAction *action = menu.addAction(text);
    action->setShortcuts(keys);
    return action;
}

/// @param change empty for none.
QString undoText(const std::string &change) {
    const QString text = QStringLiteral("&Undo");
    return change.empty() ? text : text + u' ' + menuText(change);
}

/// The text of a menu or command without mnemonic marks.
std::string plainText(const QAction &action) {
    return action.text().remove(u'&').toStdString();
}

} // namespace

MainMenus::MainMenus(QMenuBar &bar, UserDefaults &defaults)
    : QObject(&bar),
      bar(bar),
      defaults(defaults),
      observing(defaults.observe([this](std::string_view key) { showPreference(key); })) {
    makeFileMenu();
    QMenu *edit = bar.addMenu(QStringLiteral("&Edit"));
    undo = add(*edit, undoText({}), {QKeySequence::Undo});
    showUndo({});
    edit->addSeparator();
    find = add(*edit, QStringLiteral("Fi&nd…"), {Qt::CTRL | Qt::Key_K});
    findStudent = add(*edit, QStringLiteral("&Find Student"), {QKeySequence::Find});
    makeViewMenu();
    makeCourseMenus();
    makeHelpMenu();
    showPreference(preferences::rosterCompactRows.name);
    showPreference(preferences::courseInsightPanelMode.name);
    showTextScale();
}

void MainMenus::makeFileMenu() {
    QMenu &file = *bar.addMenu(QStringLiteral("&File"));
    refreshAll =
        add(file, QStringLiteral("&Refresh All Courses"), {Qt::CTRL | Qt::Key_R, Qt::Key_F5});
    refreshRoster =
        add(file, QStringLiteral("Refresh &This Roster"), {Qt::CTRL | Qt::SHIFT | Qt::Key_R});
    file.addSeparator();
    exportCSV = add(file, QStringLiteral("Export Roster as &CSV…"), {Qt::CTRL | Qt::Key_E});
    exportMarkdown = add(
        file, QStringLiteral("Export Roster as &Markdown…"), {Qt::CTRL | Qt::SHIFT | Qt::Key_E});
    print = add(file, QStringLiteral("&Print…"), {QKeySequence::Print});
    file.addSeparator();
    sampleMode =
        add(file, menuText(samplemode::menuTitle(defaults.value(preferences::sampleData))));
    settings = add(file, QStringLiteral("&Settings"), {Qt::CTRL | Qt::Key_Comma});
    file.addSeparator();
    quit = add(file, QStringLiteral("&Quit"), {Qt::CTRL | Qt::Key_Q});
}

void MainMenus::makeViewMenu() {
    QMenu &view = *bar.addMenu(QStringLiteral("&View"));
    showDashboard = add(view, QStringLiteral("Show &Dashboard"), {Qt::CTRL | Qt::Key_D});
    view.addSeparator();
    sortBy = view.addMenu(QStringLiteral("&Sort By"));
    compactRows = add(view, QStringLiteral("&Compact Rows"), {Qt::CTRL | Qt::SHIFT | Qt::Key_C});
    compactRows->setCheckable(true);
    connect(compactRows, &QAction::triggered, this, [this](bool on) {
        defaults.set(preferences::rosterCompactRows, on);
    });
    makeInsightMenu(view);
    hideDetails = add(view, QStringLiteral("&Hide Student Details"), {Qt::CTRL | Qt::Key_I});
    view.addSeparator();
    zoomIn =
        add(view, QStringLiteral("Zoom &In"), {QKeySequence::ZoomIn, Qt::CTRL | Qt::Key_Equal});
    zoomOut = add(view, QStringLiteral("Zoom &Out"), {QKeySequence::ZoomOut});
    actualSize = add(view, QStringLiteral("&Actual Size"), {Qt::CTRL | Qt::Key_0});
    // The text size is that of every window.
    for (QAction *action : {zoomIn, zoomOut, actualSize})
        action->setShortcutContext(Qt::ApplicationShortcut);
}

void MainMenus::makeInsightMenu(QMenu &view) {
    QMenu *menu = view.addMenu(QStringLiteral("Course &Insight"));
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
}

void MainMenus::makeCourseMenus() {
    QMenu &course = *bar.addMenu(QStringLiteral("&Course"));
    missingWork =
        add(course, QStringLiteral("&Missing Work by Assignment…"), {Qt::CTRL | Qt::Key_M});
    thresholds = add(course, QStringLiteral("Risk &Thresholds…"), {Qt::CTRL | Qt::Key_T});
    lookBack = add(course, QStringLiteral("&Look Back…"), {Qt::CTRL | Qt::Key_L});
    courseIcon = add(course, QStringLiteral("&Icon…"));
    copySetup = add(course, QStringLiteral("Copy Course &Setup…"));
    course.addSeparator();
    openCourse = add(course, QStringLiteral("&Open Course in Canvas"), {Qt::CTRL | Qt::Key_O});

    QMenu &student = *bar.addMenu(QStringLiteral("&Student"));
    write = add(student, QStringLiteral("&Write…"), {Qt::CTRL | Qt::Key_J});
    copyMessage = student.addMenu(QStringLiteral("&Copy Message About Student"));
    markContacted =
        add(student, QStringLiteral("&Mark as Contacted"), {Qt::CTRL | Qt::SHIFT | Qt::Key_M});
    removeContactMark = add(student, QStringLiteral("&Remove Contact Mark"));
    student.addSeparator();
    openGrades = add(student, QStringLiteral("Open &Grades in Canvas"), {Qt::CTRL | Qt::Key_G});
}

void MainMenus::makeHelpMenu() {
    QMenu &menu = *bar.addMenu(QStringLiteral("&Help"));
    help = add(menu, QStringLiteral("Ellwynd &Help"), {QKeySequence::HelpContents});
    keyboardShortcuts = add(menu, QStringLiteral("&Keyboard Shortcuts"));
    whatsNew = add(menu, QStringLiteral("&What's New in Ellwynd"));
    menu.addSeparator();
    sendFeedback = add(menu, QStringLiteral("Send &Feedback…"));
    sendFeedback->setVisible(!std::string_view(feedbackAddress).empty());
    checkForUpdates = add(menu, QStringLiteral("Check for &Updates…"));
    checkForUpdates->setVisible(false);
    about = add(menu, QStringLiteral("&About Ellwynd"));
}

void MainMenus::showPreference(std::string_view key) {
    if (key == preferences::rosterCompactRows.name) {
        compactRows->setChecked(defaults.value(preferences::rosterCompactRows));
    } else if (key == preferences::courseInsightPanelMode.name) {
        const QString mode = qstring(defaults.value(preferences::courseInsightPanelMode));
        for (QAction *action : insightModes->actions())
            action->setChecked(action->data().toString() == mode);
    } else if (key == preferences::textScale.name) {
        showTextScale();
    }
}

void MainMenus::showTextScale() {
    const double scale = defaults.value(preferences::textScale);
    zoomIn->setEnabled(scale < preferences::textScale.row->range.maximum);
    zoomOut->setEnabled(scale > preferences::textScale.row->range.minimum);
    actualSize->setEnabled(scale != 1);
}

void MainMenus::update(const CommandState &state) {
    for (QAction *command : {refreshRoster, showDashboard, hideDetails})
        command->setEnabled(state.rosterPane);
    hideDetails->setText(
        state.detailsHidden ? QStringLiteral("&Show Student Details")
                            : QStringLiteral("&Hide Student Details"));
    for (QAction *command : {exportCSV, exportMarkdown})
        command->setEnabled(state.rosterShown);
    for (QAction *command : {missingWork, thresholds, lookBack, courseIcon, copySetup, openCourse})
        command->setEnabled(state.rosterShown && state.oneCourse);
    sortBy->setEnabled(state.anyStudents);
    for (QAction *command : {findStudent, print})
        command->setEnabled(state.anyStudents);
    write->setEnabled(state.anySelected);
    copyMessage->setEnabled(state.anySelected);
    // Each student would open a page in the browser.
    openGrades->setEnabled(state.oneSelected);
    markContacted->setEnabled(state.anySelected && state.remembersContacts);
    removeContactMark->setEnabled(state.anyContacted);
}

void MainMenus::showUndo(const std::string &change) const {
    undo->setText(undoText(change));
    undo->setEnabled(!change.empty());
}

std::vector<ShortcutGroup> MainMenus::shortcuts() const {
    std::vector<ShortcutGroup> groups;
    for (const QAction *menu : bar.actions()) {
        ShortcutGroup group{.title = plainText(*menu)};
        for (const QAction *action : menu->menu()->actions()) {
            QStringList keys;
            for (const QKeySequence &key : action->shortcuts())
                keys.append(key.toString(QKeySequence::NativeText));
            if (!keys.isEmpty())
                group.rows.push_back(
                    {action == undo ? "Undo" : plainText(*action),
                     keys.join(QStringLiteral(", ")).toStdString()});
        }
        if (!group.rows.empty())
            groups.push_back(std::move(group));
    }
    return groups;
}

std::vector<MainMenus::Found> MainMenus::enabledCommands() const {
    std::vector<Found> commands;
    for (const QAction *menu : bar.actions()) {
        for (QAction *action : menu->menu()->actions()) {
            if (action == find || action->isSeparator() || action->menu() != nullptr ||
                !action->isEnabled() || !action->isVisible())
                continue;
            const std::string keys =
                action->shortcut().toString(QKeySequence::NativeText).toStdString();
            commands.push_back(
                {.action = action,
                 .text = plainText(*action),
                 .place = plainText(*menu) + (keys.empty() ? "" : " · " + keys)});
        }
    }
    return commands;
}

} // namespace ellwynd
