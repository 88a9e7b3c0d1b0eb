// Runs with a real window manager; see support/with-windowmanager.
#include "support/temporaryfolder.h"
#include "widgets/widgetboard.h"

#include <QGuiApplication>
#include <QTest>
#include <QtGui/qguiapplication_platform.h>

#include <gmock/gmock.h>
#include <xcb/xcb.h>

#include <cstdlib>

namespace ellwynd {
namespace {

using testing::IsSupersetOf;

/// An answer of the X server; null if the window is gone.
template<class Reply>
std::unique_ptr<Reply, decltype(&std::free)> owned(Reply *reply) {
    return {reply, &std::free};
}

/// The X server's view of windows.
class Server {
  public:
    xcb_connection_t *connection =
        qGuiApp->nativeInterface<QNativeInterface::QX11Application>()->connection();
    xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;

    [[nodiscard]] std::vector<std::uint32_t> property(xcb_window_t window, const char *name) const {
        const auto asked =
            xcb_get_property(connection, 0, window, atom(name), XCB_ATOM_ANY, 0, 1000);
        const auto reply = owned(xcb_get_property_reply(connection, asked, nullptr));
        if (reply == nullptr || reply->format != 32)
            return {};
        const auto *first = static_cast<std::uint32_t *>(xcb_get_property_value(reply.get()));
        return {first, first + xcb_get_property_value_length(reply.get()) / 4};
    }
    [[nodiscard]] xcb_atom_t atom(const char *name) const {
        const auto asked = xcb_intern_atom(connection, 0, std::uint16_t(qstrlen(name)), name);
        return owned(xcb_intern_atom_reply(connection, asked, nullptr))->atom;
    }
    /// Whether the window and those around it are mapped.
    [[nodiscard]] bool isViewable(xcb_window_t window) const {
        const auto asked = xcb_get_window_attributes(connection, window);
        const auto reply = owned(xcb_get_window_attributes_reply(connection, asked, nullptr));
        return reply != nullptr && reply->map_state == XCB_MAP_STATE_VIEWABLE;
    }
    /// Whether the first window is in front of the second.
    [[nodiscard]] bool isInFront(xcb_window_t first, xcb_window_t second) const {
        const auto stack = property(root, "_NET_CLIENT_LIST_STACKING");
        return std::ranges::find(stack, first) > std::ranges::find(stack, second);
    }
    /// Sends the window manager a request, as a pager does.
    void request(xcb_window_t window, const char *name, std::uint32_t value) const {
        xcb_client_message_event_t event{};
        event.response_type = XCB_CLIENT_MESSAGE;
        event.format = 32;
        event.window = window;
        event.type = atom(name);
        event.data.data32[0] = value;
        xcb_send_event(
            connection, 0, root,
            XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
            reinterpret_cast<const char *>(&event));
        xcb_flush(connection);
    }
};

/// A program with a window, which has its own connection.
class OtherProgram {
  public:
    explicit OtherProgram(xcb_window_t root) : window(xcb_generate_id(connection)) {
        xcb_create_window(
            connection, XCB_COPY_FROM_PARENT, window, root, 150, 150, 400, 300, 0,
            XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        xcb_map_window(connection, window);
        xcb_flush(connection);
    }
    ~OtherProgram() { xcb_disconnect(connection); }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;

    xcb_connection_t *connection = xcb_connect(nullptr, nullptr);
    xcb_window_t window;
};

xcb_window_t idOf(const QWidget &widget) {
    return xcb_window_t(widget.winId());
}

struct X11DesktopTest : testing::Test {
    Server server;
    test::TemporaryFolder folder;
    std::filesystem::path stateFile = folder.path() / "Widgets.json";
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    SnapshotSource source{folder.path()};
    std::unique_ptr<WidgetBoard> board;
    std::unique_ptr<OtherProgram> program;
    xcb_window_t other = XCB_WINDOW_NONE;

    void SetUp() override {
        program = std::make_unique<OtherProgram>(server.root);
        other = program->window;
        ASSERT_TRUE(QTest::qWaitFor([this] { return server.isViewable(other); }));
        savePlacedWidgets(
            stateFile,
            {{.size = WidgetSize::small, .place = QPoint(200, 200)},
             {.size = WidgetSize::medium, .place = QPoint(300, 220)}});
        board = std::make_unique<WidgetBoard>(
            source, defaults, stateFile, false, [](const QString &) { return std::nullopt; });
        board->show();
    }

    [[nodiscard]] WidgetWindow &card(std::size_t index) const { return *board->windows()[index]; }

    /// Waits until a card is shown and belongs to the desktop.
    void expectOnDesktop(const QWidget &card) const {
        const auto states = IsSupersetOf(
            {server.atom("_NET_WM_STATE_BELOW"), server.atom("_NET_WM_STATE_SKIP_TASKBAR"),
             server.atom("_NET_WM_STATE_SKIP_PAGER")});
        const auto state = [&] { return server.property(idOf(card), "_NET_WM_STATE"); };
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return server.isViewable(idOf(card)) && testing::Value(state(), states) &&
                server.property(idOf(card), "_NET_WM_DESKTOP") ==
                std::vector<std::uint32_t>{0xffffffff};
        }));
        EXPECT_THAT(state(), states);
    }
};

TEST_F(X11DesktopTest, CardsAreBehindWindowsOnEveryWorkspaceAndInNoList) {
    for (const auto &each : board->windows()) {
        expectOnDesktop(*each);
        EXPECT_TRUE(server.isInFront(other, idOf(*each))) << "although it was shown first";
        // A window manager forgets the states of a window that is hidden.
        each->hide();
        EXPECT_TRUE(QTest::qWaitFor([&] { return !server.isViewable(idOf(*each)); }));
        each->show();
        expectOnDesktop(*each);
        each->reshow();
        expectOnDesktop(*each);
    }
    EXPECT_EQ(card(0).pos(), QPoint(200, 200));
}

TEST_F(X11DesktopTest, ShowingTheDesktopShowsTheCards) {
    expectOnDesktop(card(1));
    for (int i = 0; i < 2; ++i) {
        server.request(server.root, "_NET_SHOWING_DESKTOP", 1);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !server.isViewable(other); }));
        for (const auto &each : board->windows()) {
            EXPECT_TRUE(QTest::qWaitFor([&] { return server.isViewable(idOf(*each)); }));
            EXPECT_THAT(
                server.property(server.root, "_NET_SHOWING_DESKTOP"), testing::ElementsAre(1));
        }
        server.request(server.root, "_NET_SHOWING_DESKTOP", 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.isViewable(other); }));
        for (const auto &each : board->windows()) {
            expectOnDesktop(*each);
            EXPECT_TRUE(QTest::qWaitFor([&] { return server.isInFront(other, idOf(*each)); }));
        }
    }
    EXPECT_EQ(card(1).pos(), QPoint(300, 220));
    EXPECT_EQ(card(1).placed().place, QPoint(300, 220));
}

TEST_F(X11DesktopTest, CardsComeToTheFrontUntilAnotherWindowIsUsed) {
    expectOnDesktop(card(0));
    card(0).close();
    EXPECT_TRUE(board->showInFront());
    for (const auto &each : board->windows())
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.isInFront(idOf(*each), other); }));
    EXPECT_TRUE(QTest::qWaitForWindowActive(&card(1))) << "for the keyboard";
    server.request(other, "_NET_ACTIVE_WINDOW", 2);
    for (const auto &each : board->windows())
        EXPECT_TRUE(QTest::qWaitFor([&] { return server.isInFront(other, idOf(*each)); }));
}

TEST_F(X11DesktopTest, CornersAreCutWithoutACompositor) {
    EXPECT_FALSE(card(0).mask().contains(QPoint(0, 0)));
    EXPECT_TRUE(card(0).mask().contains(card(0).rect().center()));
    EXPECT_EQ(card(0).mask().boundingRect(), card(0).rect());
    xcb_set_selection_owner(
        program->connection, other, server.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    xcb_flush(program->connection);
    EXPECT_TRUE(QTest::qWaitFor([this] {
        board->refresh();
        return card(0).mask().isEmpty();
    }));
}

TEST_F(X11DesktopTest, ACardThatTheWindowManagerClosesIsNotForgotten) {
    const std::vector<PlacedWidget> both{card(0).placed(), card(1).placed()};
    int finished = 0;
    QObject::connect(board.get(), &WidgetBoard::quitRequested, board.get(), [&] { ++finished; });
    for (const std::size_t index : {0, 1}) {
        expectOnDesktop(card(index));
        server.request(idOf(card(index)), "_NET_CLOSE_WINDOW", 0);
        EXPECT_TRUE(QTest::qWaitFor([&] { return !card(index).isVisible(); }));
        QCoreApplication::processEvents();
        EXPECT_EQ(finished, int(index)) << "after the last one";
    }
    board.reset();
    EXPECT_EQ(readPlacedWidgets(stateFile), both);
}

} // namespace
} // namespace ellwynd
