// Dragging a frameless window.
#pragma once

#include <QObject>
#include <QPoint>

#include <functional>
#include <optional>

class QAbstractButton;
class QMouseEvent;
class QWidget;

namespace ellwynd {

/// Moves a window with the pointer while the left button is pressed anywhere in it.
class WindowDrag : public QObject {
    Q_OBJECT

  public:
    /// Asks the window system to move a window with the pointer. Returns false if it cannot.
    using SystemMove = std::function<bool(QWidget &window)>;

    explicit WindowDrag(QWidget &window, SystemMove systemMove = startSystemMove);

    /// Asks the window system to move a window with the pointer.
    static bool startSystemMove(QWidget &window);

    /// From now on, the window does not follow the pointer: `move` is called with the distance when
    /// the button is released.
    void moveOnRelease(std::function<void(QPoint distance)> move);

    /// Lets the window be dragged by a button in it; such a drag does not click the button.
    void addHandle(QAbstractButton &button);

    /// Whether the teacher is moving the window. If the window system moves it, the end of a drag
    /// may go unnoticed until the next press of the button.
    [[nodiscard]] bool isActive() const { return isDragging; }
    /// The moves that follow are not the teacher's.
    void end();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    /// Handles a pointer move; true if it is a drag.
    bool drag(const QMouseEvent &event);

    QWidget &window;
    SystemMove systemMove;
    std::function<void(QPoint)> moveWhenReleased;
    /// Where the button was pressed, in global coordinates.
    std::optional<QPoint> pressedAt;
    /// The pointer's position in the window while the window follows it.
    std::optional<QPoint> grip;
    /// The position of the pointer at the start of a drag that moves the window at its end.
    std::optional<QPoint> draggedFrom;
    /// A drag has begun. The window system may still report moves and the release, which must not
    /// click.
    bool isDragging = false;
};

} // namespace ellwynd
