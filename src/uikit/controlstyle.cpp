#include "uikit/controlstyle.h"

#include <QApplication>
#include <QPainter>
#include <QStyleOption>

namespace ellwynd {

namespace {

void drawCheckBox(const QStyleOption &option, QPainter &painter) {
    const bool on = option.state.testFlag(QStyle::State_On);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const QPalette &colors = option.palette;
    const auto group = enabled ? QPalette::Active : QPalette::Disabled;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(option.rect).adjusted(1.5, 1.5, -1.5, -1.5);
    const bool focused = option.state.testFlag(QStyle::State_HasFocus);
    painter.setPen(QPen(
        focused || (on && enabled) ? colors.color(QPalette::Highlight)
                                   : colors.color(QPalette::PlaceholderText),
        focused ? 2 : 1.2));
    painter.setBrush(on && enabled ? colors.highlight() : colors.button());
    painter.drawRoundedRect(box, 4, 4);
    if (on) {
        painter.setPen(QPen(
            enabled ? colors.color(QPalette::HighlightedText) : colors.color(group, QPalette::Text),
            box.width() / 7, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.setBrush(Qt::NoBrush);
        const auto at = [&](double x, double y) {
            return QPointF(box.left() + box.width() * x, box.top() + box.height() * y);
        };
        painter.drawPolyline(QPolygonF{at(0.24, 0.53), at(0.43, 0.72), at(0.77, 0.3)});
    }
    painter.restore();
}

} // namespace

ControlStyle::ControlStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void ControlStyle::drawPrimitive(
    PrimitiveElement element, const QStyleOption *option, QPainter *painter,
    const QWidget *widget) const {
    if (element == PE_IndicatorCheckBox)
        drawCheckBox(*option, *painter);
    else
        QProxyStyle::drawPrimitive(element, option, painter, widget);
}

int ControlStyle::pixelMetric(
    PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    const QFontMetrics metrics(widget != nullptr ? widget->font() : QApplication::font());
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return metrics.height() + 2;
    case PM_SmallIconSize:
    case PM_ButtonIconSize:
        return metrics.height();
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

} // namespace ellwynd
