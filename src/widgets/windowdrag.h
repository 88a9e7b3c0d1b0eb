// Dragging a frameless window.
#pragma once

#include <QObject>
#include <QPoint>

#include <optional>

class QAbstractButton;
class QMouseEvent;
class QWidget;

namespace ellwynd {

/// Moves a window with the pointer while the left button is pressed anywhere in it.
class WindowDrag : public QObject {
    Q_OBJECT

  public:
    explicit WindowDrag(QWidget &window);

    /// Lets the window be dragged by a button in it; such a drag does not click the button.
    void addHandle(QAbstractButton &button);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    /// Handles a pointer move; true if it is a drag.
    bool drag(const QMouseEvent &event);

    QWidget &window;
    /// Where the button was pressed, in global coordinates.
    std::optional<QPoint> pressedAt;
    /// The pointer's position in the window while the window follows it.
    std::optional<QPoint> grip;
};

} // namespace ellwynd
