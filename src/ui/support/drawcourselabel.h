// Drawing of a course's name over its code.
#pragma once

#include <QFont>

class QPainter;
class QRect;

namespace ellwynd {

class Appearance;
struct CourseLabel;

/// Draws both at the left of `area`, vertically centred; the code in a smaller font.
void drawCourseLabel(
    QPainter &painter, const QRect &area, const CourseLabel &label, QFont::Weight weight,
    const Appearance &appearance);

} // namespace ellwynd
