// Saves PNG screenshots of the desktop widgets, light and dark.
#include "outputs/snapshot/snapshotfiles.h"
#include "pictures.h"
#include "support/temporaryfolder.h"
#include "widgets/widgetboard.h"

#include <QApplication>
#include <QPainter>

#include <fmt/format.h>

#include <array>
#include <cstdio>

namespace {

using namespace ellwynd;

/// A widget file like that of the sample college's fall term.
WidgetSnapshotFile sample() {
    return {
        .updatedAt = systemNow(),
        .automaticTermID = 9001,
        .terms = {
            {.id = 9001,
             .title = "Fall 2026",
             .courses = {
                 {900101, "CS 101  4021 - Introduction to Programming", 4, 2, 2, 26},
                 {900102, "WEB 210  4788 - Web Interface Design", 1, 2, 2, 26},
                 {900103, "CS 230  5140 - PHP with SQL", 1, 1, 1, 26},
                 {900104, "CS 240  6612 - Database Design", 0, 1, 1, 26},
                 {900105, "WEB 110  7708 - Web Fundamentals", 2, 1, 2, 26},
                 {900106, "CS 260  8830 - Data Structures", 0, 0, 0, 24}}}}};
}

/// Draws the three sizes on a desktop.
void draw(Pictures &pictures, SnapshotSource &source, const char *appearance, double scale) {
    pictures.begin(appearance, scale);
    const test::TemporaryFolder folder;
    const auto stateFile = folder.path() / "Widgets.json";
    UserDefaults defaults({}, {{"Appearance", appearance}, {"TextScale", scale}});
    savePlacedWidgets(
        stateFile,
        {{.size = WidgetSize::small}, {.size = WidgetSize::medium}, {.size = WidgetSize::large}});
    WidgetBoard board(
        source, defaults, stateFile, false, [](const QString &) { return std::nullopt; });
    board.show();
    settle();

    constexpr int gap = 24;
    const auto &windows = board.windows();
    const QRect small(QPoint(gap, gap), windows[0]->size());
    const QRect medium(small.topRight() + QPoint(gap, 0), windows[1]->size());
    const QRect large(medium.bottomLeft() + QPoint(0, gap), windows[2]->size());
    QPixmap desktop(QSize(large.right() + gap, large.bottom() + gap));
    desktop.fill(defaults.value(preferences::appearance) == "dark" ? 0xff33415c : 0xffc9d6ea);
    QPainter painter(&desktop);
    const std::array frames{small, medium, large};
    for (std::size_t i = 0; i < frames.size(); ++i)
        windows[i]->render(&painter, frames[i].topLeft(), {}, QWidget::DrawChildren);
    painter.end();
    pictures.save(desktop, "widgets");
}

} // namespace

int main(int argc, char **argv) {
    QApplication application(argc, argv);
    if (argc < 2) {
        fmt::print(stderr, "Usage: ellwynd-widget-screenshots FOLDER [TEXT-SCALE]\n");
        return 2;
    }
    QApplication::setStyle(QStringLiteral("Fusion"));
    const QFont font = QApplication::font();
    Pictures pictures(QString::fromLocal8Bit(argv[1]));
    const double scale = argc > 2 ? QByteArray(argv[2]).toDouble() : 1.0;
    const test::TemporaryFolder container;
    WidgetSnapshotWriter(container.path(), [] {}).write(sample());
    SnapshotSource source(container.path());
    for (const char *appearance : {"light", "dark"}) {
        // WidgetBoard derives its font sizes from the application's font.
        QApplication::setFont(font);
        draw(pictures, source, appearance, scale);
    }
    return pictures.failed() ? 1 : 0;
}
