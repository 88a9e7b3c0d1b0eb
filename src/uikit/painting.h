// Drawing shared by controls that paint themselves.
#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

namespace ellwynd {

/// Draws one line in the painter's font and pen, elided when it does not fit.
/// @return the width of the drawn text.
int drawElided(QPainter &painter, const QRect &rect, int alignment, const QString &text);

/// Draws the ring around the focused item.
/// @param outline the centre line of the ring.
void drawFocusRing(
    QPainter &painter, const QRectF &outline, double radius, const QColor &color, double width = 2);

} // namespace ellwynd
