#include "ui/support/announce.h"

#include <QAccessible>
#include <QWidget>

namespace ellwynd {

void announce(QWidget &window, const QString &text) {
    window.setAccessibleDescription(text);
    QAccessibleEvent event(&window, QAccessible::Alert);
    QAccessible::updateAccessibility(&event);
}

} // namespace ellwynd
