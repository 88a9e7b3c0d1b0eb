#include "ui/support/windowmemory.h"

#include "uikit/convert.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QWidget>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

/// Longer than the pauses between the events of one drag.
constexpr auto saveDelay = 500ms;

constexpr QLatin1StringView maximized("maximized");

/// The saved form, such as "50 60 1150 660": left, top, width and height when not maximized, then
/// " maximized" if it is.
QString geometryText(const QWidget &window) {
    const QRect place = window.normalGeometry();
    QString text = QStringLiteral("%1 %2 %3 %4")
                       .arg(place.x())
                       .arg(place.y())
                       .arg(place.width())
                       .arg(place.height());
    if (window.isMaximized())
        text += u' ' + maximized;
    return text;
}

/// The geometry if its upper edge is on a screen, otherwise centred on the primary screen; never
/// larger than the screen.
QRect reachable(QRect place) {
    const QScreen *screen = QGuiApplication::screenAt({place.center().x(), place.top()});
    const bool offScreen = screen == nullptr;
    if (offScreen)
        screen = QGuiApplication::primaryScreen();
    const QRect desktop = screen->availableGeometry();
    place.setSize(place.size().boundedTo(desktop.size()));
    if (offScreen)
        place.moveCenter(desktop.center());
    return place;
}

} // namespace

WindowMemory::WindowMemory(QWidget &window, UserDefaults &defaults, const Key &geometryKey)
    : QObject(&window), window(window), defaults(defaults), geometryKey(geometryKey) {
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(saveDelay);
    connect(&saveSoon, &QTimer::timeout, this, &WindowMemory::save);
    window.installEventFilter(this);
}

bool WindowMemory::restoreGeometry() {
    const QStringList words = qstring(defaults.value(geometryKey)).split(u' ');
    if (words.size() < 4)
        return false;
    QRect place;
    place.setTopLeft({words[0].toInt(), words[1].toInt()});
    place.setSize({words[2].toInt(), words[3].toInt()});
    if (!place.isValid())
        return false;
    window.setGeometry(reachable(place));
    if (words.mid(4).contains(maximized))
        window.setWindowState(window.windowState() | Qt::WindowMaximized);
    return true;
}

bool WindowMemory::eventFilter(QObject *watched, QEvent *event) {
    const bool changed = event->type() == QEvent::Move || event->type() == QEvent::Resize ||
        event->type() == QEvent::WindowStateChange;
    if (changed && window.isVisible())
        saveSoon.start();
    // A hidden window keeps its geometry, so a pending change is saved now.
    if (event->type() == QEvent::Hide && saveSoon.isActive())
        save();
    return QObject::eventFilter(watched, event);
}

void WindowMemory::save() {
    saveSoon.stop();
    defaults.set(geometryKey, geometryText(window).toStdString());
}

} // namespace ellwynd
