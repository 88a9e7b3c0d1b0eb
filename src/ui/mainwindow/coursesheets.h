// The sheets of the displayed course.
#pragma once

#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>

#include <set>

class QWidget;

namespace ellwynd {

struct Stores;
class Appearance;
class MainWindowController;
class LookBackSheet;
class MissingWorkSheet;
class PrintSheet;
class ThresholdsSheet;

/// Opens sheets over the main window. When no course is displayed, nothing opens and null is
/// returned.
class CourseSheets : public QObject {
    Q_OBJECT

  public:
    /// @param window owns this object and the sheets; the other arguments must outlive it.
    CourseSheets(
        MainWindowController &controller, UserDefaults &defaults, const Stores &stores,
        const Appearance &appearance, QWidget &window);

    MissingWorkSheet *openMissingWork();
    ThresholdsSheet *openThresholds();
    /// Opens the levels of the course's students over the term; null when no course is displayed.
    LookBackSheet *openLookBack();
    /// Opens the list of the signals that count.
    void openCoverage();
    void openIcon();
    void openCopySetup();
    /// Opens "Print…" for the displayed roster, of a course or of a term.
    /// @param selected one of them alone can be printed too.
    PrintSheet *openPrint(const SharedList<RiskRow> &selected);

  Q_SIGNALS:
    /// The roster should select these students.
    void studentsRequested(const std::set<ellwynd::StudentKey> &students);
    /// A note about what was done should be shown. What can be undone goes to the undo stack.
    void noteRequested(const QString &note);

  private:
    MainWindowController &controller;
    UserDefaults &defaults;
    const Stores &stores;
    const Appearance &appearance;
    QWidget &window;
};

} // namespace ellwynd
