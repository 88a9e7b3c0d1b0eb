#include "widgets/windowdrag.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMouseEvent>
#include <QWindow>

#include <utility>

namespace ellwynd {

WindowDrag::WindowDrag(QWidget &window, SystemMove systemMove)
    : QObject(&window), window(window), systemMove(std::move(systemMove)) {
    window.installEventFilter(this);
}

void WindowDrag::addHandle(QAbstractButton &button) {
    button.installEventFilter(this);
}

void WindowDrag::moveOnRelease(std::function<void(QPoint distance)> move) {
    moveWhenReleased = std::move(move);
}

void WindowDrag::end() {
    pressedAt.reset();
    grip.reset();
    draggedFrom.reset();
    isDragging = false;
}

bool WindowDrag::startSystemMove(QWidget &window) {
    return window.windowHandle()->startSystemMove();
}

bool WindowDrag::drag(const QMouseEvent &event) {
    const QPoint pointer = event.globalPosition().toPoint();
    if (grip) {
        window.move(pointer - *grip);
        return true;
    }
    if (isDragging)
        return true;
    if (!pressedAt || !event.buttons().testFlag(Qt::LeftButton) ||
        (pointer - *pressedAt).manhattanLength() < QApplication::startDragDistance())
        return false;
    // If the window system moves the window, it handles the pointer from here on.
    isDragging = true;
    if (moveWhenReleased)
        draggedFrom = pressedAt;
    else if (!systemMove(window))
        grip = *pressedAt - window.pos();
    pressedAt.reset();
    return true;
}

bool WindowDrag::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::MouseButtonPress: {
        const auto *mouse = static_cast<QMouseEvent *>(event);
        end();
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
        if (draggedFrom) {
            const auto *mouse = static_cast<QMouseEvent *>(event);
            moveWhenReleased(mouse->globalPosition().toPoint() - *draggedFrom);
        }
        if (const bool wasDragging = isDragging; end(), wasDragging) {
            if (auto *button = qobject_cast<QAbstractButton *>(watched))
                button->setDown(false);
            return true;
        }
        break;
    default:
        break;
    }
    return false;
}

} // namespace ellwynd
