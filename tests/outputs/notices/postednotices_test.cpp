// Runs with a real notification server; see support/with-notifications.
#include "outputs/notices/movementnotifier.h"
#include "platform/linux/desktopnotifications.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QDBusVariant>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

const QString server = QStringLiteral("org.freedesktop.Notifications");
const QString commands = QStringLiteral("org.dunstproject.cmd0");

QDBusMessage call(const QString &interface, const char *method, const QVariantList &arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(
        server, QStringLiteral("/org/freedesktop/Notifications"), interface,
        QString::fromLatin1(method));
    message.setArguments(arguments);
    return QDBusConnection::sessionBus().call(message);
}

/// The number of notices on the screen.
uint shown() {
    const QDBusReply<QDBusVariant> count(call(
        QStringLiteral("org.freedesktop.DBus.Properties"), "Get",
        {commands, QStringLiteral("displayedLength")}));
    return count.value().variant().toUInt();
}

struct PostedNotices : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {{"MovementNotifications", true}}};
    DesktopNotifications notifications;
    MovementNotifier notifier{defaults, notifications, [] { return false; }};
    std::vector<std::int64_t> opened;

    void SetUp() override {
        QObject::connect(
            &notifier, &MovementNotifier::openRequested, &notifier,
            [this](std::optional<std::int64_t> id) { opened.push_back(id.value_or(0)); });
        // The first call starts the server.
        bool authorised = false;
        bool asking = false;
        ASSERT_TRUE(test::until([&] {
            if (!asking && !authorised) {
                asking = true;
                notifications.authorizationStatus([&](auto status) {
                    asking = false;
                    authorised = status == UserNotifications::AuthorizationStatus::authorized;
                });
            }
            return authorised;
        }));
    }
};

TEST_F(PostedNotices, ClickAndButtonOpenTheCourse) {
    for (const auto &[command, arguments] :
         {std::pair{"NotificationAction", QVariantList{0U}}, {"ContextMenuCall", {}}}) {
        opened.clear();
        notifier.forget(4021);
        notifier.notify({{.courseID = 4021, .courseName = "Bio", .worseStudentIDs = {1}}});
        ASSERT_TRUE(test::until([] { return shown() == 1; }));
        call(commands, command, arguments);
        EXPECT_TRUE(test::until([this] { return !opened.empty(); })) << command;
        EXPECT_THAT(opened, testing::ElementsAre(4021)) << command;
        call(commands, "NotificationCloseAll", {});
        ASSERT_TRUE(test::until([] { return shown() == 0; }));
    }
}

} // namespace
} // namespace ellwynd
