// Runs with a real notification server; see support/with-notifications.
#include "outputs/notices/movementnotifier.h"
#include "platform/linux/desktopnotifications.h"
#include "support/temporaryfolder.h"
#include "support/until.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusReply>
#include <QDBusVariant>
#include <QVariantMap>

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

bool isShown() {
    return test::until([] { return shown() == 1; });
}

/// Closes all notices and returns the server's history, newest first.
QList<QVariantMap> history() {
    call(commands, "NotificationCloseAll", {});
    const QDBusReply<QList<QVariantMap>> reply(call(commands, "NotificationListHistory", {}));
    EXPECT_TRUE(reply.isValid()) << reply.error().message().toStdString();
    return reply.value();
}

std::string textOf(const QVariantMap &notice, const char *key) {
    return notice.value(QString::fromLatin1(key)).toString().toStdString();
}

struct PostedNotices : testing::Test {
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {{"MovementNotifications", true}}};
    DesktopNotifications notifications;
    MovementNotifier notifier{defaults, notifications, [] { return false; }};
    std::vector<std::int64_t> opened;

    void SetUp() override {
        qDBusRegisterMetaType<QList<QVariantMap>>();
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

    [[nodiscard]] bool isOpened(std::size_t times) const {
        return test::until([&] { return opened.size() == times; });
    }
};

TEST_F(PostedNotices, ClickAndButtonOpenTheCourse) {
    const CourseMovement bio{.courseID = 4021, .courseName = "Bio", .worseStudentIDs = {1}};
    notifier.notify({bio});
    ASSERT_TRUE(isShown());
    call(commands, "NotificationAction", {0U});
    EXPECT_TRUE(isOpened(1)) << "the notice itself";
    call(commands, "NotificationCloseAll", {});
    ASSERT_TRUE(test::until([] { return shown() == 0; }));

    notifier.forget(4021);
    notifier.notify({bio});
    ASSERT_TRUE(isShown());
    call(commands, "ContextMenuCall", {});
    EXPECT_TRUE(isOpened(2)) << "the button";
    EXPECT_THAT(opened, testing::ElementsAre(4021, 4021));
    call(commands, "NotificationCloseAll", {});
}

TEST_F(PostedNotices, TwoPassesThatFindTheSameStudentPostOnce) {
    const qsizetype before = history().size();
    const CourseMovement hostile{
        .courseID = 4022,
        .courseName = "<b>Bio</b> &amp; <a href=\"https://h.example\">x</a>\n\u202Eend",
        .worseStudentIDs = {1, 2}};
    notifier.notify({hostile});
    ASSERT_TRUE(isShown());
    notifier.notify({hostile});
    // Once a later notice is shown, all earlier ones are.
    notifier.notify({{.courseID = 4023, .courseName = "Last", .worseStudentIDs = {3}}});
    ASSERT_TRUE(test::until([] { return shown() == 2; }));
    const QList<QVariantMap> notices = history();
    ASSERT_EQ(notices.size(), before + 2);
    EXPECT_EQ(textOf(notices[0], "body"), "Last");
    EXPECT_EQ(textOf(notices[1], "appname"), "Ellwynd");
    EXPECT_EQ(textOf(notices[1], "summary"), "2 students newly need attention");
    // The body as it was sent; the server decodes it.
    EXPECT_EQ(
        textOf(notices[1], "body"),
        "&lt;b&gt;Bio&lt;/b&gt; &amp;amp; &lt;a href=\"https://h.example\"&gt;x&lt;/a&gt; end");
}

} // namespace
} // namespace ellwynd
