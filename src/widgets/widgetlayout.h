// The geometry of a widget's card.
#pragma once

#include "theme/visualstyle.h"
#include "widgets/placedwidget.h"

#include <QRect>

namespace ellwynd {

/// The rectangles of a card's parts, in the card's coordinates.
class WidgetLayout {
  public:
    /// @param card the card's actual size; smaller than `cardSize` on a small screen.
    /// @param style must outlive this object.
    WidgetLayout(WidgetSize size, const QSize &card, const VisualStyle &style);

    /// The preferred size of a card.
    [[nodiscard]] static QSize cardSize(WidgetSize size, const VisualStyle &style);

    /// The card without its padding.
    [[nodiscard]] QRect inner() const;
    /// @param asOfWidth the width of the time beside the title.
    [[nodiscard]] QRect title(int titleWidth, int asOfWidth) const;
    [[nodiscard]] QRect asOf(int asOfWidth) const;
    [[nodiscard]] QRect summary() const;
    /// @param index from 0 for the first row.
    [[nodiscard]] QRect row(std::size_t index) const;
    /// How many rows fit.
    [[nodiscard]] std::size_t rowCapacity() const;
    [[nodiscard]] QRect footer() const;
    /// The line between the summary and the rows; absent where they are side by side.
    [[nodiscard]] std::optional<QLine> separator() const;

  private:
    [[nodiscard]] int px(double length) const { return style.px(length); }
    [[nodiscard]] int contentTop() const;
    [[nodiscard]] QRect rows() const;

    WidgetSize size;
    QSize card;
    const VisualStyle &style;
};

} // namespace ellwynd
