// Colours of the program, light and dark, shared by its windows and its widgets.
#pragma once

#include <QColor>
#include <QPalette>

#include <string_view>

namespace ellwynd {

/// How a level, or a note of the same weight, is drawn.
struct LevelColors {
    /// Text on `fill`, and on the plain background; at least 4.5 to 1 on both.
    QColor text;
    QColor fill;
};

/// One set of colours. Every text colour keeps 4.5 to 1 against the backgrounds it is drawn on.
struct Theme {
    bool dark = false;

    QColor window;
    QColor sidebar;
    /// Cards and bands, raised from the window.
    QColor surface;
    QColor control;
    QColor controlHover;
    QColor controlPressed;
    QColor separator;
    /// The outline of controls, stronger than a separator.
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
    /// Rows that are set apart because the whole class is behind them.
    QColor attention;
};

/// @param accent "system", "blue", "indigo", "purple", "teal", "pink" or "graphite"; any other word
///        counts as "system", which is blue.
[[nodiscard]] Theme makeTheme(bool dark, std::string_view accent);

/// The theme for widgets that draw themselves by palette.
[[nodiscard]] QPalette palette(const Theme &theme);

/// The contrast of two opaque colours by the WCAG formula, 1 to 21.
[[nodiscard]] double contrast(const QColor &a, const QColor &b);

} // namespace ellwynd
