#include "widgets/widgetboard.h"

#include <QApplication>
#include <QScreen>

#include <algorithm>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

/// The middle of a widget must lie on a screen for its place to be of use.
bool isOnAScreen(const QRect &frame) {
    return QGuiApplication::screenAt(frame.center()) != nullptr;
}

bool isAppearance(std::string_view key) {
    using namespace preferences;
    return key == appearance.name || key == accentTheme.name || key == textScale.name;
}

/// Beside a widget: to its right, else below it, else a step away.
QPoint placeBeside(const QRect &frame, const QRect &desktop) {
    constexpr int gap = 12;
    constexpr int step = 28;
    const QRect right = frame.translated(frame.width() + gap, 0);
    const QRect below = frame.translated(0, frame.height() + gap);
    for (const QRect &candidate : {right, below}) {
        if (desktop.contains(candidate))
            return candidate.topLeft();
    }
    return frame.topLeft() + QPoint(step, step);
}

} // namespace

WidgetBoard::WidgetBoard(
    SnapshotSource &snapshots, UserDefaults &preferences, std::filesystem::path file, bool dark,
    std::function<void(const QString &)> open, Clock clock)
    : source(snapshots),
      defaults(preferences),
      stateFile(std::move(file)),
      desktopIsDark(dark),
      openLink(std::move(open)),
      now(clock),
      base(interfaceFont()) {
    connect(&source, &SnapshotSource::changed, this, &WidgetBoard::presentAll);
    observing = defaults.observe([this](std::string_view key) {
        if (isAppearance(key))
            dress();
        if (isAppearance(key) || courseSettings::isIconKey(key))
            presentAll();
    });
    // The day may change, or the clock be set, at any time.
    connect(&minute, &QTimer::timeout, this, &WidgetBoard::refresh);
    minute.start(1min);
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(300ms);
    connect(&saveSoon, &QTimer::timeout, this, &WidgetBoard::save);
    dress();
}

WidgetBoard::~WidgetBoard() {
    if (saveSoon.isActive())
        save();
}

void WidgetBoard::dress() {
    look = makeLook(defaults, desktopIsDark, base);
    QApplication::setFont(look.font());
    QApplication::setPalette(palette(look.theme));
}

void WidgetBoard::setDesktopIsDark(bool dark) {
    desktopIsDark = dark;
    dress();
    presentAll();
}

void WidgetBoard::show() {
    std::vector<PlacedWidget> widgets = readPlacedWidgets(stateFile);
    if (widgets.empty())
        widgets.emplace_back();
    for (const PlacedWidget &widget : widgets)
        place(widget);
}

void WidgetBoard::place(const PlacedWidget &widget) {
    auto *window =
        placed.emplace_back(std::make_unique<WidgetWindow>(widget, look, defaults)).get();
    window->present(source.snapshot(), look, now());
    if (widget.place && isOnAScreen(QRect(*widget.place, window->size())))
        window->move(*widget.place);
    connect(window, &WidgetWindow::choiceDidChange, this, [this, window] {
        window->present(source.snapshot(), look, now());
        saveSoon.start();
    });
    connect(window, &WidgetWindow::moved, &saveSoon, qOverload<>(&QTimer::start));
    connect(window, &WidgetWindow::linkActivated, this, [this](const QString &link) {
        openLink(link);
    });
    connect(window, &WidgetWindow::addRequested, this, [this, window] { addBeside(*window); });
    connect(window, &WidgetWindow::removeRequested, this, [this, window] { remove(*window); });
    connect(window, &WidgetWindow::quitRequested, this, &WidgetBoard::finished);
    window->show();
    saveSoon.start();
}

void WidgetBoard::addBeside(const WidgetWindow &window) {
    PlacedWidget widget = window.placed();
    if (widget.place)
        widget.place = placeBeside(window.frameGeometry(), window.screen()->availableGeometry());
    place(widget);
}

void WidgetBoard::remove(const WidgetWindow &window) {
    const auto found = std::ranges::find(placed, &window, &std::unique_ptr<WidgetWindow>::get);
    if (found == placed.end())
        return;
    found->get()->hide();
    // It is in the middle of its own signal.
    found->release()->deleteLater();
    placed.erase(found);
    save();
    if (placed.empty())
        Q_EMIT finished();
}

void WidgetBoard::refresh() {
    source.check();
    presentAll();
}

void WidgetBoard::presentAll() {
    for (const auto &window : placed)
        window->present(source.snapshot(), look, now());
}

void WidgetBoard::save() {
    saveSoon.stop();
    std::vector<PlacedWidget> widgets;
    widgets.reserve(placed.size());
    for (const auto &window : placed)
        widgets.push_back(window->placed());
    savePlacedWidgets(stateFile, widgets);
}

} // namespace ellwynd
