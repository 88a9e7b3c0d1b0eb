// The menus on the right button.
#pragma once

#include "app/courses/courseselection.h"
#include "risk/riskrow.h"

#include <QObject>

class QPoint;
class QWidget;

namespace ellwynd {

class MainMenus;
class MainWindowController;
class RosterDesktopActions;

/// The commands of students, of a course or of a term, at a position on the screen.
class ContextMenus : public QObject {
    Q_OBJECT

  public:
    /// @param window owns this object; the other arguments must outlive it.
    ContextMenus(
        MainWindowController &controller, const MainMenus &menus,
        RosterDesktopActions &desktopActions, QWidget &window);

    /// Shows the commands of the selected students; nothing without students.
    void showStudents(const SharedList<RiskRow> &students, const QPoint &position);
    /// Shows the commands of a course or a term; nothing for the dashboard.
    void showSelection(const Selection &selection, const QPoint &position);

  Q_SIGNALS:
    void rosterRequested(const ellwynd::Selection &selection);
    /// A student should be shown in the roster of their course.
    void studentRequested(const ellwynd::StudentKey &student);
    void thresholdsRequested(const ellwynd::Selection &course);
    void iconRequested(const ellwynd::Selection &course);

  private:
    MainWindowController &controller;
    const MainMenus &menus;
    RosterDesktopActions &desktopActions;
    QWidget &window;
};

} // namespace ellwynd
