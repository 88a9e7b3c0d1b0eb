#include "ui/mainwindow/coursesheets.h"

#include "app/mainwindowcontroller.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"

namespace ellwynd {

CourseSheets::CourseSheets(
    MainWindowController &controller, UserDefaults &defaults, const Appearance &appearance,
    QWidget &window)
    : QObject(&window),
      controller(controller),
      defaults(defaults),
      appearance(appearance),
      window(window) {}

MissingWorkSheet *CourseSheets::openMissingWork() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return nullptr;
    auto *sheet = new MissingWorkSheet(
        roster.missedWork, std::int64_t(roster.rows.size()), appearance, &window);
    connect(
        sheet, &MissingWorkSheet::studentsRequested, this,
        [this, courseID = *roster.courseID](const std::vector<std::int64_t> &ids) {
            std::set<StudentKey> students;
            for (const std::int64_t id : ids)
                students.insert({courseID, id});
            Q_EMIT studentsRequested(students);
        });
    sheet->show();
    return sheet;
}

ThresholdsSheet *CourseSheets::openThresholds() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return nullptr;
    auto *sheet =
        new ThresholdsSheet(*roster.courseID, roster.title, defaults, appearance, &window);
    sheet->show();
    return sheet;
}

void CourseSheets::openIcon() {
    const RosterView &roster = controller.roster();
    if (roster.courseID)
        (new IconSheet(*roster.courseID, roster.title, defaults, appearance, &window))->show();
}

void CourseSheets::openCopySetup() {
    const auto courseID = controller.roster().courseID;
    if (!courseID)
        return;
    auto *sheet =
        new CopySetupSheet(*courseID, controller.courses().known(), defaults, appearance, &window);
    connect(sheet, &CopySetupSheet::setupDidChange, this, &CourseSheets::setupDidChange);
    sheet->show();
}

} // namespace ellwynd
