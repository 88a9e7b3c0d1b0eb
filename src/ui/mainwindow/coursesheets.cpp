#include "ui/mainwindow/coursesheets.h"

#include "app/explain/explaintexts.h"
#include "app/mainwindowcontroller.h"
#include "app/roster/rostertexts.h"
#include "app/undo/undotexts.h"
#include "ui/print/printsheet.h"
#include "ui/sheets/copysetupsheet.h"
#include "ui/sheets/iconsheet.h"
#include "ui/sheets/lookbacksheet.h"
#include "ui/sheets/missingworksheet.h"
#include "ui/sheets/thresholdssheet.h"
#include "ui/support/alert.h"
#include "uikit/convert.h"

#include <QMessageBox>
#include <QPushButton>

namespace ellwynd {

CourseSheets::CourseSheets(
    MainWindowController &controller, UserDefaults &defaults, const Stores &stores,
    const Appearance &appearance, QWidget &window)
    : QObject(&window),
      controller(controller),
      defaults(defaults),
      stores(stores),
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
    auto *sheet = new ThresholdsSheet(
        *roster.courseID, roster.title, controller.loadedRosters(), defaults, appearance, &window);
    connect(
        &controller, &MainWindowController::rescoringDidEnd, sheet, &ThresholdsSheet::showEffect);
    connect(
        sheet, &ThresholdsSheet::editDidEnd, this,
        [this, texts = undotexts::changedThresholds(roster.title)](const PreferenceEdit &edit) {
            pushEdit(controller.undoStack(), defaults, edit, texts);
        });
    sheet->show();
    return sheet;
}

LookBackSheet *CourseSheets::openLookBack() {
    const RosterView &roster = controller.roster();
    if (!roster.courseID)
        return nullptr;
    LookBack look = lookBack(*roster.courseID, roster.rows, stores.history, stores.contacts);
    const QString outreach = qstring(outreachSummary(look, roster.remembersContacts));
    auto *sheet =
        new LookBackSheet(std::move(look), qstring(roster.title), outreach, appearance, &window);
    connect(
        sheet, &LookBackSheet::studentRequested, this,
        [this, courseID = *roster.courseID](std::int64_t studentID) {
            Q_EMIT studentsRequested({{courseID, studentID}});
        });
    sheet->show();
    return sheet;
}

void CourseSheets::openCoverage() {
    const RosterView &roster = controller.roster();
    if (!roster.insight)
        return;
    QStringList lines;
    for (const SignalCoverage &entry : roster.insight->coverage)
        lines << QStringLiteral("• ") + qstring(coverageText(entry));
    QMessageBox *box =
        plainAlert(&window, qstring(coverageLine(roster.insight->coverage)), lines.join(u'\n'));
    box->addButton(QStringLiteral("OK"), QMessageBox::RejectRole);
    box->open();
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

PrintSheet *CourseSheets::openPrint(const SharedList<RiskRow> &selected) {
    const RosterView &roster = controller.roster();
    const Date now = systemNow();
    PrintedRoster everyone = printedRoster(roster, false, now);
    PrintedRoster flagged = printedRoster(roster, true, now);
    const auto title = [](const char *text, const PrintedRoster &printed) {
        return QStringLiteral("%1: %2").arg(
            QString::fromUtf8(text), qstring(studentsText(printed.rows.size())));
    };
    std::vector<PrintSheet::Choice> choices;
    if (!flagged.rows.empty() && flagged.rows.size() < everyone.rows.size())
        choices.push_back({title("Flagged", flagged), std::move(flagged)});
    choices.push_back({title("Whole roster", everyone), std::move(everyone)});
    if (selected.size() == 1) {
        PrintedStudent student =
            printedStudent(selected.front(), controller.studentHistory(selected.front()), now);
        choices.push_back({qstring(student.name), std::move(student)});
    }
    auto *sheet = new PrintSheet(std::move(choices), defaults, appearance, &window);
    connect(sheet, &PrintSheet::noteRequested, this, &CourseSheets::noteRequested);
    sheet->show();
    return sheet;
}

} // namespace ellwynd
