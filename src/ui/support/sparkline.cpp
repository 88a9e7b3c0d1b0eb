#include "ui/support/sparkline.h"

#include "ui/support/appearance.h"

#include <QPainter>

#include <algorithm>

namespace ellwynd {

void drawSparkline(
    QPainter &painter, const QRectF &area, const SparklineData &line, const QColor &color,
    const Appearance &appearance) {
    if (line.points.empty())
        return;
    const double radius = appearance.px(6) / 2.0;
    const QRectF inner = area.adjusted(radius, radius + 1, -radius, -radius - 1);
    const auto days = double(std::max<std::int64_t>(1, line.days));
    const auto highest = double(std::max<std::int64_t>(1, line.highest));
    QPolygonF path;
    for (const SparklinePoint &point : line.points) {
        path << QPointF(
            inner.left() + inner.width() * double(point.day) / days,
            inner.bottom() - inner.height() * double(point.count) / highest);
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(
        QPen(color, appearance.px(20) / 12.0, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(path);
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawEllipse(path.last(), radius, radius);
    painter.restore();
}

Sparkline::Sparkline(const Appearance &appearance, Color color, QWidget *parent)
    : QWidget(parent), appearance(appearance), color(std::move(color)) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        updateGeometry();
        update();
    });
}

void Sparkline::setLine(SparklineData newLine) {
    line = std::move(newLine);
    update();
}

QSize Sparkline::sizeHint() const {
    return {appearance.px(112), appearance.px(18)};
}

void Sparkline::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawSparkline(painter, rect(), line, color(appearance.theme()), appearance);
}

} // namespace ellwynd
