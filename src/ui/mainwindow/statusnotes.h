// Notes in the main window's status bar.
#pragma once

#include <QObject>

#include <functional>

class QMainWindow;
class QPushButton;

namespace ellwynd {

/// Shows a note about what was done for a few seconds and announces it to screen readers. The
/// status bar is visible only while a note is.
class StatusNotes : public QObject {
    Q_OBJECT

  public:
    /// @param window owns this object.
    explicit StatusNotes(QMainWindow &window);

    void show(const QString &note);
    /// Shows a note with an Undo button, for longer than other notes.
    void showUndoable(const QString &note, std::function<void()> undo);

  private:
    void show(const QString &note, int milliseconds);
    void messageChanged(const QString &message);

    QMainWindow &window;
    QPushButton *undoButton = nullptr;
};

} // namespace ellwynd
