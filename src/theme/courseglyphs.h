// The glyphs on course tiles.
#pragma once

#include <QColor>
#include <QRectF>

#include <string_view>

class QPainter;

namespace ellwynd {

/// Draws the glyph of a word of `courseSettings::iconWords` into a square. The file in `glyphs/`
/// has a view box of 24 by 24. Its "fill" and "stroke" attributes other than "none" are replaced by
/// `color`, and its "stroke-width" by a width that suits the size.
/// @return false, without drawing anything, for any other word.
bool drawCourseGlyph(
    QPainter &painter, std::string_view word, const QRectF &box, const QColor &color);

} // namespace ellwynd
