#include "ui/mainwindow/coursesheets.h"

#include "app/mainwindowcontroller.h"
#include "app/undo/undotexts.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "uikit/convert.h"

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
    connect(
        sheet, &ThresholdsSheet::editDidEnd, this,
        [this, texts = undotexts::changedThresholds(roster.title)](const PreferenceEdit &edit) {
            pushEdit(controller.undoStack(), defaults, edit, texts);
        });
    sheet->show();
    return sheet;
}

void CourseSheets::openIcon() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return;
    auto *sheet = new IconSheet(*roster.courseID, roster.title, defaults, appearance, &window);
    connect(
        sheet, &IconSheet::editDidEnd, this,
        [this, texts = undotexts::changedIcon(roster.title)](const PreferenceEdit &edit) {
            pushEdit(controller.undoStack(), defaults, edit, texts);
        });
    sheet->show();
}

void CourseSheets::openCopySetup() {
    const auto courseID = controller.roster().courseID;
    if (!courseID)
        return;
    auto *sheet =
        new CopySetupSheet(*courseID, controller.courses().known(), defaults, appearance, &window);
    connect(
        sheet, &CopySetupSheet::setupDidChange, this,
        [this](const std::string &from, const PreferenceEdit &edit) {
            const UndoTexts texts = undotexts::copiedSetup(from);
            pushEdit(controller.undoStack(), defaults, edit, texts);
            if (edit.isEmpty())
                Q_EMIT noteRequested(qstring(texts.note));
        });
    sheet->show();
}

} // namespace ellwynd
