// Where cards are shown when screens come and go.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>

#include <optional>
#include <vector>

namespace ellwynd {

/// A connected screen, in desktop coordinates.
struct ScreenArea {
    QRect geometry;
    /// Without panels.
    QRect available;
};

/// The connected screens, the primary one first.
[[nodiscard]] std::vector<ScreenArea> connectedScreens();

/// Whether the centre of a card at this place is on one of the screens.
[[nodiscard]] bool
isOnScreen(QPoint place, const QSize &card, const std::vector<ScreenArea> &screens);

/// Where a card is shown: at its saved place, or wholly on the nearest screen if the centre of the
/// card is on none. At most as large as that screen.
/// @param saved absent for a card that was never placed; the result then only has a size.
/// @param screens at least one, the primary one first.
[[nodiscard]] QRect shownFrame(
    const std::optional<QPoint> &saved, const QSize &card, const std::vector<ScreenArea> &screens);

} // namespace ellwynd
