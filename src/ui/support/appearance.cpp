#include "ui/support/appearance.h"

#include "ui/support/stylesheet.h"
#include "uikit/controlstyle.h"

#include <QApplication>

#include <cmath>
#include <utility>

namespace ellwynd {

Appearance::Appearance(Settings &settings, bool desktopIsDark)
    : settings(settings), desktopIsDark(desktopIsDark), base(interfaceFont()) {
    QApplication::setStyle(new ControlStyle);
    for (const auto signal :
         {&Settings::appearanceDidChange, &Settings::accentThemeDidChange,
          &Settings::textScaleDidChange})
        connect(&settings, signal, this, &Appearance::applyStyle);
    applyStyle();
}

Appearance::~Appearance() {
    QApplication::setFont(base);
}

void Appearance::applyStyle() {
    visualStyle = makeVisualStyle(settings.defaults(), desktopIsDark, base);
    QApplication::setFont(font());
    QApplication::setPalette(palette(visualStyle.theme));
    qApp->setStyleSheet(styleSheet(*this));
    Q_EMIT appearanceDidChange();
}

void Appearance::setDesktopIsDark(bool dark) {
    if (std::exchange(desktopIsDark, dark) != dark)
        applyStyle();
}

void Appearance::zoom(int direction) {
    const double stepsPerUnit = std::round(1 / preferences::textScale.row->range.step);
    settings.setTextScale(
        direction == 0 ? 1.0
                       : std::round(visualStyle.scale * stepsPerUnit + direction) / stepsPerUnit);
}

} // namespace ellwynd
