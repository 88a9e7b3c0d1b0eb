#include "theme/visualstyle.h"

#include "preferences/userdefaults.h"

#include <QFontDatabase>
#include <QGuiApplication>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

constexpr QLatin1StringView preferredFamily("Inter");
constexpr double minPointSize = 9.75;

} // namespace

QFont VisualStyle::font(double factor, QFont::Weight weight) const {
    QFont result = base;
    // Nearly equal sizes become one, since each size of a font takes milliseconds to load.
    constexpr double steps = 16;
    result.setPointSizeF(base.pointSizeF() * scale * std::round(factor * steps) / steps);
    result.setWeight(weight);
    return result;
}

int VisualStyle::px(double length) const {
    return std::max(1, int(std::lround(length * scale * base.pointSizeF() / minPointSize)));
}

VisualStyle makeVisualStyle(const UserDefaults &defaults, bool desktopIsDark, const QFont &base) {
    const std::string appearance = defaults.value(preferences::appearance);
    const bool dark = appearance == "dark" || (appearance != "light" && desktopIsDark);
    return {
        .theme = makeTheme(dark, defaults.value(preferences::accentTheme)),
        .base = base,
        .scale = defaults.value(preferences::textScale)};
}

QFont interfaceFont() {
    QFont font = QGuiApplication::font();
    if (QFontDatabase::families().contains(preferredFamily))
        font.setFamilies({preferredFamily, font.family()});
    if (font.pointSizeF() < minPointSize)
        font.setPointSizeF(minPointSize);
    return font;
}

bool desktopPrefersDark() {
    const QPalette desktop = QGuiApplication::palette();
    return desktop.color(QPalette::Window).lightness() <
        desktop.color(QPalette::WindowText).lightness();
}

} // namespace ellwynd
