// Runs in a real Wayland compositor; see support/with-wayland.
#include "support/temporaryfolder.h"
#include "widgets/widgetboard.h"

#include <QApplication>
#include <QTest>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;

TEST(WaylandWidgets, KeepThePlacesThatTheCompositorDoesNotTell) {
    ASSERT_EQ(QGuiApplication::platformName(), QStringLiteral("wayland"));
    const test::TemporaryFolder folder;
    const auto stateFile = folder.path() / "Widgets.json";
    UserDefaults defaults(folder.path() / "Preferences.json", {});
    SnapshotSource source(folder.path());
    const PlacedWidget small{.size = WidgetSize::small, .place = QPoint(600, 80)};
    const PlacedWidget large{.size = WidgetSize::large, .place = QPoint(4000, 90)};
    savePlacedWidgets(stateFile, {small, large});
    auto board = std::make_unique<WidgetBoard>(
        source, defaults, stateFile, false, [](const QString &) { return std::nullopt; });
    board->show();
    for (const auto &card : board->windows())
        EXPECT_TRUE(QTest::qWaitForWindowExposed(card.get()));
    EXPECT_FALSE(board->showInFront()) << "a program cannot do so";
    Q_EMIT board->windows()[0]->addRequested();
    ASSERT_EQ(board->windows().size(), 3U);
    EXPECT_TRUE(QTest::qWaitForWindowExposed(board->windows()[2].get()));
    board.reset();
    EXPECT_THAT(
        readPlacedWidgets(stateFile),
        ElementsAre(small, large, PlacedWidget{.size = WidgetSize::small}));
}

} // namespace
} // namespace ellwynd
