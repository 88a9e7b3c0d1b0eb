// The small drawings that a course's tile can carry.
#pragma once

#include <QColor>
#include <QRectF>

#include <string_view>

class QPainter;

namespace ellwynd {

/// Draws the glyph of a word of `courseSettings::iconWords`, filling a square. Its file in
/// `glyphs/` is drawn in one colour on a field of 24 by 24: whatever the file's attributes "fill"
/// and "stroke" paint takes `color`, and every "stroke-width" the weight that suits the size.
/// @return false, with nothing drawn, for any other word.
bool drawCourseGlyph(
    QPainter &painter, std::string_view word, const QRectF &box, const QColor &color);

} // namespace ellwynd
