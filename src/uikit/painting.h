// Drawing shared by controls that paint themselves. For the main thread.
#pragma once

#include <QColor>
#include <QRect>
#include <QString>

#include <array>

class QFont;
class QPainter;

namespace ellwynd {

/// The width of a line of text on the screen, as `QFontMetrics::horizontalAdvance` measures it.
///
/// Shaping a text takes far longer than drawing it, and a control draws the same texts again and
/// again. So this and the functions below keep the lines that were last asked for.
int textWidth(const QFont &font, const QString &text);

/// Releases the kept lines, some of which are names.
void forgetTexts();

/// The widths of the first 256 characters of a font. Adding them up is far quicker than measuring a
/// text.
class CharacterWidths {
  public:
    /// Of no font: only an empty text surely fits.
    CharacterWidths() = default;
    explicit CharacterWidths(const QFont &font);

    /// Whether a line of text fits; false if in doubt. Other characters count as very wide.
    [[nodiscard]] bool surelyFit(const QString &text, int width) const;
    /// Whether a line of text is too wide, however close its letters are; false if in doubt.
    [[nodiscard]] bool surelyExceed(const QString &text, int width) const;

  private:
    static constexpr double unlimited = 1e9;

    double widest = unlimited;
    std::array<double, 256> widths = [] {
        std::array<double, 256> all{};
        all.fill(unlimited);
        return all;
    }();
};

/// Whether a line of text fits into a width. It is only measured if the widths of its characters
/// leave it in doubt.
bool fitsWidth(const QFont &font, const QString &text, int width);

/// The size of a text whose lines are broken at words, as `QFontMetrics::boundingRect` measures it.
QSize wrappedSize(const QFont &font, const QString &text, int width);

/// Draws one line in the painter's font and pen. Line breaks and tabs become spaces. What does not
/// fit is clipped.
/// @param alignment one of Qt's horizontal flags, with `Qt::AlignTop` or `Qt::AlignVCenter`.
void drawLine(QPainter &painter, const QRect &rect, int alignment, const QString &text);

/// Draws one line as `drawLine` does, elided when it does not fit.
/// @return the width of the drawn text.
int drawElided(
    QPainter &painter, const QRect &rect, int alignment, const QString &text,
    Qt::TextElideMode mode = Qt::ElideRight);

/// Draws the ring around the focused item.
/// @param outline the centre line of the ring.
void drawFocusRing(
    QPainter &painter, const QRectF &outline, double radius, const QColor &color, double width = 2);

} // namespace ellwynd
