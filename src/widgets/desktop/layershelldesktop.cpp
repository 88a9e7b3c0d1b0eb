#include "widgets/desktop/layershelldesktop.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <LayerShellQt/window.h>

#include <algorithm>
#include <cstring>
#include <wayland-client.h>

namespace ellwynd {

namespace {

/// Of a card that was never placed, from the edges of the screen.
constexpr int firstDistance = 48;

LayerShellQt::Window *surfaceOf(QWidget &card) {
    // The window must exist before it is shown.
    static_cast<void>(card.winId());
    return LayerShellQt::Window::get(card.windowHandle());
}

/// The screen with a place, or else the nearest one.
QScreen *screenOf(QPoint place) {
    const auto screens = QGuiApplication::screens();
    return *std::ranges::min_element(screens, {}, [place](const QScreen *screen) {
        const QRect area = screen->geometry();
        const QPoint inside(
            std::clamp(place.x(), area.left(), area.right()),
            std::clamp(place.y(), area.top(), area.bottom()));
        return (place - inside).manhattanLength();
    });
}

} // namespace

bool LayerShellDesktop::isOffered() {
    wl_display *display = wl_display_connect(nullptr);
    if (display == nullptr)
        return false;
    bool found = false;
    wl_registry *registry = wl_display_get_registry(display);
    const wl_registry_listener listener{
        .global =
            [](void *data, wl_registry *, std::uint32_t, const char *interface, std::uint32_t) {
                if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0)
                    *static_cast<bool *>(data) = true;
            },
        .global_remove = [](void *, wl_registry *, std::uint32_t) {}};
    wl_registry_add_listener(registry, &listener, &found);
    wl_display_roundtrip(display);
    wl_registry_destroy(registry);
    wl_display_disconnect(display);
    return found;
}

void LayerShellDesktop::prepare(QWidget &card) {
    using Surface = LayerShellQt::Window;
    Surface *surface = surfaceOf(card);
    surface->setLayer(Surface::LayerBottom);
    surface->setAnchors(Surface::Anchors(Surface::AnchorTop) | Surface::AnchorLeft);
    // Distances are from the edges of the screen, not from those of panels.
    surface->setExclusiveZone(-1);
    surface->setKeyboardInteractivity(Surface::KeyboardInteractivityOnDemand);
    surface->setScope(QStringLiteral("ellwynd-widget"));
    // A screen that is disconnected closes its surfaces; the card is then shown on another one.
    surface->setCloseOnDismissed(false);
    if (surface->margins().isNull())
        surface->setMargins({firstDistance, firstDistance, 0, 0});
}

void LayerShellDesktop::move(QWidget &card, QPoint place) {
    LayerShellQt::Window *surface = surfaceOf(card);
    QScreen *screen = screenOf(place);
    // A surface stays on the screen on which it was shown.
    const bool changesScreen = card.isVisible() && card.windowHandle()->screen() != screen;
    if (changesScreen)
        card.hide();
    card.windowHandle()->setScreen(screen);
    const QPoint distance = place - screen->geometry().topLeft();
    surface->setMargins({distance.x(), distance.y(), 0, 0});
    if (changesScreen)
        card.show();
    // The distance takes effect with the next frame.
    card.update();
}

std::optional<QPoint> LayerShellDesktop::placeOf(const QWidget &card) const {
    QWindow *window = card.windowHandle();
    if (window == nullptr)
        return std::nullopt;
    const QMargins distance = LayerShellQt::Window::get(window)->margins();
    return window->screen()->geometry().topLeft() + QPoint(distance.left(), distance.top());
}

bool LayerShellDesktop::setInFront(QWidget &card, bool inFront) {
    using Surface = LayerShellQt::Window;
    surfaceOf(card)->setLayer(inFront ? Surface::LayerTop : Surface::LayerBottom);
    card.update();
    return true;
}

} // namespace ellwynd
