#include "widgets/widgetlayout.h"

#include <QLine>

#include <algorithm>

namespace ellwynd {

namespace {

// Lengths at text scale 1.
constexpr double padding = 16;
constexpr double headerHeight = 22;
constexpr double headerGap = 8;
constexpr double titleInset = 4;
constexpr double summaryWidth = 152;
constexpr double summaryHeight = 114;
constexpr double summaryHeightWide = 78;
constexpr double footerHeight = 18;
constexpr double columnGap = 14;
/// Around the line between the figures and the rows.
constexpr double bandGap = 20;
/// How far a row's hover and focus marks extend beyond its text.
constexpr double outset = 6;

QSizeF cardSizeOf(WidgetSize size) {
    switch (size) {
    case WidgetSize::small:
        return {184, 210};
    case WidgetSize::medium:
        return {452, 210};
    case WidgetSize::large:
        break;
    }
    return {452, 450};
}

double rowHeight(WidgetSize size) {
    return size == WidgetSize::medium ? 40 : 45;
}

} // namespace

WidgetLayout::WidgetLayout(WidgetSize size, const QSize &card, const VisualStyle &style)
    : size(size), card(card), style(style) {}

QSize WidgetLayout::cardSize(WidgetSize size, const VisualStyle &style) {
    const QSizeF wanted = cardSizeOf(size);
    return {style.px(wanted.width()), style.px(wanted.height())};
}

QRect WidgetLayout::inner() const {
    const int pad = px(padding);
    return QRect(QPoint(), card).adjusted(pad, pad, -pad, -pad);
}

int WidgetLayout::contentTop() const {
    return inner().top() + px(headerHeight) + px(headerGap);
}

QRect WidgetLayout::title(int titleWidth, int asOfWidth) const {
    const int beside = size == WidgetSize::small ? 0 : asOfWidth + px(columnGap);
    const int inset = px(titleInset);
    return {
        inner().left() - inset, inner().top(),
        std::min(titleWidth, inner().width() - beside + inset), px(headerHeight)};
}

QRect WidgetLayout::asOf(int asOfWidth) const {
    if (size == WidgetSize::small)
        return inner().adjusted(0, contentTop() - inner().top() + px(summaryHeight), 0, 0);
    return {inner().right() + 1 - asOfWidth, inner().top(), asOfWidth, px(headerHeight)};
}

QRect WidgetLayout::summary() const {
    if (size == WidgetSize::large)
        return {inner().left(), contentTop(), inner().width(), px(summaryHeightWide)};
    return {inner().left(), contentTop(), px(summaryWidth), px(summaryHeight)};
}

QRect WidgetLayout::rows() const {
    const int pad = px(padding);
    const int top = pad + px(headerHeight + headerGap);
    QRect area(pad, top, card.width() - 2 * pad, card.height() - top - pad);
    if (size == WidgetSize::medium)
        area.setLeft(area.left() + px(summaryWidth + columnGap));
    else
        area.setTop(area.top() + px(summaryHeightWide + bandGap));
    return area.adjusted(-px(outset), 0, px(outset), 0);
}

QRect WidgetLayout::row(std::size_t index) const {
    const QRect area = rows();
    const int height = px(rowHeight(size));
    return {area.left(), area.top() + int(index) * height, area.width(), height};
}

std::size_t WidgetLayout::rowCapacity() const {
    if (size == WidgetSize::small)
        return 0;
    const int available = rows().height() - px(footerHeight);
    return std::size_t(std::max(0, available / px(rowHeight(size))));
}

QRect WidgetLayout::footer() const {
    const QRect area = rows();
    return {
        area.left() + px(outset), area.bottom() + 1 - px(footerHeight), area.width(),
        px(footerHeight)};
}

std::optional<QLine> WidgetLayout::separator() const {
    if (size != WidgetSize::large)
        return std::nullopt;
    const int y = rows().top() - px(bandGap / 2);
    return QLine(px(padding), y, card.width() - px(padding), y);
}

} // namespace ellwynd
