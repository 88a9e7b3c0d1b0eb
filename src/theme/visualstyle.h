// Light or dark, the accent and the text size, as the preferences have them.
#pragma once

#include "theme/theme.h"

#include <QFont>

namespace ellwynd {

class UserDefaults;

/// The colours, the font and the scale that windows and widgets are drawn with.
struct VisualStyle {
    Theme theme;
    /// The interface font at text scale 1.
    QFont base;
    double scale = 1;

    /// The interface font at a factor of its normal size.
    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const;
    /// A length that grows with the text, in device-independent pixels; `length` is for text
    /// scale 1.
    [[nodiscard]] int px(double length) const;
};

/// @param desktopIsDark whether the appearance "automatic" is dark.
/// @param base see `interfaceFont`.
[[nodiscard]] VisualStyle
makeVisualStyle(const UserDefaults &defaults, bool desktopIsDark, const QFont &base);

/// The desktop's font, in the face that the layout was drawn with where it is installed. Asked
/// before a style is set.
[[nodiscard]] QFont interfaceFont();

/// Whether the desktop's own colours are dark. Asked before a style is set.
[[nodiscard]] bool desktopPrefersDark();

} // namespace ellwynd
