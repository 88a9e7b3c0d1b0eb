// The cards on a Wayland desktop whose compositor has layers.
#pragma once

#include "widgets/desktop/desktoplayer.h"

namespace ellwynd {

/// Puts the cards into the layer between the wallpaper and the windows, by the protocol
/// wlr-layer-shell. Compositors know no place of such a surface but its distance from the edges of
/// a screen, from which places on the desktop are computed.
class LayerShellDesktop final : public DesktopLayer {
  public:
    /// Asks the compositor, which takes one exchange of messages.
    [[nodiscard]] static bool isOffered();

    void prepare(QWidget &card) override;
    void move(QWidget &card, QPoint place) override;
    [[nodiscard]] std::optional<QPoint> placeOf(const QWidget &card) const override;
    [[nodiscard]] bool movesOnRelease() const override { return true; }
    bool setInFront(QWidget &card, bool inFront) override;
};

} // namespace ellwynd
