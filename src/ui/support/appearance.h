// Light or dark, the accent and the text size, as they are now.
#pragma once

#include "app/settings.h"
#include "theme/theme.h"

#include <QFont>
#include <QObject>

namespace ellwynd {

/// Follows the appearance preferences and dresses the application in them. Views that paint
/// themselves read colours and sizes here and repaint on `changed`.
class Appearance : public QObject {
    Q_OBJECT

  public:
    /// @param desktopIsDark what "automatic" stands for.
    Appearance(Settings &settings, bool desktopIsDark);

    [[nodiscard]] const Theme &theme() const { return current; }

    /// The interface font at a factor of its normal size.
    [[nodiscard]] QFont font(double factor = 1, QFont::Weight weight = QFont::Normal) const;
    /// A length that grows with the text, in device-independent pixels; `length` is for text
    /// scale 1.
    [[nodiscard]] int px(double length) const;

    /// One step larger (1) or smaller (-1); 0 is the normal size.
    void zoom(int direction);

  Q_SIGNALS:
    void changed();

  private:
    void apply();

    Settings &settings;
    bool desktopIsDark;
    QFont base;
    Theme current;
    double scale = 1;
};

/// Whether the desktop's own colours are dark, asked before the application is dressed.
[[nodiscard]] bool desktopPrefersDark();

} // namespace ellwynd
