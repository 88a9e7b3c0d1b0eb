// Light or dark, the accent and the text size, as they are now.
#pragma once

#include "app/shell/settings.h"
#include "theme/visualstyle.h"

#include <QObject>

namespace ellwynd {

/// Follows the appearance preferences and dresses the application in them. Views that paint
/// themselves read colours and sizes here and repaint on `changed`.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// @param desktopIsDark what "automatic" stands for.
    Appearance(Settings &settings, bool desktopIsDark);
    /// Gives the application its own font back, from which the next one begins.
    ~Appearance() override;

    [[nodiscard]] const Theme &theme() const { return look.theme; }

    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const {
        return look.font(factor, weight);
    }
    [[nodiscard]] int px(double length) const { return look.px(length); }

    /// What "automatic" stands for from now on.
    void setDesktopIsDark(bool dark);
    /// One step larger (1) or smaller (-1); 0 is the normal size.
    void zoom(int direction);

  Q_SIGNALS:
    void changed();

  private:
    void apply();

    Settings &settings;
    bool desktopIsDark;
    QFont base;
    Look look;
};

} // namespace ellwynd
