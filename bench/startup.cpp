// The time from process start to the first painted card of the sample college's dashboard. This
// program starts itself repeatedly as the window program, on the offscreen platform.
#include "application.h"
#include "platform/notifications/usernotifications.h"
#include "platform/secrets/secretstore.h"
#include "platform/session/applicationservice.h"
#include "ui/dashboard/coursecard.h"

#include <QApplication>
#include <QProcess>
#include <QTemporaryDir>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <vector>

namespace {

using namespace ellwynd;

/// Exits the process when the first card is painted.
class FirstCard : public QObject {
  public:
    bool eventFilter(QObject *object, QEvent *event) override {
        if (event->type() == QEvent::Paint && qobject_cast<CourseCard *>(object) != nullptr)
            QMetaObject::invokeMethod(
                qApp, [] { std::_Exit(0); }, Qt::QueuedConnection);
        return false;
    }
};

int showDashboard(int argc, char **argv) {
    QApplication application(argc, argv);
    FirstCard firstCard;
    application.installEventFilter(&firstCard);
    const std::filesystem::path home = QString::fromLocal8Bit(argv[1]).toStdString();
    const auto service = makeApplicationService();
    Application program(
        {.launchArguments = {{"SampleData", true}},
         .preferencesFile = home / "Preferences.json",
         .data = home / "data",
         .state = home / "state",
         .widgetContainer = home / "widgets",
         .secrets = makeSecretStore(),
         .notifications = makeUserNotifications()},
        *service);
    program.followDesktop();
    program.launch({});
    return QApplication::exec();
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && argv[1][0] == '/')
        return showDashboard(argc, argv);
    const QTemporaryDir home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    std::vector<double> starts;
    constexpr int warmUp = 2;
    constexpr int measured = 10;
    for (int run = 0; run < warmUp + measured; ++run) {
        const auto begin = std::chrono::steady_clock::now();
        if (QProcess::execute(QString::fromLocal8Bit(argv[0]), {home.path()}) != 0) {
            fmt::print(stderr, "The program did not start.\n");
            return 1;
        }
        const std::chrono::duration<double, std::milli> spent =
            std::chrono::steady_clock::now() - begin;
        if (run >= warmUp)
            starts.push_back(spent.count());
    }
    std::ranges::sort(starts);
    fmt::print(
        "startup: median {:.0f} ms of {}, fastest {:.0f}, slowest {:.0f}\n", starts[measured / 2],
        measured, starts.front(), starts.back());
}
