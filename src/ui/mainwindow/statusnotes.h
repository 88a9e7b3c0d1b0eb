// Notes in the main window's status bar.
#pragma once

#include <QObject>

#include <functional>

class QMainWindow;
class QPushButton;

namespace ellwynd {

/// Shows what was done for a few seconds, to screen readers too. The status bar is there only as
/// long as a note is.
class StatusNotes : public QObject {
    Q_OBJECT

  public:
    /// @param window owns the notes.
    explicit StatusNotes(QMainWindow &window);

    void show(const QString &note);
    /// Shows a note with a button that takes back what was done; it stays longer than others.
    void showUndoable(const QString &note, std::function<void()> undo);

  private:
    void show(const QString &note, int milliseconds);
    void messageChanged(const QString &message);

    QMainWindow &window;
    QPushButton *undoButton = nullptr;
};

} // namespace ellwynd
