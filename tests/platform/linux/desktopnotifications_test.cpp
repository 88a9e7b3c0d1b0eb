// Runs with a session bus that can start no services; see support/with-bus.
#include "platform/linux/desktopnotifications.h"
#include "support/until.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusContext>
#include <QDBusMessage>
#include <QVariantMap>

#include <gmock/gmock.h>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using Status = UserNotifications::AuthorizationStatus;

const QString serverName = QStringLiteral("org.freedesktop.Notifications");
const QString serverPath = QStringLiteral("/org/freedesktop/Notifications");
const QString defaultAction = QStringLiteral("default");

/// A separate connection to the session bus, like that of another process.
QDBusConnection anotherConnection() {
    static int count = 0;
    return QDBusConnection::connectToBus(
        QDBusConnection::SessionBus, QStringLiteral("connection %1").arg(++count));
}

/// Sends a signal about a notice.
void sendSignal(QDBusConnection from, const QString &signal, uint id, const QString &text) {
    QDBusMessage message = QDBusMessage::createSignal(serverPath, serverName, signal);
    message.setArguments({id, text});
    from.send(message);
}

/// A notification server whose faults a test can choose.
class FakeServer : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Notifications")

  public:
    FakeServer() {
        EXPECT_TRUE(
            connection.registerObject(serverPath, this, QDBusConnection::ExportAllSlots) &&
            connection.registerService(serverName));
    }
    ~FakeServer() override {
        connection.unregisterService(serverName);
        QDBusConnection::disconnectFromBus(connection.name());
    }

    void click(uint id, const QString &action = defaultAction) const {
        sendSignal(
            connection, QStringLiteral("ActivationToken"), id,
            QStringLiteral("token of ") + action);
        sendSignal(connection, QStringLiteral("ActionInvoked"), id, action);
    }

    QStringList capabilities;
    /// Receives calls without answering them.
    bool hangs = false;
    bool refuses = false;
    uint lastID = 0;
    /// The arguments of every "Notify".
    std::vector<QVariantList> notices;

  public Q_SLOTS:
    QString GetServerInformation() {
        setDelayedReply(hangs);
        return QStringLiteral("Fake");
    }
    QStringList GetCapabilities() {
        setDelayedReply(hangs);
        return capabilities;
    }
    uint Notify(
        const QString &application, uint replaces, const QString &icon, const QString &summary,
        const QString &body, const QStringList &actions, const QVariantMap &hints, int expiry) {
        notices.push_back({application, replaces, icon, summary, body, actions, hints, expiry});
        if (refuses)
            sendErrorReply(QDBusError::LimitsExceeded, QStringLiteral("Too many notices"));
        return ++lastID;
    }

  private:
    QDBusConnection connection = anotherConnection();
};

struct DesktopNotificationsTest : testing::Test {
    DesktopNotifications notifications{300ms};
    std::vector<std::string> failures;
    std::vector<std::string> clicked;
    std::shared_ptr<void> observing = notifications.observeClicks(
        [this](const UserNotice &notice) { clicked.push_back(notice.identifier); });

    [[nodiscard]] Status status() {
        std::optional<Status> answer;
        notifications.authorizationStatus([&](Status given) { answer = given; });
        EXPECT_FALSE(answer) << "the call must not block";
        EXPECT_TRUE(test::until([&] { return answer.has_value(); }));
        return answer.value_or(Status::denied);
    }

    void post(const char *identifier, std::optional<std::int64_t> courseID = 4021) {
        notifications.post(
            {.identifier = identifier, .title = "T", .body = "<b>&</b>", .courseID = courseID},
            [this](const std::string &message) { failures.push_back(message); });
    }

    /// Waits until the server's messages so far have arrived; they arrive in order.
    void settle() { EXPECT_EQ(status(), Status::authorized); }

    void postTo(
        const FakeServer &server, const char *identifier,
        std::optional<std::int64_t> courseID = 4021) {
        const std::size_t before = server.notices.size();
        post(identifier, courseID);
        ASSERT_TRUE(test::until([&] { return server.notices.size() > before; }));
        settle();
    }
};

TEST_F(DesktopNotificationsTest, AuthorizationNeedsAServerThatAnswers) {
    EXPECT_EQ(status(), Status::denied) << "no server";
    FakeServer server;
    EXPECT_EQ(status(), Status::authorized);
    server.hangs = true;
    EXPECT_EQ(status(), Status::denied) << "hangs";
    server.hangs = false;
    EXPECT_EQ(status(), Status::authorized) << "answers again";
    EXPECT_EQ(server.lastID, 0U) << "a status query must not show a notice";
}

TEST_F(DesktopNotificationsTest, NoticesDependOnTheServersCapabilities) {
    FakeServer server;
    const QString body = QStringLiteral("body");
    const QString actions = QStringLiteral("actions");
    const QString open = QStringLiteral("open");
    const QString course = QStringLiteral("Open Course");
    const QString program = QStringLiteral("Open Ellwynd");
    const QString plain = QStringLiteral("<b>&</b>");
    const QString escaped = QStringLiteral("&lt;b&gt;&amp;&lt;/b&gt;");
    for (const auto &[capabilities, courseID, text, offered] :
         std::vector<std::tuple<QStringList, std::optional<std::int64_t>, QString, QStringList>>{
             {{body}, 4021, plain, {}},
             {{body, actions}, 4021, plain, {defaultAction, course, open, course}},
             {{body, actions}, {}, plain, {defaultAction, program, open, program}},
             {{body, QStringLiteral("body-markup")}, 4021, escaped, {}}}) {
        server.capabilities = capabilities;
        postTo(server, "m", courseID);
        const QVariantList sent = server.notices.back();
        EXPECT_EQ(sent[0].toString(), QStringLiteral("Ellwynd"));
        EXPECT_EQ(sent[1].toUInt(), 0U) << "replaces none";
        EXPECT_EQ(sent[3].toString(), QStringLiteral("T"));
        EXPECT_EQ(sent[4].toString(), text);
        EXPECT_EQ(sent[5].toStringList(), offered);
        const QVariantMap hints = sent[6].toMap();
        EXPECT_EQ(hints.value(QStringLiteral("suppress-sound")), QVariant(true));
        EXPECT_EQ(
            hints.value(QStringLiteral("desktop-entry")),
            QVariant(QStringLiteral("com.varnok.Ellwynd")));
    }
    EXPECT_THAT(failures, ElementsAre());
}

TEST_F(DesktopNotificationsTest, ReportsClicksOnOwnNoticesOnly) {
    FakeServer server;
    server.lastID = 6;
    postTo(server, "first");
    postTo(server, "second");
    server.click(8);
    server.click(7, QStringLiteral("open"));
    server.click(7, QStringLiteral("settings"));
    server.click(6);
    settle();
    EXPECT_THAT(clicked, ElementsAre("second", "first"));

    // Signals of other processes are ignored.
    const QDBusConnection other = anotherConnection();
    sendSignal(other, QStringLiteral("ActionInvoked"), 7, defaultAction);
    ASSERT_TRUE(other.interface()->isServiceRegistered(serverName)) << "the bus has the signal";
    settle();
    server.click(7);
    settle();
    EXPECT_EQ(clicked.size(), 3U);
    EXPECT_EQ(qgetenv("XDG_ACTIVATION_TOKEN"), "token of default") << "windows may come forward";

    observing.reset();
    server.click(7);
    settle();
    EXPECT_EQ(clicked.size(), 3U);
}

TEST_F(DesktopNotificationsTest, ForgetsNoticesOfAnEndedServer) {
    {
        const FakeServer server;
        postTo(server, "old");
    }
    FakeServer server;
    server.click(1);
    settle();
    EXPECT_THAT(clicked, ElementsAre());
    postTo(server, "new");
    server.click(1);
    settle();
    EXPECT_THAT(clicked, ElementsAre("new"));
}

TEST_F(DesktopNotificationsTest, ReportsFailuresWithTheSystemsMessage) {
    const auto failed = [&] { return test::until([&] { return !failures.empty(); }); };
    post("no server");
    EXPECT_TRUE(failed());
    FakeServer server;
    failures.clear();
    server.refuses = true;
    post("refused");
    EXPECT_TRUE(failed());
    EXPECT_THAT(failures, ElementsAre("Too many notices"));
    failures.clear();
    server.hangs = true;
    post("hangs");
    EXPECT_THAT(failures, ElementsAre()) << "the call must not block";
    EXPECT_TRUE(failed());
    EXPECT_EQ(server.notices.size(), 1U);
}

TEST_F(DesktopNotificationsTest, CallsNothingBackAfterDestruction) {
    FakeServer server;
    server.hangs = true;
    auto shortLived = std::make_unique<DesktopNotifications>(300ms);
    bool answered = false;
    shortLived->authorizationStatus([&](Status) { answered = true; });
    shortLived->post({}, [&](const std::string &) { answered = true; });
    shortLived.reset();
    // A later call with the same timeout ends later.
    EXPECT_EQ(status(), Status::denied);
    EXPECT_FALSE(answered);
}

} // namespace
} // namespace ellwynd

#include "desktopnotifications_test.moc"
