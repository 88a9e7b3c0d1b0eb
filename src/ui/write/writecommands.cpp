#include "ui/write/writecommands.h"

#include "ui/write/writesheet.h"

#include <QEvent>

namespace ellwynd {

WriteCommands::WriteCommands(
    UserDefaults &defaults, Stores &stores, UndoStack &undo, const Appearance &appearance,
    QWidget &window)
    : QObject(&window),
      defaults(defaults),
      stores(stores),
      undo(undo),
      appearance(appearance),
      window(window) {
    window.installEventFilter(this);
}

WriteCommands::~WriteCommands() {
    delete sheet.data();
}

WriteSheet *WriteCommands::open(const SharedList<RiskRow> &students) {
    if (students.empty())
        return nullptr;
    if (sheet != nullptr && sheet->isVisible() && sheet->isUnfinished()) {
        sheet->add(students);
    } else {
        delete sheet.data();
        sheet = new WriteSheet(students, defaults, stores, undo, appearance, window);
        connect(sheet, &WriteSheet::templatesRequested, this, &WriteCommands::templatesRequested);
        sheet->show();
    }
    sheet->raise();
    sheet->activateWindow();
    return sheet;
}

bool WriteCommands::isInFront() const {
    return sheet != nullptr && sheet->isActiveWindow();
}

/// The program ends with the main window, so the sheet may first have to ask.
bool WriteCommands::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Close && sheet != nullptr && sheet->isVisible()) {
        sheet->reject();
        if (sheet != nullptr && sheet->isVisible()) {
            sheet->raise();
            sheet->activateWindow();
            event->ignore();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace ellwynd
