// Where the parts of a widget's card lie.
#pragma once

#include "theme/visualstyle.h"
#include "widgets/placedwidget.h"

#include <QRect>

namespace ellwynd {

/// The places of a card's parts, in its own coordinates.
class WidgetLayout {
  public:
    /// @param card the card's size as it is on the screen, which may be too small for `cardSize`.
    WidgetLayout(WidgetSize size, const QSize &card, const VisualStyle &style);

    /// The size that a card should have.
    [[nodiscard]] static QSize cardSize(WidgetSize size, const VisualStyle &style);

    /// Everything within the padding.
    [[nodiscard]] QRect inner() const;
    /// @param asOfWidth what the time beside the title takes.
    [[nodiscard]] QRect title(int titleWidth, int asOfWidth) const;
    [[nodiscard]] QRect asOf(int asOfWidth) const;
    [[nodiscard]] QRect summary() const;
    /// @param index counts the rows from the top.
    [[nodiscard]] QRect row(std::size_t index) const;
    /// How many rows there is room for.
    [[nodiscard]] std::size_t rowCapacity() const;
    [[nodiscard]] QRect footer() const;
    /// The line between the figures and the rows; absent where they are side by side.
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
