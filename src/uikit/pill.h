// Pills: short texts on a rounded, coloured background, such as levels.
#pragma once

#include "theme/visualstyle.h"

#include <QRect>
#include <QString>

class QPainter;

namespace ellwynd {

/// The proportions of a pill. Lengths are at text scale 1.
struct PillForm {
    /// Relative to the interface font's normal size.
    double fontFactor = 0.92;
    /// To the left and to the right of the text.
    double padding = 8;
    /// Above and below the text, in total.
    double extraHeight = 3;
    double radius = 6;
};

/// For pills in a dense row.
inline constexpr PillForm compactPill{
    .fontFactor = 0.8, .padding = 5, .extraHeight = 1, .radius = 5};

/// The size of a pill around a text.
[[nodiscard]] QSize
pillSize(const VisualStyle &style, const QString &text, const PillForm &form = {});

/// Draws a pill that fills `rect`, with the text centred; the text may be empty.
void drawPill(
    QPainter &painter, const QRect &rect, const QString &text, const LevelColors &colors,
    const VisualStyle &style, const PillForm &form = {});

} // namespace ellwynd
