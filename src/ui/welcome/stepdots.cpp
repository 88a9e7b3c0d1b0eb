#include "ui/welcome/stepdots.h"

#include "ui/support/appearance.h"

#include <QPainter>

namespace ellwynd {

namespace {

// Device-independent pixels at text scale 1.
constexpr int dot = 10;
constexpr int bar = 26;
constexpr int gap = 8;

} // namespace

StepDots::StepDots(int steps, const Appearance &appearance, QWidget *parent)
    : QWidget(parent), steps(steps), appearance(appearance) {
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setStep(1);
    connect(&appearance, &Appearance::appearanceDidChange, this, [this] {
        updateGeometry();
        update();
    });
}

void StepDots::setStep(int step) {
    current = step;
    setAccessibleName(QStringLiteral("Step %1 of %2").arg(step).arg(steps));
    setToolTip(accessibleName());
    update();
}

QSize StepDots::sizeHint() const {
    return {appearance.px(bar) + (steps - 1) * appearance.px(dot + gap), appearance.px(dot + 2)};
}

void StepDots::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const Theme &theme = appearance.theme();
    const double side = appearance.px(dot);
    double x = 0;
    for (int step = 1; step <= steps; ++step) {
        QRectF box(x, (height() - side) / 2, step == current ? appearance.px(bar) : side, side);
        x = box.right() + appearance.px(gap);
        if (step == current) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(theme.accent);
            painter.drawRoundedRect(box, side / 2, side / 2);
            continue;
        }
        painter.setBrush(Qt::NoBrush);
        painter.setPen(QPen(
            step < current ? theme.accent : theme.secondaryText, side / 6, Qt::SolidLine,
            Qt::RoundCap, Qt::RoundJoin));
        if (step > current) {
            const double half = side / 12;
            painter.drawEllipse(box.adjusted(half, half, -half, -half));
            continue;
        }
        const auto at = [&box](double across, double down) {
            return QPointF(box.left() + box.width() * across, box.top() + box.height() * down);
        };
        painter.drawPolyline(QPolygonF{at(0.08, 0.55), at(0.38, 0.85), at(0.92, 0.2)});
    }
}

} // namespace ellwynd
