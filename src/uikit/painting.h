// What controls that paint themselves draw alike.
#pragma once

#include "theme/visualstyle.h"

#include <QRect>
#include <QString>

class QPainter;
class QWidget;

namespace ellwynd {

/// One line that ends in "…" where there is no room. Returns whether it was cut.
bool drawElided(QPainter &painter, const QRect &rect, int alignment, const QString &text);

/// A text as a tooltip; a text that looks like markup stays a text.
[[nodiscard]] QString plainToolTip(const QString &text);

/// The width of a coloured pill around a text in `font`.
[[nodiscard]] int pillWidth(const Look &look, const QFont &font, const QString &text);
void drawPill(
    QPainter &painter, const QRect &rect, const Look &look, const LevelColors &colors,
    const QString &text);

/// The ring around what has the keyboard.
void drawFocusRing(QPainter &painter, const QRect &rect, const Look &look);

} // namespace ellwynd
