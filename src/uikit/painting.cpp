#include "uikit/painting.h"

#include <QFontMetrics>
#include <QPainter>

namespace ellwynd {

bool drawElided(QPainter &painter, const QRect &rect, int alignment, const QString &text) {
    const QString shown = painter.fontMetrics().elidedText(text, Qt::ElideRight, rect.width());
    painter.drawText(rect, alignment | Qt::TextSingleLine, shown);
    return shown != text;
}

QString plainToolTip(const QString &text) {
    return QStringLiteral("<span>%1</span>").arg(text.toHtmlEscaped());
}

int pillWidth(const Look &look, const QFont &font, const QString &text) {
    constexpr double padding = 5;
    return QFontMetrics(font).horizontalAdvance(text) + 2 * look.px(padding);
}

void drawPill(
    QPainter &painter, const QRect &rect, const Look &look, const LevelColors &colors,
    const QString &text) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(colors.fill);
    painter.drawRoundedRect(rect, look.px(5), look.px(5));
    painter.setPen(colors.text);
    painter.drawText(rect, Qt::AlignCenter | Qt::TextSingleLine, text);
}

void drawFocusRing(QPainter &painter, const QRect &rect, const Look &look) {
    painter.setPen(QPen(look.theme.accent, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect).adjusted(1, 1, -1, -1), look.px(7), look.px(7));
}

} // namespace ellwynd
