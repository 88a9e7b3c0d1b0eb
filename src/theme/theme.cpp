#include "theme/theme.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace ellwynd {

namespace {

/// An accent colour for light and dark backgrounds.
struct Accent {
    std::string_view name;
    QRgb light;
    QRgb dark;
};

constexpr std::array accents{
    Accent{"blue", 0xff1f5be0, 0xff82acff},   Accent{"indigo", 0xff4f46e5, 0xff9d9bff},
    Accent{"purple", 0xff7c3aed, 0xffbd94ff}, Accent{"teal", 0xff0f766e, 0xff4fd1c1},
    Accent{"pink", 0xffbe185d, 0xfff78fbe},   Accent{"graphite", 0xff4b5563, 0xffb4bcc8},
};

const Accent &accentNamed(std::string_view name) {
    const auto *found = std::ranges::find(accents, name, &Accent::name);
    return found != accents.end() ? *found : accents.front();
}

QColor mixed(const QColor &a, const QColor &b, double share) {
    const auto mix = [share](int x, int y) {
        return int(std::lround(x * (1 - share) + y * share));
    };
    return {mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue())};
}

double luminance(const QColor &color) {
    const auto linear = [](double channel) {
        return channel <= 0.03928 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
        0.0722 * linear(color.blueF());
}

Theme lightTheme(const Accent &accent) {
    Theme theme;
    theme.window = QColor(0xffffff);
    theme.sidebar = QColor(0xf3f4f8);
    theme.surface = QColor(0xfafbfc);
    theme.control = QColor(0xffffff);
    theme.controlHover = QColor(0xf3f5f9);
    theme.controlPressed = QColor(0xe6e9f0);
    theme.separator = QColor(0xe3e6ec);
    theme.outline = QColor(0xcdd2dc);
    theme.text = QColor(0x14171f);
    theme.secondaryText = QColor(0x5b6272);
    theme.disabledText = QColor(0x9aa1ae);
    theme.accent = QColor(accent.light);
    theme.accentText = QColor(0xffffff);
    theme.link = theme.accent;
    theme.selection = mixed(theme.window, theme.accent, 0.09);
    theme.hover = mixed(theme.window, theme.accent, 0.05);
    theme.atRisk = {QColor(0xb42318), QColor(0xfee4e2), QColor(0xd13b3b)};
    theme.concern = {QColor(0xa04100), QColor(0xfdebd6), QColor(0xe0873a)};
    theme.watch = {QColor(0x6a5a00), QColor(0xfbf2bd), QColor(0xd4b72b)};
    theme.ok = {QColor(0x23713c), QColor(0xe2f5e7), QColor(0x4caf6d)};
    theme.attention = QColor(0xa34a05);
    return theme;
}

Theme darkTheme(const Accent &accent) {
    Theme theme;
    theme.dark = true;
    theme.window = QColor(0x1e1f24);
    theme.sidebar = QColor(0x26282f);
    theme.surface = QColor(0x25272d);
    theme.control = QColor(0x2c2e36);
    theme.controlHover = QColor(0x363944);
    theme.controlPressed = QColor(0x40444f);
    theme.separator = QColor(0x363941);
    theme.outline = QColor(0x4a4e59);
    theme.text = QColor(0xf1f2f5);
    theme.secondaryText = QColor(0xaeb4c0);
    theme.disabledText = QColor(0x6d7380);
    theme.accent = QColor(accent.dark);
    theme.accentText = QColor(0x11131a);
    theme.link = theme.accent;
    theme.selection = mixed(theme.window, theme.accent, 0.17);
    theme.hover = mixed(theme.window, theme.accent, 0.08);
    theme.atRisk = {QColor(0xff9b92), QColor(0x4b2124), QColor(0xe0615a)};
    theme.concern = {QColor(0xf7b26a), QColor(0x472f18), QColor(0xd98a45)};
    theme.watch = {QColor(0xecdb6a), QColor(0x3f3914), QColor(0xc9b53f)};
    theme.ok = {QColor(0x7fd69a), QColor(0x1d3a28), QColor(0x56a872)};
    theme.attention = QColor(0xf5a524);
    return theme;
}

} // namespace

Theme makeTheme(bool dark, std::string_view accent) {
    return dark ? darkTheme(accentNamed(accent)) : lightTheme(accentNamed(accent));
}

QPalette palette(const Theme &theme) {
    QPalette colors;
    colors.setColor(QPalette::Window, theme.window);
    colors.setColor(QPalette::WindowText, theme.text);
    colors.setColor(QPalette::Base, theme.control);
    colors.setColor(QPalette::AlternateBase, theme.surface);
    colors.setColor(QPalette::Text, theme.text);
    colors.setColor(QPalette::PlaceholderText, theme.secondaryText);
    colors.setColor(QPalette::Button, theme.control);
    colors.setColor(QPalette::ButtonText, theme.text);
    colors.setColor(QPalette::BrightText, theme.atRisk.text);
    colors.setColor(QPalette::ToolTipBase, theme.surface);
    colors.setColor(QPalette::ToolTipText, theme.text);
    colors.setColor(QPalette::Highlight, theme.accent);
    colors.setColor(QPalette::HighlightedText, theme.accentText);
    colors.setColor(QPalette::Link, theme.link);
    colors.setColor(QPalette::LinkVisited, theme.link);
    colors.setColor(QPalette::Light, theme.controlHover);
    colors.setColor(QPalette::Midlight, theme.separator);
    colors.setColor(QPalette::Mid, theme.outline);
    colors.setColor(QPalette::Dark, theme.outline);
    colors.setColor(QPalette::Shadow, QColor(0, 0, 0, theme.dark ? 160 : 60));
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        colors.setColor(QPalette::Disabled, role, theme.disabledText);
    return colors;
}

double contrast(const QColor &a, const QColor &b) {
    const double first = luminance(a);
    const double second = luminance(b);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace ellwynd
