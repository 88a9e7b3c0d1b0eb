// What controls that paint themselves draw alike.
#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

namespace ellwynd {

/// One line that ends in "…" where there is no room, in the painter's font and pen.
/// @return the width of what was drawn.
int drawElided(QPainter &painter, const QRect &rect, int alignment, const QString &text);

/// The ring around what has the keyboard.
/// @param outline the middle of the line.
void drawFocusRing(
    QPainter &painter, const QRectF &outline, double radius, const QColor &color, double width = 2);

} // namespace ellwynd
