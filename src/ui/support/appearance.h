// The current theme, accent and text size.
#pragma once

#include "app/shell/settings.h"
#include "theme/visualstyle.h"

#include <QObject>

namespace ellwynd {

/// Applies the appearance preferences to the application. Views that paint themselves read colours
/// and sizes here and repaint on `appearanceDidChange`.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// @param settings must outlive this object.
    /// @param desktopIsDark whether "automatic" is dark.
    Appearance(Settings &settings, bool desktopIsDark);
    /// Restores the application's original font, which is the base of the next `Appearance`.
    ~Appearance() override;

    [[nodiscard]] const VisualStyle &style() const { return visualStyle; }
    [[nodiscard]] const Theme &theme() const { return visualStyle.theme; }

    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const {
        return visualStyle.font(factor, weight);
    }
    [[nodiscard]] int px(double length) const { return visualStyle.px(length); }

    /// Sets whether "automatic" is dark.
    void setDesktopIsDark(bool dark);
    /// Makes the text one step larger (1) or smaller (-1), or its normal size (0).
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
