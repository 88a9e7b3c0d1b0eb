// The item in the status area, on a private session bus and an X11 display with a window manager.
#include "app/mainwindowcontroller.h"
#include "platform/session/statusarea.h"
#include "support/loneservice.h"
#include "support/programfolder.h"
#include "support/temporaryfolder.h"
#include "support/until.h"
#include "ui/mainwindow/mainwindow.h"

#include <QAction>
#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMenu>
#include <QThread>
#include <QTimer>

#include <gmock/gmock.h>

#include <mutex>

namespace ellwynd {
namespace {

using testing::ElementsAre;

const QString watcherName = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

/// A status area. It answers in a thread of its own, since Qt waits for the answers.
class StatusArea : public QDBusVirtualObject {
  public:
    StatusArea() {
        moveToThread(&thread);
        thread.start();
        EXPECT_TRUE(
            bus.registerVirtualObject(watcherPath, this) && bus.registerService(watcherName));
    }
    ~StatusArea() override {
        bus.unregisterObject(watcherPath);
        QDBusConnection::disconnectFromBus(watcherName);
        thread.quit();
        thread.wait();
    }

    /// The service of the registered item; empty for none.
    [[nodiscard]] QString item() const {
        const std::scoped_lock lock(mutex);
        return registered;
    }

    QString introspect(const QString &) const override {
        return QStringLiteral(R"(<interface name="org.kde.StatusNotifierWatcher">
            <property name="IsStatusNotifierHostRegistered" type="b" access="read"/>
            </interface>)");
    }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &from) override {
        if (message.member() == QStringLiteral("RegisterStatusNotifierItem")) {
            const std::scoped_lock lock(mutex);
            registered = message.arguments().value(0).toString();
            from.send(message.createReply());
        } else if (message.member() == QStringLiteral("Get")) {
            // "IsStatusNotifierHostRegistered".
            from.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
        } else {
            return false;
        }
        return true;
    }

  private:
    QThread thread;
    QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, watcherName);
    mutable std::mutex mutex;
    QString registered;
};

/// Calls the registered item as the panel does that shows it, and returns what it answers.
QVariant callItem(
    const StatusArea &area, const char *interface, const char *method, QVariantList arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        area.item(), QStringLiteral("/StatusNotifierItem"), QString::fromLatin1(interface),
        QString::fromLatin1(method));
    message.setArguments(arguments);
    const QDBusPendingCall pending = QDBusConnection::sessionBus().asyncCall(message);
    EXPECT_TRUE(test::until([&] { return pending.isFinished(); })) << method;
    EXPECT_FALSE(pending.isError()) << pending.error().message().toStdString();
    return pending.reply().arguments().value(0);
}

/// The entries of the item's menu, which is the only one without a parent. Qt passes them to the
/// panel.
QList<QAction *> menu() {
    for (const QWidget *each : QApplication::topLevelWidgets()) {
        if (qobject_cast<const QMenu *>(each) != nullptr && each->parent() == nullptr)
            return each->actions();
    }
    return {};
}

void choose(const char *text) {
    const QList<QAction *> actions = menu();
    const auto action = std::ranges::find(actions, QString::fromLatin1(text), &QAction::text);
    ASSERT_NE(action, actions.end()) << text;
    (*action)->trigger();
}

TEST(StatusItem, ThePanelOpensRefreshesAndQuitsAHiddenProgram) {
    const StatusArea area;
    const test::TemporaryFolder folder;
    test::LoneService service;
    auto notifications = std::make_unique<test::MemoryNotifications>();
    const test::MemoryNotifications &notices = *notifications;
    ApplicationEnvironment environment = test::environmentIn(
        folder.path(),
        {{"SampleData", true},
         {"MovementNotifications", true},
         {"SampleNotifications", true},
         {"KeepRunningInBackground", true},
         {"StartInBackground", true}});
    environment.notifications = std::move(notifications);
    Application program(std::move(environment), service);
    int passes = 0;
    QObject::connect(
        &program.controller(), &MainWindowController::passDidEnd, &program.controller(),
        [&] { ++passes; });
    program.launch({});
    ASSERT_TRUE(test::until([&] { return passes == 1 && !area.item().isEmpty(); }));
    EXPECT_TRUE(std::ranges::none_of(
        QApplication::topLevelWidgets(), [](const QWidget *each) { return each->isVisible(); }));
    EXPECT_EQ(notices.posted.size(), 1U) << "notices go on without a window";
    std::vector<std::string> texts;
    for (const QAction *action : menu())
        texts.push_back(action->text().toStdString());
    EXPECT_THAT(
        texts,
        ElementsAre(
            "5 at risk in Fall 2026", "", "Open Ellwynd", "Refresh All Courses", "",
            "Quit Ellwynd"));
    constexpr auto item = "org.kde.StatusNotifierItem";
    const QVariant path = callItem(
        area, "org.freedesktop.DBus.Properties", "Get",
        {QString::fromLatin1(item), QStringLiteral("Menu")});
    EXPECT_EQ(
        path.value<QDBusVariant>().variant().value<QDBusObjectPath>().path(),
        QStringLiteral("/MenuBar"))
        << "the panel shows the menu";

    callItem(area, item, "Activate", {0, 0});
    EXPECT_TRUE(test::until([&] { return program.window().isVisible(); }));
    EXPECT_FALSE(program.window().close());
    EXPECT_FALSE(program.window().isVisible());
    choose("Refresh All Courses");
    EXPECT_TRUE(test::until([&] { return passes == 2; })) << "while it is hidden";
    choose("Open Ellwynd");
    EXPECT_TRUE(test::until([&] { return program.window().isVisible(); }));

    QTimer::singleShot(0, qApp, [] { choose("Quit Ellwynd"); });
    QTimer bound;
    QObject::connect(&bound, &QTimer::timeout, qApp, [] { QCoreApplication::exit(1); });
    bound.start(std::chrono::seconds(10));
    EXPECT_EQ(QApplication::exec(), 0) << "it did not quit";
}

TEST(StatusAreaTest, IsWaitedForAtLogin) {
    EXPECT_FALSE(waitForStatusArea(std::chrono::milliseconds(0)));
    std::optional<StatusArea> area;
    QTimer::singleShot(0, qApp, [&area] { area.emplace(); });
    EXPECT_TRUE(waitForStatusArea(std::chrono::seconds(10)));
    EXPECT_TRUE(area);
    EXPECT_TRUE(waitForStatusArea(std::chrono::seconds(10))) << "at once";
}

} // namespace
} // namespace ellwynd
