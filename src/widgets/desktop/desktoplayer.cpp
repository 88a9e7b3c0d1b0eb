#include "widgets/desktop/desktoplayer.h"

#ifdef ELLWYND_LAYER_SHELL
#include "widgets/desktop/layershelldesktop.h"
#endif
#include "widgets/desktop/x11desktop.h"

#include <QGuiApplication>
#include <QWidget>

namespace ellwynd {

namespace {

/// Wayland without a layer for desktop widgets: the compositor places windows, and tells nobody.
class PlacelessDesktop final : public DesktopLayer {
  public:
    void move(QWidget &, QPoint) override {}
    [[nodiscard]] std::optional<QPoint> placeOf(const QWidget &) const override {
        return std::nullopt;
    }
    [[nodiscard]] bool knowsPlaces() const override { return false; }
};

} // namespace

std::unique_ptr<DesktopLayer> DesktopLayer::make() {
    // The offscreen platform has the interface too, without a connection.
    const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    if (x11 != nullptr && x11->connection() != nullptr)
        return std::make_unique<X11Desktop>(*x11);
    if (QGuiApplication::platformName().startsWith(QStringLiteral("wayland"))) {
#ifdef ELLWYND_LAYER_SHELL
        if (LayerShellDesktop::isOffered())
            return std::make_unique<LayerShellDesktop>();
#endif
        return std::make_unique<PlacelessDesktop>();
    }
    return std::make_unique<DesktopLayer>();
}

void DesktopLayer::move(QWidget &card, QPoint place) {
    card.move(place);
}

std::optional<QPoint> DesktopLayer::placeOf(const QWidget &card) const {
    return card.pos();
}

} // namespace ellwynd
