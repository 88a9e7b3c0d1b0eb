#include "ui/support/sparkline.h"

#include "ui/support/appearance.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

Sparkline::Sparkline(const Appearance &look, Color lineColor, QWidget *parent)
    : QWidget(parent), appearance(look), color(std::move(lineColor)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&look, &Appearance::changed, this, [this] {
        updateGeometry();
        update();
    });
}

void Sparkline::setPoints(
    std::vector<Point> newPoints, std::int64_t dayCount, std::int64_t highestCount) {
    points = std::move(newPoints);
    days = std::max<std::int64_t>(1, dayCount);
    highest = std::max<std::int64_t>(1, highestCount);
    update();
}

QSize Sparkline::sizeHint() const {
    return {appearance.px(112), appearance.px(18)};
}

void Sparkline::paintEvent(QPaintEvent *) {
    if (points.empty())
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double radius = appearance.px(6) / 2.0;
    const QRectF area = QRectF(rect()).adjusted(radius, radius + 1, -radius, -radius - 1);
    QPolygonF line;
    for (const Point &point : points) {
        line << QPointF(
            area.left() + area.width() * double(point.day) / double(days),
            area.bottom() - area.height() * double(point.count) / double(highest));
    }
    const QColor stroke = color(appearance.theme());
    painter.setPen(
        QPen(stroke, appearance.px(20) / 12.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(line);
    painter.setPen(Qt::NoPen);
    painter.setBrush(stroke);
    painter.drawEllipse(line.last(), radius, radius);
}

} // namespace ellwynd
