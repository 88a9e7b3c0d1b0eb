// Notes over the lower edge of a window.
#pragma once

#include "app/undo/undostack.h"

#include <QFrame>
#include <QPointer>
#include <QTimer>

class QLabel;
class QPushButton;

namespace ellwynd {

class Appearance;

/// Shows a note about what was done for a few seconds and announces it to screen readers. A note
/// about a step of the undo stack has an Undo button, and is hidden when another step is the
/// newest.
///
/// The note covers part of the view below it, which does not move. It does not take the focus; Tab
/// reaches its button.
class StatusNotes : public QFrame {
    Q_OBJECT

  public:
    /// @param area the part of its window that notes are shown over; the window owns this object.
    ///        The arguments must outlive it.
    /// @param isInFront whether this window shows the notes of the stack, of several that could.
    StatusNotes(
        QWidget &area, UndoStack &undo, const Appearance &appearance,
        std::function<bool()> isInFront);

    void showNote(const QString &note);
    /// The note on screen; empty for none.
    [[nodiscard]] QString text() const;

    /// The time of the note is over; called by its timer. The note stays while the pointer or the
    /// focus is in it.
    void expire();

    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void showStep();
    void present(const QString &note, std::chrono::milliseconds duration);
    void dismiss();
    void returnFocus();
    void place();
    void applyAppearance();
    void focusDidChange(QWidget *from, QWidget *to);

    QWidget &area;
    UndoStack &undo;
    const Appearance &appearance;
    std::function<bool()> isInFront;
    QLabel *label;
    QPushButton *undoButton;
    /// The step that the button undoes; 0 for a note without it.
    UndoStack::ID step = 0;
    QTimer timer;
    /// The widget that had the focus before the button got it.
    QPointer<QWidget> focusBefore;
};

} // namespace ellwynd
