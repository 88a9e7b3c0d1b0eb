#include "uikit/pill.h"

#include "uikit/painting.h"

#include <QFontMetrics>
#include <QPainter>

namespace ellwynd {

namespace {

QFont pillFont(const VisualStyle &style, const PillForm &form) {
    return style.font(form.fontFactor, QFont::DemiBold);
}

} // namespace

QSize pillSize(const VisualStyle &style, const QString &text, const PillForm &form) {
    const QFont font = pillFont(style, form);
    return {
        textWidth(font, text) + 2 * style.px(form.padding),
        QFontMetrics(font).height() + style.px(form.extraHeight)};
}

void drawPill(
    QPainter &painter, const QRect &rect, const QString &text, const LevelColors &colors,
    const VisualStyle &style, const PillForm &form) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(rect, style.px(form.radius), style.px(form.radius));
    painter.setPen(colors.text);
    painter.setFont(pillFont(style, form));
    drawLine(painter, rect, Qt::AlignCenter, text);
}

} // namespace ellwynd
