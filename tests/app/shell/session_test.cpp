// One instance for each session, on a private bus; see support/with-bus.
#include "app/mainwindowcontroller.h"
#include "app/shell/appdelegate.h"
#include "app/updates/updater.h"
#include "platform/linux/sessionbusservice.h"
#include "platform/session/detachedprogram.h"
#include "support/core.h"
#include "support/instants.h"
#include "support/logcapture.h"
#include "support/until.h"

#include <QDBusConnectionInterface>
#include <QDBusVirtualObject>
#include <QProcess>

#include <gmock/gmock.h>

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <unistd.h>

namespace ellwynd {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

const QString name = QStringLiteral("com.varnok.Ellwynd");

bool nameIsOwned() {
    return QDBusConnection::sessionBus().interface()->isServiceRegistered(name);
}

/// The program as a process on this bus, with a temporary home and without a display. Its standard
/// error is a terminal, since the log is always written to one, even if there is a journal.
class Program {
  public:
    explicit Program(const QStringList &arguments) {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char *folder :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
            environment.insert(
                QString::fromUtf8(folder), QString::fromStdString(home.path().string()));
        environment.insert(QStringLiteral("DESKTOP_STARTUP_ID"), QStringLiteral("token-of-start"));
        process.setProcessEnvironment(environment);
        std::array<char, 64> terminalName{};
        if (::grantpt(terminal) != 0 || ::unlockpt(terminal) != 0 ||
            ::ptsname_r(terminal, terminalName.data(), terminalName.size()) != 0)
            throw std::runtime_error("no pseudo-terminal");
        process.setStandardErrorFile(QString::fromUtf8(terminalName.data()));
        process.start(QStringLiteral(ELLWYND_PROGRAM), arguments);
    }
    ~Program() {
        process.kill();
        process.waitForFinished();
        ::close(terminal);
    }
    Program(const Program &) = delete;
    Program &operator=(const Program &) = delete;

    /// Waits for its end while handling events. Returns its exit status; negative on a timeout or a
    /// crash.
    [[nodiscard]] int status() {
        if (!test::until([this] { return process.state() == QProcess::NotRunning; }))
            return -1;
        return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -2;
    }

    [[nodiscard]] std::string errors() {
        std::array<char, 4096> bytes{};
        for (ssize_t size = 0; (size = ::read(terminal, bytes.data(), bytes.size())) > 0;)
            collected.append(bytes.data(), std::size_t(size));
        return collected;
    }

    test::TemporaryFolder home;
    QProcess process;

  private:
    int terminal = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    std::string collected;
};

/// An instance inside this process, with the sample college.
struct Shell {
    test::Core core{{{"SampleData", true}}};
    MainWindowController controller{core.defaults, core.connector, core.stores,
                                    core.trends,   core.sinks,     test::noonClock};
    AppcastFeed feed{core.defaults, ""};
    Updater updater{core.defaults, feed, "1"};
    SessionBusService service;
    AppDelegate delegate{
        core.defaults, controller, service, updater,
        []() -> std::optional<std::string> { return "not in this test"; }};
    std::vector<std::string> activations;

    Shell() {
        QObject::connect(
            &delegate, &AppDelegate::activationRequested, &delegate,
            [this](const QString &token) { activations.push_back(token.toStdString()); });
    }

    [[nodiscard]] std::optional<std::int64_t> courseShown() const {
        return controller.roster().courseID;
    }
};

/// Another peer on the bus, which may make any call.
struct Peer {
    QDBusConnection bus =
        QDBusConnection::connectToBus(QDBusConnection::SessionBus, QStringLiteral("peer"));

    ~Peer() { QDBusConnection::disconnectFromBus(QStringLiteral("peer")); }

    /// The name of the error that a call is answered with; empty for success.
    std::string call(const QString &method, const QVariantList &arguments) const {
        QDBusMessage message = QDBusMessage::createMethodCall(
            name, QStringLiteral("/com/varnok/Ellwynd"),
            QStringLiteral("org.freedesktop.Application"), method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = bus.asyncCall(message);
        EXPECT_TRUE(test::until([&] { return pending.isFinished(); }));
        return pending.isError() ? pending.error().name().toStdString() : "";
    }
};

const QStringList linkTo900102{QStringLiteral("ellwynd://course/900102")};

TEST(Session, ASecondStartForwardsItsLink) {
    Shell first;
    ASSERT_EQ(first.service.start({}, {}), ApplicationService::Outcome::first);
    first.delegate.launch({});
    ASSERT_EQ(first.courseShown(), std::nullopt);

    Program second(linkTo900102);
    EXPECT_EQ(second.status(), 0) << second.errors();
    EXPECT_EQ(first.courseShown(), 900102);
    EXPECT_THAT(first.activations, ElementsAre("token-of-start"));
    EXPECT_FALSE(std::filesystem::exists(second.home.path() / "Ellwynd"))
        << "the second start does not touch the files";

    Program third({QStringLiteral("-SampleData"), QStringLiteral("YES")});
    EXPECT_EQ(third.status(), 0) << third.errors();
    EXPECT_EQ(first.courseShown(), 900102);
    EXPECT_EQ(first.activations.size(), 2U) << "without a link the window is raised";
}

TEST(Session, ASecondProcessForwardsItsLinkAndEnds) {
    // Qt's own options may come first.
    Program first(
        {QStringLiteral("--platform"), QStringLiteral("offscreen"), QStringLiteral("-SampleData"),
         QStringLiteral("YES")});
    EXPECT_TRUE(test::until(nameIsOwned)) << first.errors();
    Program second(linkTo900102);
    EXPECT_EQ(second.status(), 0) << second.errors();
    EXPECT_TRUE(test::until([&] {
        return first.errors().find("A link requested course 900102") != std::string::npos;
    })) << first.errors();
    EXPECT_EQ(first.process.state(), QProcess::Running);
    EXPECT_THAT(first.errors(), HasSubstr("Ellwynd launching"));
    EXPECT_THAT(second.errors(), testing::Not(HasSubstr("Ellwynd launching")));
}

TEST(Session, InvalidArgumentsAreRejected) {
    for (const char *word : {"--nonsense", "course", "-SampleData", "/etc/passwd"}) {
        Program program({QString::fromUtf8(word)});
        EXPECT_EQ(program.status(), 2) << word;
        EXPECT_THAT(program.errors(), HasSubstr(word));
    }
    EXPECT_FALSE(nameIsOwned());
}

/// An object on a bus connection of its own, which answers calls as the test says.
class ScriptedObject : public QDBusVirtualObject {
  public:
    /// Returns the arguments of the answer; absent if there is none.
    using Answer = std::function<std::optional<QVariantList>(const QDBusMessage &)>;

    ScriptedObject(const QString &service, const QString &path, Answer answer)
        : answer(std::move(answer)),
          path(path),
          bus(QDBusConnection::connectToBus(QDBusConnection::SessionBus, service)) {
        EXPECT_TRUE(bus.registerVirtualObject(path, this) && bus.registerService(service));
    }
    ~ScriptedObject() override {
        bus.unregisterObject(path);
        QDBusConnection::disconnectFromBus(bus.name());
    }

    QString introspect(const QString &) const override { return {}; }
    bool handleMessage(const QDBusMessage &message, const QDBusConnection &from) override {
        if (const auto arguments = answer(message))
            from.send(message.createReply(*arguments));
        return true;
    }

  private:
    Answer answer;
    QString path;
    QDBusConnection bus;
};

TEST(Session, AHungInstanceIsReportedInANotice) {
    for (const bool serverHangs : {false, true}) {
        const ScriptedObject hung(
            name, QStringLiteral("/com/varnok/Ellwynd"),
            [](const QDBusMessage &) { return std::nullopt; });
        std::vector<QVariantList> notices;
        const ScriptedObject server(
            QStringLiteral("org.freedesktop.Notifications"),
            QStringLiteral("/org/freedesktop/Notifications"),
            [&](const QDBusMessage &call) -> std::optional<QVariantList> {
                if (serverHangs)
                    return std::nullopt;
                if (call.member() == QStringLiteral("GetCapabilities"))
                    return QVariantList{
                        QStringList{QStringLiteral("body"), QStringLiteral("actions")}};
                notices.push_back(call.arguments());
                return QVariantList{1U};
            });
        Program second({});
        EXPECT_EQ(second.status(), 1) << second.errors();
        EXPECT_THAT(second.errors(), HasSubstr("does not answer"));
        EXPECT_EQ(notices.size(), serverHangs ? 0U : 1U);
        for (const QVariantList &notice : notices) {
            EXPECT_EQ(notice[3].toString(), QStringLiteral("Ellwynd does not answer"));
            EXPECT_NE(notice[4].toString(), QString());
            EXPECT_EQ(notice[5].toStringList(), QStringList()) << "nothing to click";
        }
    }
}

TEST(Session, ANameWithoutTheObjectIsReported) {
    QDBusConnection bus = QDBusConnection::sessionBus();
    ASSERT_TRUE(bus.registerService(name));
    Program second({});
    EXPECT_EQ(second.status(), 1) << second.errors();
    bus.unregisterService(name);
}

TEST(Session, WithoutABusEveryInstanceIsTheFirst) {
    SessionBusService alone(QDBusConnection(QStringLiteral("no such connection")));
    EXPECT_EQ(alone.start(linkTo900102, {}), ApplicationService::Outcome::first);
    alone.releaseName();
    alone.reclaimName();
}

TEST(Session, CallsOpenACourseOrDoNothing) {
    Shell shell;
    ASSERT_EQ(shell.service.start({}, {}), ApplicationService::Outcome::first);
    shell.delegate.launch({});
    Peer peer;
    const QVariantMap nothing;
    const auto open = [&](const QStringList &links, const QVariantMap &data) {
        shell.activations.clear();
        return peer.call(QStringLiteral("Open"), {links, data});
    };
    const auto link = [](int id) { return QStringLiteral("ellwynd://course/%1").arg(id); };
    const QString token = QStringLiteral("activation-token");
    const QString startup = QStringLiteral("desktop-startup-id");

    EXPECT_EQ(open({link(900101)}, {{token, QStringLiteral("new")}, {startup, 5}}), "");
    EXPECT_EQ(shell.courseShown(), 900101);
    EXPECT_THAT(shell.activations, ElementsAre("new"));

    // As if they were clicked one after the other.
    EXPECT_EQ(
        open(
            {link(900101), link(900102), QStringLiteral("https://canvas.example.edu/courses/1")},
            {{token, QStringLiteral("two\nlines")}, {startup, QStringLiteral("old")}}),
        "");
    EXPECT_EQ(shell.courseShown(), 900102);
    EXPECT_THAT(shell.activations, ElementsAre("old"));

    const std::optional<std::int64_t> asBefore = 900102;
    EXPECT_EQ(open({link(4021)}, nothing), "");
    EXPECT_EQ(shell.courseShown(), asBefore) << "a course that the list does not have";
    EXPECT_EQ(open({QStringLiteral("ellwynd://courses/900101"), QString()}, nothing), "");
    EXPECT_THAT(shell.activations, ElementsAre()) << "not a course link";
    QStringList many(100'000, QString(64, u'x'));
    many << link(900101);
    EXPECT_EQ(open(many, nothing), "");
    EXPECT_EQ(shell.courseShown(), asBefore) << "after too many links";
    EXPECT_THAT(shell.activations, ElementsAre());

    const std::string unknownMethod = "org.freedesktop.DBus.Error.UnknownMethod";
    EXPECT_EQ(peer.call(QStringLiteral("Open"), {QStringList(link(900101))}), unknownMethod);
    for (const char *method :
         {"releaseName", "reclaimName", "deleteLater", "activationRequested", "linksRequested"})
        EXPECT_EQ(peer.call(QString::fromUtf8(method), {}), unknownMethod) << method;
    const qlonglong course = 900101;
    const auto action = [&](const char *which, const QVariantList &parameter) {
        return peer.call(
            QStringLiteral("ActivateAction"), {QString::fromUtf8(which), parameter, nothing});
    };
    for (const QVariantList &parameter : std::initializer_list<QVariantList>{
             {}, {course, course}, {QStringLiteral("900101")}, {900101.0}})
        EXPECT_EQ(action("open-course", parameter), "");
    EXPECT_EQ(action("quit", {course}), "");
    EXPECT_EQ(shell.courseShown(), asBefore);
    EXPECT_THAT(shell.activations, ElementsAre());
    EXPECT_EQ(action("open-course", {course}), "");
    EXPECT_EQ(shell.courseShown(), course);
    EXPECT_THAT(shell.activations, ElementsAre(""));

    const QVariantMap tooLong{{token, QString(100'000, u'x')}};
    EXPECT_EQ(peer.call(QStringLiteral("Activate"), {tooLong}), "");
    EXPECT_THAT(shell.activations, ElementsAre("", ""));
}

TEST(Session, LinksAndNoticesRaiseTheWindowAndOpenTheirCourse) {
    Shell shell;
    shell.delegate.launch(linkTo900102);
    EXPECT_EQ(shell.courseShown(), 900102) << "once the course list is read";
    shell.delegate.openNotice(900201, QStringLiteral("token"));
    EXPECT_EQ(shell.courseShown(), 900201);
    shell.delegate.openNotice(std::nullopt);
    EXPECT_EQ(shell.courseShown(), 900201);
    EXPECT_THAT(shell.activations, ElementsAre("", "token", ""));
}

TEST(Session, SwitchingSampleModeReleasesTheNameAndRelaunches) {
    struct Row {
        const char *what;
        PreferenceMap arguments;
        std::optional<bool> saved;
        bool after;
    };
    for (const Row &row :
         {Row{"entering", {}, {}, true}, Row{"leaving", {}, true, false},
          Row{"leaving, despite an argument", {{"SampleData", true}}, {}, false},
          Row{"entering, despite an argument", {{"SampleData", false}}, true, true}}) {
        SCOPED_TRACE(row.what);
        for (const bool fails : {false, true}) {
            const test::LogCapture log;
            Shell shell;
            ASSERT_EQ(shell.service.start({}, {}), ApplicationService::Outcome::first);
            const auto file = shell.core.folder.path() / "Other.json";
            UserDefaults defaults(file, row.arguments);
            if (row.saved)
                defaults.set(preferences::sampleData, *row.saved);
            const PreferenceMap before = defaults.persistentDomain();
            std::vector<std::string> events;
            AppDelegate delegate(
                defaults, shell.controller, shell.service, shell.updater,
                [&]() -> std::optional<std::string> {
                    events.emplace_back(nameIsOwned() ? "started too early" : "started");
                    return fails ? std::optional<std::string>("no such file") : std::nullopt;
                });
            QObject::connect(&delegate, &AppDelegate::terminationRequested, [&] {
                events.emplace_back("ended");
            });
            QObject::connect(&delegate, &AppDelegate::relaunchDidFail, [&](const QString &message) {
                events.push_back(message.toStdString());
            });

            delegate.switchSampleMode();
            EXPECT_THAT(events, ElementsAre("started", fails ? "no such file" : "ended"));
            EXPECT_EQ(nameIsOwned(), fails);
            std::vector<std::string> lines{
                std::string("settings: Sample data ") + (row.after ? "on" : "off") +
                "; relaunching"};
            if (fails) {
                lines.emplace_back("settings: Relaunch failed: no such file");
                EXPECT_EQ(defaults.persistentDomain(), before);
            } else {
                // As read by a new instance, which has no launch arguments.
                const UserDefaults next(file, {});
                EXPECT_EQ(next.value(preferences::sampleData), row.after);
            }
            EXPECT_THAT(log.lines(), testing::IsSupersetOf(lines));
        }
    }
}

TEST(Session, AMissingExecutableIsReported) {
    const auto failure = startDetached(QStringLiteral("/nonexistent/ellwynd"));
    ASSERT_TRUE(failure);
    EXPECT_THAT(*failure, testing::StartsWith("/nonexistent/ellwynd could not be started: "));
    EXPECT_EQ(startDetached(QStringLiteral("/bin/true")), std::nullopt);
}

} // namespace
} // namespace ellwynd
