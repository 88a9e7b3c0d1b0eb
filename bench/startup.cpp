// The time from process start to the first painted card of the sample college's dashboard, beside
// that of an empty window of the same toolkit. This program starts itself repeatedly as either of
// them, in pairs, on the offscreen platform.
#include "application.h"
#include "platform/notifications/usernotifications.h"
#include "platform/secrets/secretstore.h"
#include "platform/session/applicationservice.h"
#include "ui/dashboard/coursecard.h"

#include <QApplication>
#include <QMainWindow>
#include <QProcess>
#include <QTemporaryDir>

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <optional>
#include <vector>

namespace {

using namespace ellwynd;

/// Exits the process when the first widget of a class is painted.
template<class Painted>
class FirstPaint : public QObject {
  public:
    bool eventFilter(QObject *object, QEvent *event) override {
        if (event->type() == QEvent::Paint && qobject_cast<Painted *>(object) != nullptr)
            QMetaObject::invokeMethod(
                qApp, [] { std::_Exit(0); }, Qt::QueuedConnection);
        return false;
    }
};

int showDashboard(int argc, char **argv) {
    QApplication application(argc, argv);
    FirstPaint<CourseCard> firstCard;
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

int showEmptyWindow(int argc, char **argv) {
    QApplication application(argc, argv);
    FirstPaint<QMainWindow> painted;
    application.installEventFilter(&painted);
    QMainWindow window;
    window.resize(1280, 800);
    window.show();
    return QApplication::exec();
}

/// In milliseconds; absent if the program did not start.
std::optional<double> timeOf(const QString &program, const QStringList &arguments) {
    const auto begin = std::chrono::steady_clock::now();
    if (QProcess::execute(program, arguments) != 0)
        return std::nullopt;
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - begin)
        .count();
}

void print(const char *what, std::vector<double> figures, const char *unit) {
    std::ranges::sort(figures);
    fmt::print(
        "{}: median {:.2f}{}, lowest {:.2f}, highest {:.2f}, of {}\n", what,
        figures[figures.size() / 2], unit, figures.front(), figures.back(), figures.size());
}

} // namespace

int main(int argc, char **argv) {
    if (argc > 1 && argv[1][0] == '/')
        return argc > 2 ? showEmptyWindow(argc, argv) : showDashboard(argc, argv);
    const QTemporaryDir home;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("XDG_RUNTIME_DIR", home.path().toLocal8Bit());
    std::vector<double> starts;
    std::vector<double> empty;
    std::vector<double> ratios;
    constexpr int warmUp = 2;
    constexpr int measured = 15;
    const QString program = QString::fromLocal8Bit(argv[0]);
    for (int run = 0; run < warmUp + measured; ++run) {
        const auto start = timeOf(program, {home.path()});
        const auto window = timeOf(program, {home.path(), QStringLiteral("empty")});
        if (!start || !window) {
            fmt::print(stderr, "The program did not start.\n");
            return 1;
        }
        if (run < warmUp)
            continue;
        starts.push_back(*start);
        empty.push_back(*window);
        ratios.push_back(*start / *window);
    }
    print("startup", starts, " ms");
    print("empty window", empty, " ms");
    print("ratio of a pair", ratios, "");
}
