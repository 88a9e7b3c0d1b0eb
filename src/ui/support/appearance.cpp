#include "ui/support/appearance.h"

#include "ui/support/stylesheet.h"
#include "uikit/controlstyle.h"

#include <QApplication>

#include <cmath>
#include <utility>

namespace ellwynd {

Appearance::Appearance(Settings &source, bool dark)
    : settings(source), desktopIsDark(dark), base(interfaceFont()) {
    QApplication::setStyle(new ControlStyle);
    for (const auto signal :
         {&Settings::appearanceDidChange, &Settings::accentThemeDidChange,
          &Settings::textScaleDidChange})
        connect(&settings, signal, this, &Appearance::apply);
    apply();
}

Appearance::~Appearance() {
    QApplication::setFont(base);
}

void Appearance::apply() {
    look = makeLook(settings.defaults(), desktopIsDark, base);
    QApplication::setFont(font());
    QApplication::setPalette(palette(look.theme));
    qApp->setStyleSheet(styleSheet(*this));
    Q_EMIT changed();
}

void Appearance::setDesktopIsDark(bool dark) {
    if (std::exchange(desktopIsDark, dark) != dark)
        apply();
}

void Appearance::zoom(int direction) {
    const double stepsPerUnit = std::round(1 / preferences::textScale.row->range.step);
    settings.setTextScale(
        direction == 0 ? 1.0 : std::round(look.scale * stepsPerUnit + direction) / stepsPerUnit);
}

} // namespace ellwynd
