// A short text on a rounded, coloured ground, as levels are shown.
#pragma once

#include "theme/visualstyle.h"

#include <QRect>
#include <QString>

class QPainter;

namespace ellwynd {

/// The proportions of a pill; lengths are for text scale 1.
struct PillForm {
    /// Of the interface font's normal size.
    double fontFactor = 0.92;
    /// Beside the text, on either side.
    double padding = 8;
    /// Above and below the text, together.
    double extraHeight = 3;
    double radius = 6;
};

/// For pills in a dense row.
inline constexpr PillForm compactPill{
    .fontFactor = 0.8, .padding = 5, .extraHeight = 1, .radius = 5};

/// The size of a pill around a text.
[[nodiscard]] QSize
pillSize(const VisualStyle &style, const QString &text, const PillForm &form = {});

/// Draws a pill that fills `rect`, with the text in its middle; the text may be empty.
void drawPill(
    QPainter &painter, const QRect &rect, const QString &text, const LevelColors &colors,
    const VisualStyle &style, const PillForm &form = {});

} // namespace ellwynd
