// The window program of a teacher with very many students, against a fake Canvas in another
// process: 40 courses of 200 students and 60 assignments, 27 recorded days, 2,000 contacts and
// 1,000 settings of courses. Prints for each phase the longest step of the main thread, which is
// one event with everything that it causes before the event loop runs again, the processor time of
// the process, and the resident memory.
//
//     largeteacher_bench [--courses N] [--students N] [--assignments N] [--passes N] [--from N]
//                        [--settle MILLISECONDS]
//
// The phases are measured after the first pass, and again after all passes, half an hour of
// simulated time apart: 48 passes are a day. The memory after five passes from pass N on, by
// default the second, and after the last five is printed. After each phase the program waits until
// there has been nothing to do for a while. N is at least 2, and there are more than N + 5 passes.
#include "app/mainwindowcontroller.h"
#include "application.h"
#include "base/heap.h"
#include "base/log.h"
#include "base/referencedate.h"
#include "canvas/tokenstore.h"
#include "measuredapplication.h"
#include "memory/historyfile.h"
#include "preferences/coursesettings.h"
#include "preferences/userdefaults.h"
#include "servedcanvas.h"
#include "support/loneservice.h"
#include "support/memorynotifications.h"
#include "support/memorysecrets.h"
#include "ui/mainwindow/mainwindow.h"
#include "ui/roster/rosterpane.h"

#include <QAction>
#include <QApplication>
#include <QCommandLineParser>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTimer>

#include <fmt/format.h>
#include <sys/resource.h>

#include <fstream>
#include <span>

namespace {

using namespace ellwynd;
using MeasuredApplication = bench::MeasuredApplication<QApplication>;

constexpr std::int64_t recordedDays = 27;
constexpr std::int64_t firstStudent = 90'000;
/// How many passes are compared, since the memory differs a little from pass to pass.
constexpr std::size_t memoryReadings = 5;

std::chrono::milliseconds quiet{400};

std::chrono::minutes simulated{};

Date simulatedNow() {
    return systemNow() + simulated;
}

ElapsedTime simulatedElapsed() {
    return elapsedNow() + simulated;
}

double processTime() {
    rusage usage{};
    ::getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return double(time.tv_sec) + double(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

struct Teacher {
    bench::ServedShape shape;

    [[nodiscard]] std::int64_t student(std::int64_t course, std::int64_t index) const {
        return firstStudent + (course - 1) * shape.newStudents + index;
    }

    void writeFiles(const std::filesystem::path &home) const {
        std::filesystem::create_directories(home);
        std::vector<RosterSnapshot> entries;
        for (std::int64_t day = recordedDays; day > 0; --day) {
            for (std::int64_t course = 1; course <= shape.courses; ++course) {
                const Date at = systemNow() - std::chrono::days(day) + std::chrono::minutes(course);
                for (std::int64_t i = 0; i < shape.students; ++i) {
                    const auto level = (i + day) % 4;
                    const auto known = level == 3 ? std::nullopt : std::optional(RiskLevel(level));
                    entries.push_back(
                        {course, student(course, i), at, std::string(levelName(known)), day % 5});
                }
            }
        }
        std::ofstream(home / "RosterHistory.json") << encodeHistory(visitsOf(entries));
        constexpr int contacts = 2000;
        std::ofstream log(home / "ContactLog.json");
        for (int i = 0; i < contacts; ++i) {
            const std::int64_t course = 1 + i % shape.courses;
            log << (i == 0 ? "[" : ",")
                << fmt::format(
                       R"({{"courseID":{},"studentID":{},"contactedAt":{}}})", course,
                       student(course, i / shape.courses),
                       secondsSinceReference(systemNow() - std::chrono::hours(24 * (1 + i % 20))));
        }
        log << "]";
        // Of courses that are no longer in the list: the thresholds of the others are the defaults.
        constexpr std::int64_t settings = 500;
        PreferenceChanges changes;
        for (std::int64_t course = 2000; course < 2000 + settings; ++course) {
            changes.emplace(courseSettings::key(course, courseSettings::passingScore), 62.5);
            changes.emplace(
                courseSettings::key(course, courseSettings::inactivityDays), std::int64_t(9));
        }
        UserDefaults(home / "Preferences.json", {}).update(changes);
    }
};

class Measurement {
  public:
    explicit Measurement(Application &program) : program(program) {
        QObject::connect(&controller(), &MainWindowController::passDidEnd, [this](bool complete) {
            MeasuredApplication::nameStep();
            ++passesEnded;
            allComplete = allComplete && complete;
        });
        QObject::connect(
            &controller(), &MainWindowController::rescoringDidEnd, [this] { ++rescoringsEnded; });
    }

    [[nodiscard]] MainWindowController &controller() const { return program.controller(); }

    static void print(std::string_view phase, const bench::Step &step, double used) {
        fmt::print(
            "{:<34}{:>9.1f}{:>9.1f}{:>10.2f}{:>8.0f}   {}\n", phase, step.processor, step.wall,
            used, bench::residentMemory() / 1e6, step.what);
        std::fflush(stdout);
    }

    /// Does something as one event, and waits for its end and for what follows it.
    template<class Action, class Done>
    void phase(std::string_view name, Action action, Done isDone) const {
        const double before = processTime();
        MeasuredApplication::takeLongest();
        QMetaObject::invokeMethod(qApp, action, Qt::QueuedConnection);
        bool ended = false;
        QTimer limit;
        limit.setSingleShot(true);
        limit.start(std::chrono::minutes(5));
        while (!ended && limit.isActive()) {
            QApplication::processEvents(QEventLoop::WaitForMoreEvents);
            ended = isDone();
        }
        settle();
        print(name, MeasuredApplication::takeLongest(), processTime() - before);
        if (!ended)
            fmt::print("{}: did not end\n", name);
    }
    template<class Action>
    void phase(std::string_view name, Action action) const {
        phase(name, action, [] { return true; });
    }

    /// Until there has been nothing to do for a while. N is at least 2, and there are more than N +
    /// 5 passes.
    static void settle() {
        QEventLoop loop;
        QTimer::singleShot(quiet, &loop, &QEventLoop::quit);
        loop.exec();
    }

    void passPhase(std::string_view name) {
        const int ended = passesEnded;
        phase(
            name, [this] { controller().timerFired(); },
            [this, ended] { return passesEnded > ended; });
        print("  the end of the pass", MeasuredApplication::takeNamed(), 0);
    }

    /// Prints what was resident after each of the last five passes up to one.
    static void printMemory(const std::vector<double> &readings, std::int64_t pass) {
        fmt::print("memory after {} passes, MB:", pass);
        for (const double megabytes : std::span(readings).last(memoryReadings))
            fmt::print(" {:.1f}", megabytes);
        fmt::print("\n");
    }

    static void type(QWidget *field, QChar key) {
        QKeyEvent press(QEvent::KeyPress, key.toUpper().unicode(), Qt::NoModifier, key);
        QCoreApplication::sendEvent(field, &press);
    }

    void workPhases() {
        MainWindow &window = program.window();
        RosterTable *table = window.roster()->table();
        const auto isIdle = [this] { return !controller().isLoading(); };
        const auto rescored = [this] {
            return [this, ended = rescoringsEnded] { return rescoringsEnded > ended; };
        };
        phase("showing the dashboard", [&] { controller().select(DashboardSelection{}); });
        phase(
            "a threshold step, dashboard", [&] { changeThreshold(); }, rescored());
        // Opening begins to read when the selection has settled.
        const std::int64_t course = ++openedCourse;
        phase("opening a course", [&] { controller().select(CourseSelection{course}); });
        phase(
            "reading it, a visit", [&] { controller().refreshRoster(); },
            [&, begun = false]() mutable {
                begun = begun || controller().isLoading();
                return begun && isIdle();
            });
        phase(
            "a threshold step, course", [&] { changeThreshold(); }, rescored());
        phase(
            "five threshold steps",
            [&] {
                for (int i = 0; i < 5; ++i)
                    QMetaObject::invokeMethod(
                        qApp, [&] { changeThreshold(); }, Qt::QueuedConnection);
            },
            rescored());
        phase("a contact, course", [&] {
            controller().actions().markContacted({controller().roster().rows.at(1)});
        });
        phase("undoing it", [&] { controller().undoStack().undo(); });
        phase("opening the term", [&] { controller().select(TermSelection{9001}); });
        phase("sorting by student", [&] { table->sortBy(RosterSort::student); });
        phase("sorting by course", [&] { table->sortBy(RosterSort::course); });
        phase("sorting by score", [&] { table->sortBy(RosterSort::score); });
        phase("worst first", [&] { table->sortBy(RosterSort::worstFirst); });
        phase("scrolling to the end", [&] {
            table->verticalScrollBar()->setValue(table->verticalScrollBar()->maximum());
        });
        phase("scrolling by a page", [&] {
            table->verticalScrollBar()->triggerAction(QAbstractSlider::SliderPageStepSub);
        });
        window.roster()->focusFilter();
        QWidget *field = QApplication::focusWidget();
        if (field == nullptr)
            field = window.roster()->findChild<QLineEdit *>();
        for (const char16_t key : u"ana") {
            if (key != 0)
                phase("a key in the filter", [&] { type(field, key); });
        }
        phase("clearing the filter", [&] { table->setQuery({}); });
        phase("a contact, term", [&] {
            controller().actions().markContacted({controller().roster().rows.at(1)});
        });
        phase("all students of the term", [&] { table->selectAll(); });
        phase("opening Find", [&] { find()->trigger(); });
        QLineEdit *search = nullptr;
        for (auto *each : window.findChildren<QLineEdit *>()) {
            if (each->isVisible() && each->window() == &window && each != field)
                search = each;
        }
        if (search != nullptr) {
            for (const char16_t key : u"zo9")
                if (key != 0)
                    phase("a key in Find", [&] { type(search, key); });
            phase("closing Find", [&] {
                QKeyEvent press(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
                QCoreApplication::sendEvent(search, &press);
            });
        } else {
            fmt::print("Find did not open\n");
        }
        const RiskRow row = controller().roster().rows.at(2);
        phase("back to the dashboard", [&] { controller().select(DashboardSelection{}); });
        phase("a contact, dashboard shown", [&] { controller().actions().markContacted({row}); });
    }

    int passesEnded = 0;
    bool allComplete = true;
    int rescoringsEnded = 0;

  private:
    [[nodiscard]] QAction *find() const {
        for (QAction *action : program.window().findChildren<QAction *>()) {
            if (action->shortcut() == QKeySequence(Qt::CTRL | Qt::Key_K))
                return action;
        }
        throw std::runtime_error("there is no command for finding");
    }

    void changeThreshold() {
        score = score == 70 ? 70.5 : 70;
        program.defaults().set(preferences::defaultPassingScore, score);
    }

    Application &program;
    double score = 70;
    std::int64_t openedCourse = 0;
};

} // namespace

int main(int argc, char **argv) {
    returnLargeBlocks();
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QTemporaryDir folder;
    qputenv("XDG_RUNTIME_DIR", folder.path().toLocal8Bit());
    Log::setSink([](std::string_view, Log::Level, std::string_view) {});
    const MeasuredApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    const auto option = [&](const char *name, const char *value) {
        parser.addOption(
            {QString::fromLatin1(name), QString(), QStringLiteral("N"),
             QString::fromLatin1(value)});
    };
    option("courses", "40");
    option("students", "200");
    option("assignments", "60");
    option("passes", "2");
    option("from", "2");
    option("settle", "400");
    parser.process(application);
    const auto number = [&](const char *name) {
        return std::int64_t(parser.value(QString::fromLatin1(name)).toLongLong());
    };
    quiet = std::chrono::milliseconds(number("settle"));
    const Teacher teacher{
        {.courses = number("courses"),
         .students = number("students"),
         .assignments = number("assignments"),
         .latency = std::chrono::milliseconds(0),
         .newStudents = number("students") / 2,
         .lifetime = std::chrono::hours(5)}};
    const bench::ServedCanvas canvas(teacher.shape);
    const std::filesystem::path home = folder.path().toStdString() + "/home";
    teacher.writeFiles(home);
    const auto secrets = std::make_shared<test::MemorySecrets>();
    secrets->secrets[{TokenStore::service, TokenStore::accountOf(canvas.address())}] = canvas.token;
    UserDefaults(home / "Preferences.json", {}).set(preferences::canvasBaseURL, canvas.address());

    fmt::print(
        "{} courses, {} students each, {} assignments each. Milliseconds of the longest step:\n"
        "{:<34}{:>9}{:>9}{:>10}{:>8}   {}\n",
        teacher.shape.courses, teacher.shape.students, teacher.shape.assignments, "phase", "CPU",
        "wall", "all CPU s", "MB", "what the longest step handled");
    ApplicationEnvironment environment{
        .preferencesFile = home / "Preferences.json",
        .data = home,
        .state = home,
        .widgetContainer = home / "widgets",
        .secrets = secrets,
        .notifications = std::make_unique<test::MemoryNotifications>(),
        .clock = simulatedNow,
        .elapsed = simulatedElapsed};
    test::LoneService service;
    const auto begin = std::chrono::steady_clock::now();
    const auto beginTime = bench::threadTime();
    Application program(std::move(environment), service);
    using Milliseconds = std::chrono::duration<double, std::milli>;
    Measurement::print(
        "making the program",
        {.wall = Milliseconds(std::chrono::steady_clock::now() - begin).count(),
         .processor = Milliseconds(bench::threadTime() - beginTime).count()},
        processTime());
    Measurement measurement(program);
    measurement.phase(
        "start and the first pass", [&] { program.launch({}); },
        [&] { return measurement.passesEnded > 0; });
    measurement.print("  the end of the pass", MeasuredApplication::takeNamed(), 0);
    measurement.workPhases();
    std::vector<double> memory;
    for (std::int64_t pass = 2; pass <= number("passes"); ++pass) {
        simulated += std::chrono::minutes(30);
        measurement.passPhase(fmt::format("pass {}", pass));
        memory.push_back(bench::residentMemory() / 1e6);
        if (pass == number("from") + std::int64_t(memoryReadings) - 1 &&
            memory.size() >= memoryReadings)
            measurement.printMemory(memory, pass);
    }
    if (memory.size() > memoryReadings)
        measurement.printMemory(memory, number("passes"));
    fmt::print("After {} passes:\n", measurement.passesEnded);
    measurement.workPhases();
    const bool allRead =
        std::ranges::none_of(std::filesystem::directory_iterator(home), [](const auto &entry) {
            return entry.path().filename().string().find("unreadable") != std::string::npos;
        });
    fmt::print("Peak memory {:.0f} MB.\n", bench::peakResidentMemory() / 1e6);
    if (!allRead)
        fmt::print("A FILE WAS NOT READ.\n");
    if (!measurement.allComplete)
        fmt::print("A PASS WAS INCOMPLETE.\n");
    return allRead && measurement.allComplete ? 0 : 1;
}
