// The commands that open the Write sheet.
#pragma once

#include "preferences/userdefaults.h"
#include "risk/riskrow.h"

#include <QObject>
#include <QPointer>

class QWidget;

namespace ellwynd {

class Appearance;
class UndoStack;
class WriteSheet;
struct Stores;

/// Opens the Write sheet, at most one at a time. It is closed before the main window.
class WriteCommands : public QObject {
    Q_OBJECT

  public:
    /// @param window owns this object; the other arguments must outlive it.
    WriteCommands(
        UserDefaults &defaults, Stores &stores, UndoStack &undo, const Appearance &appearance,
        QWidget &window);
    ~WriteCommands() override;

    /// Opens the sheet for these students, of one or several courses. An unfinished sheet gets them
    /// in addition to its own. Null without students.
    WriteSheet *open(const SharedList<RiskRow> &students);
    /// Whether the sheet is the active window.
    [[nodiscard]] bool isInFront() const;

  Q_SIGNALS:
    /// The settings of templates should be shown.
    void templatesRequested();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    UserDefaults &defaults;
    Stores &stores;
    UndoStack &undo;
    const Appearance &appearance;
    QWidget &window;
    QPointer<WriteSheet> sheet;
};

} // namespace ellwynd
