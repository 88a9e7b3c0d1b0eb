// The item in the status area, on a private session bus and an X11 display with a window manager.
#include "app/mainwindowcontroller.h"
#include "application.h"
#include "platform/session/statusarea.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "support/temporaryfolder.h"
#include "support/until.h"
#include "ui/mainwindow/mainwindow.h"

#include <QApplication>
#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QSystemTrayIcon>
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
        QMetaObject::invokeMethod(
            this,
            [this] {
                bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, watcherName);
                EXPECT_TRUE(
                    bus.registerVirtualObject(watcherPath, this) &&
                    bus.registerService(watcherName));
            },
            Qt::BlockingQueuedConnection);
    }
    ~StatusArea() override {
        QMetaObject::invokeMethod(
            this,
            [this] {
                bus.unregisterObject(watcherPath);
                bus = QDBusConnection(QString());
                QDBusConnection::disconnectFromBus(watcherName);
            },
            Qt::BlockingQueuedConnection);
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
    QDBusConnection bus{QString()};
    mutable std::mutex mutex;
    QString registered;
};

/// The panel that shows the item.
class Panel {
  public:
    explicit Panel(QString item) : item(std::move(item)) {}
    ~Panel() { QDBusConnection::disconnectFromBus(QStringLiteral("panel")); }

    QDBusMessage call(
        const QString &path, const QString &interface, const QString &method,
        const QVariantList &arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(item, path, interface, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = bus.asyncCall(message);
        EXPECT_TRUE(test::until([&] { return pending.isFinished(); })) << method.toStdString();
        EXPECT_FALSE(pending.isError()) << pending.error().message().toStdString();
        return pending.reply();
    }

    void activate() const {
        call(
            QStringLiteral("/StatusNotifierItem"), QStringLiteral("org.kde.StatusNotifierItem"),
            QStringLiteral("Activate"), {0, 0});
    }

    /// The menu's entries, each with its id.
    [[nodiscard]] std::vector<std::pair<int, std::string>> menu() const {
        const QDBusMessage reply = call(
            QStringLiteral("/MenuBar"), menuInterface, QStringLiteral("GetLayout"),
            {0, -1, QStringList()});
        const auto root = reply.arguments().value(1).value<QDBusArgument>();
        std::vector<std::pair<int, std::string>> entries;
        for (const QVariant &child : itemOf(root).children) {
            const Item entry = itemOf(child.value<QDBusArgument>());
            const std::string label = entry.properties.value(QStringLiteral("label"))
                                          .toString()
                                          .remove(u'_')
                                          .toStdString();
            if (!label.empty())
                entries.emplace_back(entry.id, label);
        }
        return entries;
    }

    [[nodiscard]] std::vector<std::string> labels() const {
        std::vector<std::string> labels;
        for (const auto &[id, label] : menu())
            labels.push_back(label);
        return labels;
    }

    void choose(const std::string &label) const {
        const auto entries = menu();
        const auto entry =
            std::ranges::find(entries, label, [](const auto &each) { return each.second; });
        ASSERT_NE(entry, entries.end()) << label;
        call(
            QStringLiteral("/MenuBar"), menuInterface, QStringLiteral("Event"),
            {entry->first, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(QString())),
             0U});
    }

  private:
    /// com.canonical.dbusmenu's (ia{sv}av).
    struct Item {
        int id = 0;
        QVariantMap properties;
        QVariantList children;
    };
    static Item itemOf(const QDBusArgument &argument) {
        Item item;
        argument.beginStructure();
        argument >> item.id >> item.properties;
        argument.beginArray();
        while (!argument.atEnd()) {
            QDBusVariant child;
            argument >> child;
            item.children.push_back(child.variant());
        }
        argument.endArray();
        argument.endStructure();
        return item;
    }

    const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
    QString item;
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("panel"));
};

/// The program on the sample college, with notices.
struct StatusItemTest : testing::Test {
    test::TemporaryFolder folder;
    test::MemorySecrets secrets;
    test::LoneService service;
    test::MemoryNotifications *notices = nullptr;
    std::unique_ptr<Application> program;
    int passes = 0;

    void start(PreferenceMap preferences) {
        preferences.merge(PreferenceMap{
            {"SampleData", true},
            {"MovementNotifications", true},
            {"SampleNotifications", true},
            {"KeepRunningInBackground", true}});
        auto notifications = std::make_unique<test::MemoryNotifications>();
        notices = notifications.get();
        program = std::make_unique<Application>(
            ApplicationEnvironment{
                .launchArguments = std::move(preferences),
                .preferencesFile = folder.path() / "Preferences.json",
                .data = folder.path(),
                .state = folder.path(),
                .widgetContainer = folder.path() / "widgets",
                .secrets = secrets.shared(),
                .notifications = std::move(notifications)},
            service);
        QObject::connect(
            &program->controller(), &MainWindowController::passDidEnd, &program->controller(),
            [this] { ++passes; });
        program->launch({});
    }
};

TEST_F(StatusItemTest, ThePanelOpensRefreshesAndQuitsAHiddenProgram) {
    const StatusArea area;
    start({{"StartInBackground", true}});
    ASSERT_TRUE(test::until([&] { return passes == 1 && !area.item().isEmpty(); }));
    EXPECT_TRUE(std::ranges::none_of(
        QApplication::topLevelWidgets(), [](const QWidget *each) { return each->isVisible(); }));
    EXPECT_EQ(notices->posted.size(), 1U) << "notices go on without a window";
    const Panel panel(area.item());
    EXPECT_THAT(
        panel.labels(),
        ElementsAre(
            "5 at risk in Fall 2026", "Open Ellwynd", "Refresh All Courses", "Quit Ellwynd"));

    panel.activate();
    EXPECT_TRUE(test::until([&] { return program->window().isVisible(); }));
    EXPECT_FALSE(program->window().close());
    EXPECT_FALSE(program->window().isVisible());
    panel.choose("Refresh All Courses");
    EXPECT_TRUE(test::until([&] { return passes == 2; })) << "while it is hidden";
    panel.choose("Open Ellwynd");
    EXPECT_TRUE(test::until([&] { return program->window().isVisible(); }));

    QTimer::singleShot(0, qApp, [&panel] { panel.choose("Quit Ellwynd"); });
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
