#include "uikit/textlink.h"

#include "uikit/painting.h"

#include <QEvent>
#include <QPainter>

namespace ellwynd {

TextLink::TextLink(const QString &text, QWidget *parent) : KeyboardButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setLink(text);
    setWordWrap(true);
}

void TextLink::setLink(const QString &text) {
    link = text;
    setAccessibleName(text);
    updateGeometry();
    update();
}

void TextLink::setWordWrap(bool wraps) {
    isWrapped = wraps;
    QSizePolicy policy(wraps ? QSizePolicy::Preferred : QSizePolicy::Maximum, QSizePolicy::Fixed);
    policy.setHeightForWidth(wraps);
    setSizePolicy(policy);
}

QRect TextLink::textRect(const QRect &area) const {
    const QRect inner = area.marginsRemoved(contentsMargins());
    return {inner.topLeft(), isWrapped ? wrappedSize(font(), link, inner.width()) : oneLineSize()};
}

QSize TextLink::oneLineSize() const {
    return {textWidth(font(), link), fontMetrics().height()};
}

QSize TextLink::sizeHint() const {
    return oneLineSize().grownBy(contentsMargins());
}

QSize TextLink::minimumSizeHint() const {
    constexpr int characters = 6;
    const QSize whole = sizeHint();
    return isWrapped ? QSize(
                           std::min(whole.width(), fontMetrics().averageCharWidth() * characters),
                           whole.height())
                     : whole;
}

int TextLink::heightForWidth(int width) const {
    constexpr int unlimited = 1'000'000;
    const QMargins margins = contentsMargins();
    return textRect(QRect(0, 0, width, unlimited)).height() + margins.top() + margins.bottom();
}

bool TextLink::hitButton(const QPoint &position) const {
    return textRect(rect()).contains(position);
}

void TextLink::changeEvent(QEvent *event) {
    KeyboardButton::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::ContentsRectChange)
        updateGeometry();
}

void TextLink::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRect area = textRect(rect());
    if (hasFocus()) {
        constexpr double radius = 3;
        QColor tint = palette().color(QPalette::Highlight);
        tint.setAlphaF(0.15F);
        painter.setPen(Qt::NoPen);
        painter.setBrush(tint);
        painter.drawRoundedRect(area, radius, radius);
    }
    QFont shown = font();
    shown.setUnderline(isEnabled() && (hasFocus() || underMouse()));
    painter.setFont(shown);
    painter.setPen(
        isEnabled() ? palette().color(QPalette::Link)
                    : palette().color(QPalette::Disabled, QPalette::Text));
    painter.drawText(
        area, int(Qt::AlignLeft | Qt::AlignTop) | (isWrapped ? int(Qt::TextWordWrap) : 0), link);
}

} // namespace ellwynd
