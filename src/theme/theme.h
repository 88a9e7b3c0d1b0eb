// The light and dark colours of the program's windows and widgets.
#pragma once

#include <QColor>
#include <QPalette>

#include <string_view>

namespace ellwynd {

/// The colours of a level, or of a note of the same severity.
struct LevelColors {
    /// For text on `fill` and on the plain background; its contrast is at least 4.5 to 1 on both.
    QColor text;
    QColor fill;
    /// For bars and other areas without text.
    QColor bar{};
};

/// A set of colours. Text colours have a contrast of at least 4.5 to 1 on their backgrounds.
struct Theme {
    bool dark = false;

    QColor window;
    QColor sidebar;
    /// The background of cards and bands in a window.
    QColor surface;
    QColor control;
    QColor controlHover;
    QColor controlPressed;
    QColor separator;
    /// The outline of controls; has more contrast than a separator.
    QColor outline;

    QColor text;
    QColor secondaryText;
    QColor disabledText;

    QColor accent;
    /// Text on `accent`.
    QColor accentText;
    /// The accent as text on the plain backgrounds.
    QColor link;
    QColor selection;
    QColor hover;

    LevelColors atRisk;
    LevelColors concern;
    LevelColors watch;
    LevelColors ok;
    /// Rows of class-wide missing work.
    QColor attention;
};

/// @param accent "system", "blue", "indigo", "purple", "teal", "pink" or "graphite"; "system" and
///        unknown words mean blue.
[[nodiscard]] Theme makeTheme(bool dark, std::string_view accent);

/// The theme as a palette, for standard widgets.
[[nodiscard]] QPalette palette(const Theme &theme);

/// The contrast of two opaque colours by the WCAG formula, 1 to 21.
[[nodiscard]] double contrast(const QColor &a, const QColor &b);

} // namespace ellwynd
