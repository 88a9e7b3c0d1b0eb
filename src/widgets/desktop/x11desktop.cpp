#include "widgets/desktop/x11desktop.h"

#include <QGuiApplication>
#include <QWidget>

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdlib>
#include <span>
#include <string_view>
#include <utility>

namespace ellwynd {

namespace {

/// A desktop's number that stands for all of them.
constexpr std::uint32_t allDesktops = 0xffffffff;
/// The request comes from the user's choice in another program, such as a pager.
constexpr std::uint32_t fromUser = 2;

/// The names of X11Desktop::Atom, in its order.
constexpr std::array<std::string_view, 9> atomNames{
    "_NET_WM_STATE",
    "_NET_WM_STATE_BELOW",
    "_NET_WM_STATE_STICKY",
    "_NET_WM_STATE_SKIP_TASKBAR",
    "_NET_WM_STATE_SKIP_PAGER",
    "_NET_WM_DESKTOP",
    "_NET_ACTIVE_WINDOW",
    "_NET_SHOWING_DESKTOP",
    "_NET_WM_CM_S0"};

template<class Reply>
using Owned = std::unique_ptr<Reply, decltype(&std::free)>;

} // namespace

X11Desktop::X11Desktop(const QNativeInterface::QX11Application &x11)
    : connection(x11.connection()),
      root(xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root) {
    std::array<xcb_intern_atom_cookie_t, atomNames.size()> cookies{};
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        const std::string_view name = atomNames[i];
        cookies[i] = xcb_intern_atom(connection, 0, std::uint16_t(name.size()), name.data());
    }
    for (std::size_t i = 0; i < atomNames.size(); ++i) {
        const Owned<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(connection, cookies[i], nullptr), &std::free);
        atoms[i] = reply ? reply->atom : std::uint32_t(XCB_ATOM_NONE);
    }
    isDesktopShown = cardinal(root, showingDesktop) == 1;
    QGuiApplication::instance()->installNativeEventFilter(this);
}

X11Desktop::~X11Desktop() {
    if (auto *application = QGuiApplication::instance())
        application->removeNativeEventFilter(this);
}

void X11Desktop::prepare(QWidget &card) {
    card.setAttribute(Qt::WA_X11NetWmWindowTypeDesktop, isDesktopShown);
    const std::array states{atoms[sticky], atoms[skipTaskbar], atoms[skipPager], atoms[below]};
    const std::size_t stateCount = states.size() - (cardsAreInFront ? 1 : 0);
    const auto window = xcb_window_t(card.winId());
    const auto replace = [&](Atom property, std::uint32_t type, std::span<const std::uint32_t> to) {
        xcb_change_property(
            connection, XCB_PROP_MODE_REPLACE, window, atoms[property], type, 32,
            std::uint32_t(to.size()), to.data());
    };
    replace(state, XCB_ATOM_ATOM, {states.data(), stateCount});
    replace(desktop, XCB_ATOM_CARDINAL, {&allDesktops, 1});
}

/// A window manager removes the properties when it notices that a window was hidden, which may be
/// after `prepare`; then these requests set them.
void X11Desktop::didShow(QWidget &card) {
    setState(card, true, sticky);
    setState(card, true, skipTaskbar, atoms[skipPager]);
    setState(card, !cardsAreInFront, below);
    request(card, desktop, {allDesktops, fromUser});
}

bool X11Desktop::isComposited() const {
    const Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(
            connection, xcb_get_selection_owner(connection, atoms[compositor]), nullptr),
        &std::free);
    return reply && reply->owner != XCB_WINDOW_NONE;
}

bool X11Desktop::setInFront(QWidget &card, bool inFront) {
    cardsAreInFront = inFront;
    setState(card, !inFront, below);
    if (inFront) {
        card.raise();
        request(card, active, {fromUser});
    }
    return true;
}

void X11Desktop::setState(const QWidget &card, bool on, Atom first, std::uint32_t second) const {
    request(card, state, {on ? 1U : 0U, atoms[first], second, fromUser});
}

void X11Desktop::request(
    const QWidget &card, Atom message, std::array<std::uint32_t, 5> data) const {
    xcb_client_message_event_t event{};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = xcb_window_t(card.winId());
    event.type = atoms[message];
    std::ranges::copy(data, std::begin(event.data.data32));
    xcb_send_event(
        connection, 0, root,
        XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
        reinterpret_cast<const char *>(&event));
    xcb_flush(connection);
}

std::uint32_t X11Desktop::cardinal(std::uint32_t window, Atom property) const {
    const Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(
            connection,
            xcb_get_property(connection, 0, window, atoms[property], XCB_ATOM_CARDINAL, 0, 1),
            nullptr),
        &std::free);
    const bool isCardinal =
        reply && reply->format == 32 && xcb_get_property_value_length(reply.get()) == 4;
    return isCardinal ? *static_cast<std::uint32_t *>(xcb_get_property_value(reply.get())) : 0;
}

bool X11Desktop::nativeEventFilter(const QByteArray &type, void *message, qintptr *) {
    if (type != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    constexpr unsigned sentByClient = 0x80;
    if ((event->response_type & ~sentByClient) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto *change = static_cast<const xcb_property_notify_event_t *>(message);
    if (change->window == root && change->atom == atoms[showingDesktop]) {
        const bool isShown = cardinal(root, showingDesktop) == 1;
        if (std::exchange(isDesktopShown, isShown) != isShown)
            Q_EMIT desktopShownDidChange();
    }
    return false;
}

} // namespace ellwynd
