#include "uikit/keyboardbutton.h"

#include <QKeyEvent>

namespace ellwynd {

void KeyboardButton::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        click();
    else
        QAbstractButton::keyPressEvent(event);
}

} // namespace ellwynd
