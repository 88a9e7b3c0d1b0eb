#include "widgets/widgetboard.h"

#include "base/files.h"
#include "base/log.h"

#include <QApplication>
#include <QScreen>

#include <fmt/format.h>

#include <algorithm>

namespace ellwynd {

namespace {

using namespace std::chrono_literals;

constexpr Log logger{"widgets"};
/// How long cards stay in front while the teacher does not use them.
constexpr auto frontTime = 10s;

bool isAppearance(std::string_view key) {
    using namespace preferences;
    return key == appearance.name || key == accentTheme.name || key == textScale.name;
}

/// A position next to a widget: to its right, else below it, else offset from it.
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
    SnapshotSource &source, UserDefaults &defaults, std::filesystem::path stateFile,
    bool desktopIsDark, OpenLink openLink, Clock now)
    : source(source),
      defaults(defaults),
      stateFile(std::move(stateFile)),
      desktopIsDark(desktopIsDark),
      openLink(std::move(openLink)),
      now(now),
      base(interfaceFont()) {
    connect(&source, &SnapshotSource::snapshotDidChange, this, &WidgetBoard::presentAll);
    observing = defaults.observe([this](std::string_view key) {
        if (isAppearance(key))
            applyStyle();
        if (isAppearance(key) || courseSettings::isIconKey(key))
            presentAll();
    });
    // The texts depend on the current day, which also changes when the clock is set.
    connect(&minute, &QTimer::timeout, this, &WidgetBoard::refresh);
    minute.start(1min);
    saveSoon.setSingleShot(true);
    saveSoon.setInterval(300ms);
    connect(&saveSoon, &QTimer::timeout, this, &WidgetBoard::save);
    inFront.setSingleShot(true);
    inFront.setInterval(frontTime);
    connect(&inFront, &QTimer::timeout, this, [this] {
        if (QGuiApplication::applicationState() != Qt::ApplicationActive)
            setBehind();
    });
    connect(
        qGuiApp, &QGuiApplication::applicationStateChanged, this,
        [this](Qt::ApplicationState state) {
            if (state != Qt::ApplicationActive)
                setBehind();
        });
    connect(layer.get(), &DesktopLayer::desktopShownDidChange, this, [this] {
        for (const auto &window : placed) {
            if (window->isVisible())
                window->reshow();
        }
    });
    const auto watch = [this](QScreen *screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &WidgetBoard::putAllOnScreen);
        connect(screen, &QScreen::geometryChanged, this, &WidgetBoard::putAllOnScreen);
    };
    for (QScreen *screen : QGuiApplication::screens())
        watch(screen);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, [this, watch](QScreen *screen) {
        watch(screen);
        putAllOnScreen();
    });
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &WidgetBoard::putAllOnScreen);
    applyStyle();
}

WidgetBoard::~WidgetBoard() {
    if (saveSoon.isActive())
        save();
}

void WidgetBoard::applyStyle() {
    visualStyle = makeVisualStyle(defaults, desktopIsDark, base);
    QApplication::setFont(visualStyle.font());
    QApplication::setPalette(palette(visualStyle.theme));
}

void WidgetBoard::setDesktopIsDark(bool dark) {
    desktopIsDark = dark;
    applyStyle();
    presentAll();
}

void WidgetBoard::show() {
    std::vector<PlacedWidget> widgets;
    try {
        widgets = readPlacedWidgets(stateFile);
    } catch (const FileUnavailable &error) {
        logger.error(fmt::format("Couldn't read the placed widgets: {}", error.what()));
        savesState = false;
    }
    if (widgets.empty())
        widgets.emplace_back();
    for (const PlacedWidget &widget : widgets)
        place(widget);
}

void WidgetBoard::place(const PlacedWidget &widget) {
    auto *window =
        placed.emplace_back(std::make_unique<WidgetWindow>(widget, visualStyle, defaults, *layer))
            .get();
    window->present(source.snapshot(), visualStyle, now());
    window->putOnScreen();
    connect(window, &WidgetWindow::choiceDidChange, this, [this, window] {
        window->present(source.snapshot(), visualStyle, now());
        saveSoon.start();
    });
    connect(window, &WidgetWindow::placeDidChange, &saveSoon, qOverload<>(&QTimer::start));
    connect(window, &WidgetWindow::linkRequested, this, [this, window](const QString &link) {
        open(*window, link);
    });
    connect(window, &WidgetWindow::addRequested, this, [this, window] { addBeside(*window); });
    connect(window, &WidgetWindow::removeRequested, this, [this, window] { remove(*window); });
    connect(
        window, &WidgetWindow::windowDidClose, this,
        [this] {
            // Only "Remove Widget" forgets a widget.
            const auto isShown = [](const auto &each) { return each->isVisible(); };
            if (std::ranges::none_of(placed, isShown))
                Q_EMIT quitRequested();
        },
        Qt::QueuedConnection);
    connect(window, &WidgetWindow::quitRequested, this, &WidgetBoard::quitRequested);
    window->show();
    saveSoon.start();
}

void WidgetBoard::addBeside(const WidgetWindow &window) {
    PlacedWidget widget = window.placed();
    if (!layer->knowsPlaces())
        widget.place.reset();
    else if (widget.place)
        widget.place =
            placeBeside(QRect(*widget.place, window.size()), window.screen()->availableGeometry());
    place(widget);
}

void WidgetBoard::remove(const WidgetWindow &window) {
    const auto found = std::ranges::find(placed, &window, &std::unique_ptr<WidgetWindow>::get);
    if (found == placed.end())
        return;
    found->get()->hide();
    // The window is emitting a signal.
    found->release()->deleteLater();
    placed.erase(found);
    save();
    if (placed.empty())
        Q_EMIT quitRequested();
}

void WidgetBoard::open(WidgetWindow &window, const QString &link) {
    const auto failure = openLink(link);
    if (!failure)
        return window.present(source.snapshot(), visualStyle, now());
    logger.error(*failure);
    window.showFailure(
        QStringLiteral("Ellwynd couldn’t be opened. ") + QString::fromStdString(*failure));
}

bool WidgetBoard::showInFront() {
    bool isInFront = true;
    for (const auto &window : placed) {
        window->show();
        isInFront = layer->setInFront(*window, true) && isInFront;
    }
    inFront.start();
    return isInFront;
}

void WidgetBoard::setBehind() {
    for (const auto &window : placed)
        layer->setInFront(*window, false);
}

void WidgetBoard::putAllOnScreen() {
    // While a screen is exchanged for another there may be none.
    if (QGuiApplication::screens().isEmpty())
        return;
    for (const auto &window : placed)
        window->putOnScreen();
    presentAll();
}

void WidgetBoard::refresh() {
    source.check();
    presentAll();
}

void WidgetBoard::presentAll() {
    for (const auto &window : placed)
        window->present(source.snapshot(), visualStyle, now());
}

void WidgetBoard::save() {
    saveSoon.stop();
    if (!savesState)
        return;
    std::vector<PlacedWidget> widgets;
    widgets.reserve(placed.size());
    for (const auto &window : placed)
        widgets.push_back(window->placed());
    savePlacedWidgets(stateFile, widgets);
}

} // namespace ellwynd
