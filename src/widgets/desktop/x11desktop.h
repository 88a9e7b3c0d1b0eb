// The cards on an X11 desktop.
#pragma once

#include "widgets/desktop/desktoplayer.h"

#include <QAbstractNativeEventFilter>
#include <QtGui/qguiapplication_platform.h>

#include <array>
#include <cstdint>

namespace ellwynd {

/// Uses the states of windows in the Extended Window Manager Hints.
///
/// A card is a normal window, since window managers hide utility windows of an inactive program,
/// put docks above windows, and let a click on the file manager's desktop cover other windows of
/// the type desktop. But "Show Desktop" hides normal windows. While the desktop is shown, the cards
/// are therefore windows of the type desktop, which takes effect when they are shown again.
class X11Desktop final : public DesktopLayer, private QAbstractNativeEventFilter {
  public:
    explicit X11Desktop(const QNativeInterface::QX11Application &x11);
    ~X11Desktop() override;

    void prepare(QWidget &card) override;
    void didShow(QWidget &card) override;
    [[nodiscard]] bool isComposited() const override;
    bool setInFront(QWidget &card, bool inFront) override;

  private:
    enum Atom {
        state,
        below,
        sticky,
        skipTaskbar,
        skipPager,
        desktop,
        active,
        showingDesktop,
        compositor
    };

    bool nativeEventFilter(const QByteArray &type, void *message, qintptr *result) override;
    /// Asks the window manager to change a shown window.
    void request(const QWidget &card, Atom message, std::array<std::uint32_t, 5> data) const;
    void setState(const QWidget &card, bool on, Atom first, std::uint32_t second = 0) const;
    [[nodiscard]] std::uint32_t cardinal(std::uint32_t window, Atom property) const;

    xcb_connection_t *connection;
    std::uint32_t root;
    std::array<std::uint32_t, 9> atoms{};
    bool isDesktopShown = false;
    bool cardsAreInFront = false;
};

} // namespace ellwynd
