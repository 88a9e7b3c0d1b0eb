// Light or dark, the accent and the text size, as they are now.
#pragma once

#include "app/shell/settings.h"
#include "theme/visualstyle.h"

#include <QObject>

namespace ellwynd {

/// Follows the appearance preferences and applies them to the application. Views that paint
/// themselves read colours and sizes here and repaint on `appearanceDidChange`.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// @param desktopIsDark whether "automatic" is dark.
    Appearance(Settings &settings, bool desktopIsDark);
    /// Gives the application its own font back, from which the next one begins.
    ~Appearance() override;

    [[nodiscard]] const VisualStyle &style() const { return visualStyle; }
    [[nodiscard]] const Theme &theme() const { return visualStyle.theme; }

    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const {
        return visualStyle.font(factor, weight);
    }
    [[nodiscard]] int px(double length) const { return visualStyle.px(length); }

    /// Whether "automatic" is dark from now on.
    void setDesktopIsDark(bool dark);
    /// One step larger (1) or smaller (-1); 0 is the normal size.
    void zoom(int direction);

  Q_SIGNALS:
    void appearanceDidChange();

  private:
    void applyStyle();

    Settings &settings;
    bool desktopIsDark;
    QFont base;
    VisualStyle visualStyle;
};

} // namespace ellwynd
