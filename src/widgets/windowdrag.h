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

    /// Lets the window be dragged by a button in it; such a drag does not click the button.
    void addHandle(QAbstractButton &button);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    static bool startSystemMove(QWidget &window);
    /// Handles a pointer move; true if it is a drag.
    bool drag(const QMouseEvent &event);

    QWidget &window;
    SystemMove systemMove;
    /// Where the button was pressed, in global coordinates.
    std::optional<QPoint> pressedAt;
    /// The pointer's position in the window while the window follows it.
    std::optional<QPoint> grip;
    /// A drag has begun. The window system may still report moves and the release, which must not
    /// click.
    bool isDragging = false;
};

} // namespace ellwynd
