// The requests that activations, wakes and returns of the network cause within a simulated minute,
// beside those of one reading of the roster on screen and one pass; and the requests of ten
// refreshes during a pass, beside those of two such readings and two passes.
#include "app/mainwindowcontroller.h"
#include "base/log.h"
#include "canvas/tokenstore.h"
#include "support/certificates.h"
#include "support/fakecanvas.h"
#include "support/memorysecrets.h"
#include "support/servedcourse.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QTemporaryDir>
#include <QTimer>

#include <fmt/format.h>

namespace {

using namespace ellwynd;
using namespace std::chrono_literals;

std::chrono::milliseconds simulated{};

Date simulatedNow() {
    return systemNow() + simulated;
}

ElapsedTime simulatedElapsed() {
    return elapsedNow() + simulated;
}

class Teacher {
  public:
    Teacher() {
        test::trustAuthority();
        std::vector<test::ServedCourse> courses;
        for (std::int64_t id = 1; id <= 4; ++id)
            courses.push_back(
                test::inventCourse(id, {.students = 30, .assignments = 10}, systemNow()));
        test::serve(canvas, courses);
        secrets.secrets[{TokenStore::service, TokenStore::accountOf(canvas.address())}] =
            "secret-token";
        defaults.set(preferences::canvasBaseURL, canvas.address());
        controller.setActive(true);
    }

    /// The requests that an action causes, until there have been none for a while.
    template<class Action>
    std::size_t requestsOf(Action action) {
        const std::size_t before = canvas.requests.size();
        action();
        std::size_t seen = 0;
        do {
            seen = canvas.requests.size();
            QEventLoop loop;
            QTimer::singleShot(300ms, &loop, &QEventLoop::quit);
            loop.exec();
        } while (canvas.requests.size() != seen);
        return seen - before;
    }

  private:
    QTemporaryDir folder;
    std::filesystem::path home = folder.path().toStdString();
    test::MemorySecrets secrets;
    UserDefaults defaults{home / "Preferences.json", {}};
    AsyncTokenStore tokens{secrets.shared()};
    CanvasSession session;
    Connector connector{defaults, tokens, session};
    Stores stores{defaults, home / "data"};
    TrendSync trends{defaults};
    WidgetSnapshotWriter widgets{home / "widgets", [] {}};

  public:
    test::FakeCanvas canvas;
    MainWindowController controller{
        defaults, connector, stores, trends, {.widgets = widgets}, simulatedNow, simulatedElapsed};
};

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    Teacher teacher;
    MainWindowController &controller = teacher.controller;
    teacher.requestsOf([&] { controller.refresh(); });
    teacher.requestsOf([&] { controller.select(CourseSelection{1}); });
    simulated += 2min;
    const std::size_t freshen = teacher.requestsOf([&] { controller.refreshRoster(); });
    simulated += 31min;
    const std::size_t pass = teacher.requestsOf([&] { controller.timerFired(); });

    simulated += 31min;
    std::size_t minute = 0;
    // With the time that the requests take, less than a minute.
    for (int i = 0; i < 15; ++i) {
        minute += teacher.requestsOf([&] {
            controller.setActive(false);
            controller.setActive(true);
            controller.computerDidWake();
            controller.networkDidReturn();
        });
        simulated += 3s;
    }
    fmt::print("a minute of activations and wakes: {}\n", minute);
    fmt::print("one freshen and one pass: {}\n", freshen + pass);

    simulated += 31min;
    teacher.canvas.latencyMilliseconds = 50;
    const std::size_t refreshes = teacher.requestsOf([&] {
        for (int i = 0; i < 10; ++i)
            QTimer::singleShot(10ms * i, &controller, &MainWindowController::refresh);
    });
    fmt::print("ten refreshes during a pass: {}\n", refreshes);
    fmt::print("two freshens and two passes: {}\n", 2 * (freshen + pass));
    return freshen > 0 && pass > freshen && minute > 0 && refreshes > 0 ? 0 : 1;
}
