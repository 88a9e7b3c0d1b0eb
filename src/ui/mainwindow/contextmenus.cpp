#include "ui/mainwindow/contextmenus.h"

#include "app/courses/courselabel.h"
#include "app/mainwindowcontroller.h"
#include "ui/mainwindow/mainmenus.h"
#include "ui/roster/rosterdesktopactions.h"
#include "uikit/convert.h"

#include <QAction>
#include <QMenu>

namespace ellwynd {

ContextMenus::ContextMenus(
    MainWindowController &controller, const MainMenus &menus, RosterDesktopActions &desktopActions,
    QWidget &window)
    : QObject(&window),
      controller(controller),
      menus(menus),
      desktopActions(desktopActions),
      window(window) {}

void ContextMenus::showStudents(const SharedList<RiskRow> &students, const QPoint &position) {
    if (students.empty())
        return;
    QMenu menu(&window);
    menu.addAction(menus.write);
    QMenu *messages = menu.addMenu(menus.copyMessage->title());
    desktopActions.fillCopyMenu(messages);
    menu.addAction(menus.markContacted);
    menu.addAction(menus.removeContactMark);
    menu.addSeparator();
    menu.addAction(menus.openGrades);
    if (controller.roster().courseID) {
        menu.addAction(menus.openCourse);
    } else {
        const QAction *course = menu.addAction(
            QStringLiteral("Show Roster of ") + menuText(collapsed(students.front().courseName)));
        connect(course, &QAction::triggered, this, [this, key = keyOf(students.front())] {
            Q_EMIT studentRequested(key);
        });
    }
    menu.exec(position);
}

void ContextMenus::showSelection(const Selection &selection, const QPoint &position) {
    if (std::holds_alternative<DashboardSelection>(selection))
        return;
    QMenu menu(&window);
    const auto add = [&](const QString &text, auto &&command) {
        connect(menu.addAction(text), &QAction::triggered, this, command);
    };
    add(QStringLiteral("Show Roster"), [this, selection] { Q_EMIT rosterRequested(selection); });
    if (const auto *course = std::get_if<CourseSelection>(&selection)) {
        add(menus.openCourse->text(),
            [this, id = course->courseID] { controller.actions().openCourse(id); });
        menu.addSeparator();
        // They are about the course on screen.
        add(menus.thresholds->text(), [this, selection] { Q_EMIT thresholdsRequested(selection); });
        add(menus.courseIcon->text(), [this, selection] { Q_EMIT iconRequested(selection); });
    }
    menu.exec(position);
}

} // namespace ellwynd
