#include "widgets/textbutton.h"

#include "uikit/painting.h"

#include <QPainter>

namespace ellwynd {

TextButton::TextButton(int flags, QWidget *parent) : KeyboardButton(parent), flags(flags) {
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setCursor(Qt::PointingHandCursor);
}

void TextButton::present(
    const QString &newText, const VisualStyle &newStyle, double newFontFactor) {
    shown = newText;
    visualStyle = newStyle;
    fontFactor = newFontFactor;
    setAccessibleName(shown);
    update();
}

void TextButton::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setFont(visualStyle.font(fontFactor));
    painter.setPen(underMouse() ? visualStyle.theme.text : visualStyle.theme.secondaryText);
    if ((flags & Qt::TextWordWrap) != 0)
        painter.drawText(rect(), flags, shown);
    else
        drawElided(painter, rect(), flags, shown);
    if (hasFocus()) {
        drawFocusRing(
            painter, QRectF(rect()).adjusted(1, 1, -1, -1), visualStyle.px(7),
            visualStyle.theme.accent);
    }
}

} // namespace ellwynd
