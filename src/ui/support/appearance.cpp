#include "ui/support/appearance.h"

#include "ui/support/style.h"
#include "ui/support/stylesheet.h"

#include <QApplication>
#include <QFontDatabase>

#include <algorithm>
#include <cmath>

namespace ellwynd {

namespace {

/// The face that the layout was drawn with, where it is installed.
constexpr QLatin1StringView preferredFamily("Inter");
constexpr double smallestPointSize = 9.75;

QFont baseFont() {
    QFont font = QApplication::font();
    if (QFontDatabase::families().contains(preferredFamily))
        font.setFamilies({preferredFamily, font.family()});
    if (font.pointSizeF() < smallestPointSize)
        font.setPointSizeF(smallestPointSize);
    return font;
}

} // namespace

bool desktopPrefersDark() {
    const QPalette desktop = QApplication::palette();
    return desktop.color(QPalette::Window).lightness() <
        desktop.color(QPalette::WindowText).lightness();
}

Appearance::Appearance(Settings &source, bool dark)
    : settings(source), desktopIsDark(dark), base(baseFont()) {
    QApplication::setStyle(new Style);
    for (const auto signal :
         {&Settings::appearanceDidChange, &Settings::accentThemeDidChange,
          &Settings::textScaleDidChange})
        connect(&settings, signal, this, &Appearance::apply);
    apply();
}

void Appearance::apply() {
    const std::string wanted = settings.defaults().value(preferences::appearance);
    const bool dark = wanted == "dark" || (wanted != "light" && desktopIsDark);
    current = makeTheme(dark, settings.defaults().value(preferences::accentTheme));
    scale = settings.defaults().value(preferences::textScale);
    QApplication::setFont(font());
    QApplication::setPalette(palette(current));
    qApp->setStyleSheet(styleSheet(*this));
    Q_EMIT changed();
}

QFont Appearance::font(double factor, QFont::Weight weight) const {
    QFont result = base;
    result.setPointSizeF(base.pointSizeF() * scale * factor);
    result.setWeight(weight);
    return result;
}

int Appearance::px(double length) const {
    return std::max(1, int(std::lround(length * scale * base.pointSizeF() / smallestPointSize)));
}

void Appearance::zoom(int direction) {
    constexpr double step = 0.1;
    settings.setTextScale(direction == 0 ? 1.0 : std::round((scale + direction * step) * 10) / 10);
}

} // namespace ellwynd
