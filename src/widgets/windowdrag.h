// Dragging a window that has no frame.
#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

class QAbstractButton;
class QMouseEvent;
class QWidget;

namespace ellwynd {

/// Moves a window with the pointer, wherever in it the left button went down.
class WindowDrag : public QObject {
    Q_OBJECT

  public:
    explicit WindowDrag(QWidget &window);

    /// Lets the window be dragged by a button in it; a drag that begins there is no click.
    void addHandle(QAbstractButton &button);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    /// Whether the pointer's move is a drag.
    bool drag(const QMouseEvent &event);

    QWidget &window;
    /// Where the pointer went down, on the desktop.
    std::optional<QPoint> pressedAt;
    /// The pointer's place in the window while the window follows it.
    std::optional<QPoint> grip;
};

} // namespace ellwynd
