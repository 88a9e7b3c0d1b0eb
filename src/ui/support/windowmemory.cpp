#include "ui/support/windowmemory.h"

#include <QEvent>
#include <QSplitter>
#include <QWidget>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

/// A drag has come to rest by then.
constexpr auto rest = 500ms;

} // namespace

WindowMemory::WindowMemory(QWidget &window, UserDefaults &defaults, const Key &geometryKey)
    : QObject(&window), window(window), defaults(defaults), geometryKey(geometryKey) {
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(rest);
    connect(&saveSoon, &QTimer::timeout, this, &WindowMemory::save);
    window.installEventFilter(this);
}

bool WindowMemory::restoreGeometry() {
    return window.restoreGeometry(
        QByteArray::fromBase64(QByteArray::fromStdString(defaults.value(geometryKey))));
}

bool WindowMemory::restoreColumns(QSplitter &columns, const Key &key) {
    splitter = &columns;
    columnsKey = &key;
    connect(splitter, &QSplitter::splitterMoved, &saveSoon, qOverload<>(&QTimer::start));
    return splitter->restoreState(
        QByteArray::fromBase64(QByteArray::fromStdString(defaults.value(key))));
}

bool WindowMemory::eventFilter(QObject *watched, QEvent *event) {
    const bool changed = event->type() == QEvent::Move || event->type() == QEvent::Resize ||
        event->type() == QEvent::WindowStateChange;
    if (changed && window.isVisible())
        saveSoon.start();
    // A window that is hidden stays where it is: what is still to be saved can be.
    if (event->type() == QEvent::Hide && saveSoon.isActive())
        save();
    return QObject::eventFilter(watched, event);
}

void WindowMemory::save() {
    saveSoon.stop();
    PreferenceChanges changes{
        {std::string(geometryKey.name), window.saveGeometry().toBase64().toStdString()}};
    if (splitter != nullptr)
        changes.emplace(columnsKey->name, splitter->saveState().toBase64().toStdString());
    defaults.update(changes);
}

} // namespace ellwynd
