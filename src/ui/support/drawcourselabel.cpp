#include "ui/support/drawcourselabel.h"

#include "app/courses/courselabel.h"
#include "ui/support/appearance.h"
#include "uikit/convert.h"
#include "uikit/painting.h"

#include <QPainter>

namespace ellwynd {

void drawCourseLabel(
    QPainter &painter, const QRect &area, const CourseLabel &label, QFont::Weight weight,
    const Appearance &appearance) {
    const Theme &theme = appearance.theme();
    const QFont nameFont = appearance.font(1, weight);
    const QFont codeFont = appearance.font(0.87);
    const QFontMetrics metrics(nameFont);
    const int codeHeight = label.code.empty() ? 0 : QFontMetrics(codeFont).height();
    const int top = area.center().y() - (metrics.height() + codeHeight) / 2 + 1;
    painter.setFont(nameFont);
    painter.setPen(theme.text);
    drawElided(
        painter, QRect(area.left(), top, area.width(), metrics.height()),
        Qt::AlignLeft | Qt::AlignVCenter, qstring(label.name),
        label.endMatters ? Qt::ElideMiddle : Qt::ElideRight);
    painter.setFont(codeFont);
    painter.setPen(theme.secondaryText);
    drawElided(
        painter, QRect(area.left(), top + metrics.height(), area.width(), codeHeight),
        Qt::AlignLeft | Qt::AlignVCenter, qstring(label.code));
}

} // namespace ellwynd
