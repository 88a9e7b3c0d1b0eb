#include "widgets/termbutton.h"

#include "outputs/snapshot/widgettexts.h"
#include "uikit/convert.h"
#include "uikit/painting.h"
#include "uikit/tooltip.h"

#include <QPainter>

namespace ellwynd {

namespace {

constexpr double inset = 4;
constexpr double chevronWidth = 16;

QFont titleFont(const VisualStyle &style) {
    return style.font(1.0, QFont::DemiBold);
}

} // namespace

TermButton::TermButton(QWidget *parent) : KeyboardButton(parent) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setAccessibleDescription(qstring(widgetTermPrompt));
}

void TermButton::present(const QString &term, const VisualStyle &newStyle) {
    visualStyle = newStyle;
    title = term;
    setAccessibleName(qstring(widgetTermParameter) + QStringLiteral(": ") + title);
    update();
}

QSize TermButton::sizeHint() const {
    const QFontMetrics metrics(titleFont(visualStyle));
    return {
        metrics.horizontalAdvance(title) + 2 * visualStyle.px(inset) + visualStyle.px(chevronWidth),
        metrics.height() + visualStyle.px(4)};
}

QRect TermButton::titleRect() const {
    return rect().adjusted(visualStyle.px(inset), 0, -visualStyle.px(chevronWidth), 0);
}

void TermButton::resizeEvent(QResizeEvent *event) {
    KeyboardButton::resizeEvent(event);
    const bool cut =
        QFontMetrics(titleFont(visualStyle)).horizontalAdvance(title) > titleRect().width();
    setToolTip(cut ? plainToolTip(title) : QString());
}

void TermButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (underMouse() || isDown()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(
            isDown() ? visualStyle.theme.controlPressed : visualStyle.theme.controlHover);
        painter.drawRoundedRect(rect(), visualStyle.px(6), visualStyle.px(6));
    }
    painter.setFont(titleFont(visualStyle));
    painter.setPen(visualStyle.theme.text);
    const int shown = drawElided(painter, titleRect(), Qt::AlignLeft | Qt::AlignVCenter, title);
    const QPointF tip(
        titleRect().left() + shown + visualStyle.px(9), rect().center().y() + visualStyle.px(2));
    const double arm = visualStyle.px(3);
    painter.setPen(
        QPen(visualStyle.theme.secondaryText, visualStyle.px(1.5), Qt::SolidLine, Qt::RoundCap));
    painter.drawPolyline(QPolygonF{tip - QPointF(arm, arm), tip, tip + QPointF(arm, -arm)});
    if (hasFocus()) {
        drawFocusRing(
            painter, QRectF(rect()).adjusted(1, 1, -1, -1), visualStyle.px(7),
            visualStyle.theme.accent);
    }
}

} // namespace ellwynd
