// The colours, font and text size that follow from the preferences.
#pragma once

#include "theme/theme.h"

#include <QFont>

namespace ellwynd {

class UserDefaults;

/// The colours, font and scale of windows and widgets.
struct VisualStyle {
    Theme theme;
    /// The interface font at text scale 1.
    QFont base;
    double scale = 1;

    /// The interface font at a factor of its normal size.
    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const;
    /// A length scaled with the text, in device-independent pixels, at least 1.
    /// @param length at text scale 1 and the minimum font size.
    [[nodiscard]] int px(double length) const;
};

/// @param desktopIsDark whether the appearance "automatic" is dark.
/// @param base see `interfaceFont`.
[[nodiscard]] VisualStyle
makeVisualStyle(const UserDefaults &defaults, bool desktopIsDark, const QFont &base);

/// The desktop's font, with the layout's preferred family if it is installed. Must be called before
/// a style is set.
[[nodiscard]] QFont interfaceFont();

/// Whether the desktop's colours are dark. Must be called before a style is set.
[[nodiscard]] bool desktopPrefersDark();

} // namespace ellwynd
