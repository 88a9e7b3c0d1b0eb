#include "uikit/painting.h"

#include <QFontMetrics>
#include <QPainter>

namespace ellwynd {

int drawElided(QPainter &painter, const QRect &rect, int alignment, const QString &text) {
    const QFontMetrics metrics = painter.fontMetrics();
    const QString shown = metrics.elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, alignment | Qt::TextSingleLine, shown);
    return metrics.horizontalAdvance(shown);
}

void drawFocusRing(
    QPainter &painter, const QRectF &outline, double radius, const QColor &color, double width) {
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(outline, radius, radius);
}

} // namespace ellwynd
