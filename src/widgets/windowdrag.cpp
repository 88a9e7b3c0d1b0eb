#include "widgets/windowdrag.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

namespace ellwynd {

WindowDrag::WindowDrag(QWidget &window) : QObject(&window), window(window) {
    window.installEventFilter(this);
}

void WindowDrag::addHandle(QAbstractButton &button) {
    button.installEventFilter(this);
}

bool WindowDrag::drag(const QMouseEvent &event) {
    const QPoint pointer = event.globalPosition().toPoint();
    if (grip) {
        window.move(pointer - *grip);
        return true;
    }
    if (!pressedAt || !event.buttons().testFlag(Qt::LeftButton) ||
        (pointer - *pressedAt).manhattanLength() < QApplication::startDragDistance())
        return false;
    // If the window system moves the window, it handles the pointer from here on.
    if (!window.windowHandle()->startSystemMove())
        grip = *pressedAt - window.pos();
    pressedAt.reset();
    return true;
}

bool WindowDrag::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        if (mouse->button() == Qt::LeftButton)
            pressedAt = mouse->globalPosition().toPoint();
        break;
    }
    case QEvent::MouseMove:
        if (drag(*static_cast<QMouseEvent *>(event))) {
            if (auto *button = qobject_cast<QAbstractButton *>(watched))
                button->setDown(false);
            return true;
        }
        break;
    case QEvent::MouseButtonRelease:
        pressedAt.reset();
        grip.reset();
        break;
    default:
        break;
    }
    return false;
}

} // namespace ellwynd
