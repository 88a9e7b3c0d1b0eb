// The sheets of the course on screen.
#pragma once

#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>

#include <set>

class QWidget;

namespace ellwynd {

class Appearance;
class MainWindowController;
class MissingWorkSheet;
class ThresholdsSheet;

/// Opens sheets over the main window. Where no course is shown nothing is opened, and null is
/// returned.
class CourseSheets : public QObject {
    Q_OBJECT

  public:
    /// @param window owns the sheets; the other arguments must outlive it.
    CourseSheets(
        MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
        QWidget &window);

    MissingWorkSheet *openMissingWork();
    ThresholdsSheet *openThresholds();
    void openIcon();
    void openCopySetup();

  Q_SIGNALS:
    /// The teacher wants to see these students of the roster.
    void studentsRequested(const std::set<ellwynd::StudentKey> &students);
    /// @param replaced what was saved before.
    void setupDidChange(const QString &note, const ellwynd::PreferenceChanges &replaced);

  private:
    MainWindowController &controller;
    UserDefaults &defaults;
    const Appearance &appearance;
    QWidget &window;
};

} // namespace ellwynd
