// A week of a teacher's computer: the real window, a Canvas that is cut off and refuses, and a
// stand-in for the login manager that reports sleep; see support/with-bus.
#include "app/mainwindowcontroller.h"
#include "app/sync/syncservice.h"
#include "platform/session/wake.h"
#include "support/core.h"
#include "support/fakecanvas.h"
#include "support/instants.h"
#include "support/until.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/support/appearance.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QMessageBox>

#include <gmock/gmock.h>

#include <deque>
#include <fstream>
#include <malloc.h>
#include <random>
#include <set>
#include <unistd.h>

namespace ellwynd {
namespace {

using namespace std::chrono_literals;
using test::until;

Date wallTime = test::noon;
ElapsedTime slept{};

Date wallClock() {
    return wallTime;
}
ElapsedTime machineClock() {
    return elapsedNow() + slept;
}
QCoro::Task<> noWait(std::chrono::milliseconds, std::stop_token) {
    co_return;
}

/// Resident memory in MiB, without what the allocator keeps for later.
double residentMemory() {
    ::malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    long total = 0;
    long resident = 0;
    file >> total >> resident;
    return double(resident) * double(::sysconf(_SC_PAGESIZE)) / (1 << 20);
}

struct WeekTest : testing::Test {
    static constexpr int courses = 4;
    /// The roster on screen: three lists.
    static constexpr std::size_t freshen = 3;
    static constexpr std::size_t pass = 3UL * courses;
    static constexpr std::size_t list = 1;
    /// A read that fails for want of a network is attempted so often.
    static constexpr std::size_t attempts = 4;

    test::FakeCanvas canvas;
    test::TemporaryFolder folder;
    UserDefaults defaults{folder.path() / "Preferences.json", {}};
    test::MemorySecrets secrets;
    AsyncTokenStore tokens{secrets.shared()};
    CanvasSession session{{}, noWait};
    Connector connector{defaults, tokens, session, wallClock};
    ConnectionCheck check{defaults, tokens, session};
    Stores stores{defaults, folder.path() / "data", wallClock};
    TrendSync trends{defaults};
    test::MemoryNotifications notifications;
    MovementNotifier notices{defaults, notifications, [] { return false; }};
    WidgetSnapshotWriter widgets{folder.path() / "widgets", [] {}};
    MainWindowController controller{
        defaults,  connector,   stores, trends, {.widgets = widgets, .notices = &notices},
        wallClock, machineClock};
    Settings settings{defaults};
    Appearance appearance{settings, false};
    SyncService sync{defaults, trends, folder.path() / "Seen.json"};
    MainWindow window{controller, defaults, stores, check, sync, notifications, appearance};
    std::shared_ptr<void> wake;
    std::mt19937 random{20261122};
    bool isCutOff = false;
    std::size_t requests = 0;
    int maxAlerts = 0;

    WeekTest() {
        test::trustAuthority();
        // The stand-in for the system's bus.
        qputenv("DBUS_SYSTEM_BUS_ADDRESS", qgetenv("DBUS_SESSION_BUS_ADDRESS"));
        QDBusConnection::sessionBus().registerService(QStringLiteral("org.freedesktop.login1"));
        wake = observeWake([this] { controller.computerDidWake(); });
        serve();
        const std::string address = canvas.address();
        secrets.secrets[{TokenStore::service, TokenStore::accountOf(address)}] = "secret-token";
        defaults.set(preferences::canvasBaseURL, address);
        controller.setActive(true);
        window.show();
    }

    void serve() {
        std::vector<QByteArray> all;
        for (int id = 1; id <= courses; ++id) {
            all.push_back(
                QStringLiteral(
                    R"({"id":%1,"name":"Course %1","term":{"id":9,"name":"Fall",)"
                    R"("start_at":"2026-09-01T00:00:00Z","end_at":"2026-12-20T00:00:00Z"}})")
                    .arg(id)
                    .toUtf8());
            const QString path = QStringLiteral("/api/v1/courses/%1/").arg(id);
            std::vector<QByteArray> students;
            for (int student = 1; student <= 20; ++student)
                students.push_back(QStringLiteral(R"({"user_id":%1,"user":{"id":%1,"name":"S %1"},)"
                                                  R"("grades":{"current_score":%2}})")
                                       .arg(student)
                                       .arg(40 + student * 3)
                                       .toUtf8());
            canvas.serve(path + QStringLiteral("enrollments"), students);
            canvas.serve(path + QStringLiteral("assignment_groups"), {});
            canvas.serve(path + QStringLiteral("students/submissions"), {});
        }
        canvas.serve(QStringLiteral("/api/v1/courses"), all);
    }

    [[nodiscard]] int draw(int low, int high) {
        return std::uniform_int_distribution(low, high)(random);
    }

    void setCutOff(bool cutOff) {
        isCutOff = cutOff;
        if (cutOff)
            canvas.answerWith([](const test::FakeRequest &) {
                return test::FakeReply{.manner = test::FakeReply::Manner::closed};
            });
        else
            canvas.answerWith(nullptr);
    }

    static void advance(std::chrono::milliseconds time) {
        wallTime += time;
        slept += time;
    }

    static std::int64_t minute() {
        return std::chrono::floor<std::chrono::minutes>(wallTime.time_since_epoch()).count();
    }

    /// Lets everything that was started end, and counts what it asked.
    void settle() {
        ASSERT_TRUE(until([&] {
            const auto &state = controller.dashboard().progress();
            return !controller.isLoading() && !state.running &&
                session.requestLimiter().inFlight() == 0;
        }));
        requests += canvas.requests.size();
        canvas.requests.clear();
        int alerts = 0;
        for (const QMessageBox *box : window.findChildren<QMessageBox *>())
            alerts += box->isVisible() ? 1 : 0;
        maxAlerts = std::max(maxAlerts, alerts);
    }

    void sleepAndWake(std::chrono::milliseconds time) {
        bool woke = false;
        const auto observer = observeWake([&woke] { woke = true; });
        advance(time);
        QDBusMessage signal = QDBusMessage::createSignal(
            QStringLiteral("/org/freedesktop/login1"),
            QStringLiteral("org.freedesktop.login1.Manager"), QStringLiteral("PrepareForSleep"));
        signal << false;
        QDBusConnection::sessionBus().send(signal);
        ASSERT_TRUE(until([&] { return woke; }));
    }

    void switchWindows(int times) {
        for (int i = 0; i < times; ++i) {
            controller.setActive(false);
            controller.setActive(true);
            QCoreApplication::processEvents();
        }
    }
};

TEST_F(WeekTest, AWeekAsksNoMoreThanOneFreshenAndOnePassAMinute) {
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.dashboard().shownTerm() != nullptr; }));
    controller.select(CourseSelection{1});
    ASSERT_NO_FATAL_FAILURE(settle());
    requests = 0;

    const Date end = wallTime + 7 * 24h;
    std::set<std::int64_t> minutes;
    std::set<std::int64_t> minutesCutOff;
    std::size_t more = 0;
    std::chrono::milliseconds untilTimer = 30min;
    // Five readings of the first day, and the last five.
    constexpr std::size_t readings = 5;
    std::vector<double> firstDay;
    std::deque<double> lastDay;
    int events = 0;
    while (wallTime < end) {
        ++events;
        const std::chrono::seconds step(draw(20, 900));
        advance(step);
        untilTimer -= step;
        if (untilTimer <= 0ms) {
            untilTimer = 30min;
            controller.timerFired();
        }
        canvas.latencyMilliseconds = draw(0, 3) == 0 ? draw(1, 30) : 0;
        const bool wasCutOff = isCutOff;
        switch (draw(0, 9)) {
        case 0: {
            // The network comes back after the computer has woken.
            setCutOff(true);
            ASSERT_NO_FATAL_FAILURE(sleepAndWake(std::chrono::minutes(draw(5, 600))));
            ASSERT_NO_FATAL_FAILURE(settle());
            minutes.insert(minute());
            minutesCutOff.insert(minute());
            setCutOff(false);
            advance(20s);
            controller.networkDidReturn();
            more += freshen + pass + list;
            break;
        }
        case 1:
            ASSERT_NO_FATAL_FAILURE(sleepAndWake(std::chrono::minutes(draw(5, 600))));
            break;
        case 2:
            setCutOff(!isCutOff);
            if (!isCutOff)
                controller.networkDidReturn();
            break;
        case 3:
            canvas.plan(QStringLiteral("/api/v1/courses/2/enrollments"), {{.status = 403}});
            break;
        case 4:
            controller.select(CourseSelection{draw(1, courses)});
            more += freshen;
            break;
        case 5:
            controller.refresh();
            more += list + freshen + pass;
            break;
        default:
            switchWindows(draw(1, 12));
        }
        minutes.insert(minute());
        if (isCutOff || wasCutOff)
            minutesCutOff.insert(minute());
        ASSERT_NO_FATAL_FAILURE(settle());
        if (events % 8 != 0)
            continue;
        lastDay.push_back(residentMemory());
        if (firstDay.size() < readings)
            firstDay.push_back(lastDay.back());
        if (lastDay.size() > readings)
            lastDay.pop_front();
    }
    // While it is cut off, each read is attempted several times.
    const std::size_t bound =
        (minutes.size() + (attempts - 1) * minutesCutOff.size()) * (freshen + pass) + more;
    EXPECT_LE(requests, bound);
    EXPECT_GT(requests, 0U);
    EXPECT_LE(maxAlerts, 1);
#ifndef __SANITIZE_ADDRESS__
    std::ranges::sort(firstDay);
    std::ranges::sort(lastDay);
    ASSERT_EQ(lastDay.size(), readings);
    EXPECT_LE(lastDay[readings / 2] - firstDay[readings / 2], firstDay.back() - firstDay.front())
        << "memory after the first day";
#endif

    // What is on screen at the end is of that minute.
    setCutOff(false);
    canvas.plan(QStringLiteral("/api/v1/courses/2/enrollments"), {});
    ASSERT_NO_FATAL_FAILURE(sleepAndWake(8h));
    ASSERT_NO_FATAL_FAILURE(settle());
    ASSERT_TRUE(controller.roster().courseID.has_value());
    EXPECT_EQ(controller.roster().fetchedAt, wallTime);
    ASSERT_NE(controller.dashboard().shownTerm(), nullptr);
    EXPECT_EQ(controller.dashboard().shownTerm()->updatedAt, wallTime);
    EXPECT_EQ(controller.roster().staleReason, "");
    EXPECT_EQ(controller.status(), "4 courses");

    RecordProperty("events", events);
    RecordProperty("minutes", int(minutes.size()));
    RecordProperty("requests", int(requests));
    RecordProperty("bound", int(bound));
    for (std::size_t i = 0; i < readings; ++i) {
        RecordProperty("memoryOfTheFirstDay" + std::to_string(i), std::to_string(firstDay[i]));
        RecordProperty("memoryOfTheLastDay" + std::to_string(i), std::to_string(lastDay[i]));
    }
}

TEST_F(WeekTest, ActivationsForTenMinutesCostThoseOfOneAMinute) {
    controller.refresh();
    ASSERT_TRUE(until([&] { return controller.dashboard().shownTerm() != nullptr; }));
    controller.select(CourseSelection{1});
    ASSERT_NO_FATAL_FAILURE(settle());
    requests = 0;
    for (int i = 0; i < 1200; ++i) {
        advance(500ms);
        if (i == 600)
            controller.timerFired();
        switchWindows(1);
    }
    ASSERT_NO_FATAL_FAILURE(settle());
    EXPECT_LE(requests, 10 * (freshen + pass) + pass);
    EXPECT_GE(requests, 5 * pass) << "and the figures are kept fresh";
    RecordProperty("requests", int(requests));
}

} // namespace
} // namespace ellwynd
