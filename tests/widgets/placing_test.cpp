// Dragging cards, and where they are shown and saved.
#include "base/files.h"
#include "support/temporaryfolder.h"
#include "widgets/cardplaces.h"
#include "widgets/placedwidget.h"
#include "widgets/windowdrag.h"

#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using testing::IsEmpty;

/// A card that is all button.
struct WindowDragTest : testing::Test {
    QWidget card;
    QPushButton button{&card};
    int clicks = 0;
    QPoint grip;

    void SetUp() override {
        QObject::connect(&button, &QPushButton::clicked, [this] { ++clicks; });
        card.resize(200, 100);
        card.show();
        grip = button.rect().center();
    }
};

TEST_F(WindowDragTest, ByTheWindowSystemDoesNotClick) {
    int moves = 0;
    WindowDrag drag(card, [&moves](QWidget &) {
        ++moves;
        return true;
    });
    drag.addHandle(button);
    // X11 reports a move over the button and the release after the window was moved.
    for (int i = 1; i <= 3; ++i) {
        QTest::mousePress(&button, Qt::LeftButton, {}, grip);
        for (const int distance : {30, 60, 1})
            QTest::mouseMove(&button, grip + QPoint(distance, 0));
        QTest::mouseRelease(&button, Qt::LeftButton, {}, grip);
        EXPECT_EQ(moves, i);
        EXPECT_EQ(clicks, 0);
    }
    // A window system that keeps the release for itself does not take the next click.
    QTest::mousePress(&button, Qt::LeftButton, {}, grip);
    QTest::mouseMove(&button, grip + QPoint(60, 0));
    QTest::mouseClick(&button, Qt::LeftButton, {}, grip);
    EXPECT_EQ(clicks, 1);
}

TEST_F(WindowDragTest, MayMoveTheWindowAtItsEnd) {
    std::vector<QPoint> moves;
    WindowDrag drag(card);
    drag.addHandle(button);
    drag.moveOnRelease([&moves](QPoint distance) { moves.push_back(distance); });
    const QPoint place = card.pos();
    for (int i = 1; i <= 2; ++i) {
        QTest::mousePress(&button, Qt::LeftButton, {}, grip);
        for (const int distance : {30, 60})
            QTest::mouseMove(&button, grip + QPoint(distance, 10));
        EXPECT_TRUE(drag.isActive());
        EXPECT_EQ(int(moves.size()), i - 1);
        QTest::mouseRelease(&button, Qt::LeftButton, {}, grip + QPoint(70, 20));
        EXPECT_FALSE(drag.isActive());
        ASSERT_EQ(int(moves.size()), i);
        EXPECT_EQ(moves.back(), QPoint(70, 20));
    }
    QTest::mouseClick(&button, Qt::LeftButton, {}, grip);
    EXPECT_EQ(moves.size(), 2U);
    EXPECT_EQ(clicks, 1);
    EXPECT_EQ(card.pos(), place);
}

TEST(CardPlaces, AreOnConnectedScreens) {
    const ScreenArea main{{0, 0, 1000, 800}, {0, 30, 1000, 770}};
    const ScreenArea right{{1000, 0, 600, 400}, {1000, 0, 600, 400}};
    const QSize card(452, 450);
    const std::tuple<const char *, std::optional<QPoint>, std::vector<ScreenArea>, QRect> rows[] = {
        {"never placed", std::nullopt, {main}, {0, 30, 452, 450}},
        {"on the screen", QPoint(100, 100), {main}, {100, 100, 452, 450}},
        {"dragged partly over the edge", QPoint(700, 400), {main}, {700, 400, 452, 450}},
        {"on the right one, which is smaller",
         QPoint(1020, 20),
         {main, right},
         {1020, 20, 452, 400}},
        {"the right one is away", QPoint(1020, 20), {main}, {548, 30, 452, 450}},
        {"below all", QPoint(100, 5000), {main, right}, {100, 350, 452, 450}},
        {"above the right one", QPoint(1200, -900), {main, right}, {1148, 0, 452, 400}},
        {"far left of a small one", QPoint(-9000, 0), {right}, {1000, 0, 452, 400}},
    };
    for (const auto &[what, saved, screens, frame] : rows)
        EXPECT_EQ(shownFrame(saved, card, screens), frame) << what;
}

TEST(PlacedWidgets, InvalidFilesAndEntriesAreIgnored) {
    const test::TemporaryFolder folder;
    const PlacedWidget small{.size = WidgetSize::small};
    const PlacedWidget large{.size = WidgetSize::large, .termID = -5, .place = QPoint(-20, 30)};
    const std::pair<std::string, std::vector<PlacedWidget>> rows[] = {
        {"{\"widgets\":[", {}},
        {R"({"widgets":{"size":"small"}})", {}},
        {R"({"widgets":[{"size":"huge"},{"size":3},5,{"size":"small"}]})", {small}},
        {R"({"widgets":[{"size":"small","term":"1","x":1e300,"y":2}]})", {small}},
        {R"({"widgets":[{"size":"small","x":99999999,"y":2}]})", {small}},
        {R"({"widgets":[{"size":"large","term":-5,"x":-20,"y":30}]})", {large}},
        {std::string(70'000, ' ') + R"({"widgets":[{"size":"small"}]})", {}},
    };
    for (const auto &[text, widgets] : rows)
        EXPECT_EQ(readPlacedWidgets(folder.write("Widgets.json", text)), widgets) << text;
    EXPECT_THAT(readPlacedWidgets(folder.path() / "none.json"), IsEmpty());

    std::filesystem::create_symlink("loop.json", folder.path() / "loop.json");
    EXPECT_THROW((void)readPlacedWidgets(folder.path() / "loop.json"), FileUnavailable);

    savePlacedWidgets(folder.path() / "Widgets.json", {40, large});
    EXPECT_EQ(readPlacedWidgets(folder.path() / "Widgets.json").size(), 32U);
}

} // namespace
} // namespace ellwynd
