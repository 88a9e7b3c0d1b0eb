#include "widgets/cardplaces.h"

#include <QGuiApplication>
#include <QScreen>

#include <algorithm>

namespace ellwynd {

namespace {

/// The square of the distance of a point from a rectangle; 0 inside.
qint64 squaredDistance(QPoint point, const QRect &area) {
    const qint64 x = std::clamp(point.x(), area.left(), area.right()) - point.x();
    const qint64 y = std::clamp(point.y(), area.top(), area.bottom()) - point.y();
    return x * x + y * y;
}

const ScreenArea &nearest(QPoint point, const std::vector<ScreenArea> &screens) {
    return *std::ranges::min_element(screens, {}, [point](const ScreenArea &screen) {
        return squaredDistance(point, screen.geometry);
    });
}

} // namespace

std::vector<ScreenArea> connectedScreens() {
    std::vector<ScreenArea> screens;
    for (const QScreen *screen : QGuiApplication::screens())
        screens.push_back({screen->geometry(), screen->availableGeometry()});
    return screens;
}

bool isOnScreen(QPoint place, const QSize &card, const std::vector<ScreenArea> &screens) {
    const QPoint centre = QRect(place, card).center();
    return std::ranges::any_of(
        screens, [centre](const ScreenArea &screen) { return screen.geometry.contains(centre); });
}

QRect shownFrame(
    const std::optional<QPoint> &saved, const QSize &card, const std::vector<ScreenArea> &screens) {
    if (!saved)
        return {
            screens.front().available.topLeft(), card.boundedTo(screens.front().available.size())};
    const ScreenArea &screen = nearest(QRect(*saved, card).center(), screens);
    const QRect &area = screen.available;
    QRect frame(*saved, card.boundedTo(area.size()));
    if (!isOnScreen(*saved, card, screens)) {
        frame.moveLeft(std::clamp(frame.left(), area.left(), area.right() + 1 - frame.width()));
        frame.moveTop(std::clamp(frame.top(), area.top(), area.bottom() + 1 - frame.height()));
    }
    return frame;
}

} // namespace ellwynd
