// The fake Canvas as a program that serves invented courses. Prints its address and the file of its
// certificate authority, one per line. Ends when its standard input ends, or after --seconds. Each
// course has --new-students that the course before it does not have.
#include "support/fakecanvas.h"
#include "support/servedcourse.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QSocketNotifier>
#include <QTimer>

#include <array>
#include <iostream>
#include <unistd.h>

using namespace ellwynd;
using namespace ellwynd::test;

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QCommandLineParser parser;
    parser.addHelpOption();
    parser.addOptions(
        {{QStringLiteral("courses"), QString(), QStringLiteral("N"), QStringLiteral("1")},
         {QStringLiteral("students"), QString(), QStringLiteral("N"), QStringLiteral("120")},
         {QStringLiteral("assignments"), QString(), QStringLiteral("N"), QStringLiteral("40")},
         {QStringLiteral("new-students"), QString(), QStringLiteral("N"), QStringLiteral("0")},
         {QStringLiteral("latency"), QString(), QStringLiteral("MS"), QStringLiteral("0")},
         {QStringLiteral("seconds"), QString(), QStringLiteral("N"), QStringLiteral("600")}});
    parser.process(application);
    const auto number = [&](const char *option) {
        return parser.value(QString::fromLatin1(option)).toInt();
    };

    const std::int64_t firstStudent = CourseSize{}.firstStudent;
    FakeCanvas canvas;
    canvas.latencyMilliseconds = number("latency");
    {
        std::vector<ServedCourse> courses;
        for (int id = 1; id <= number("courses"); ++id)
            courses.push_back(inventCourse(
                id,
                {.students = number("students"),
                 .assignments = number("assignments"),
                 .firstStudent = firstStudent + std::int64_t(id - 1) * number("new-students")},
                systemNow()));
        serve(canvas, courses);
    }
    std::cout << canvas.address() << "\n" << authorityFile() << std::endl;

    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, [] {
        std::array<char, 256> ignored{};
        if (::read(STDIN_FILENO, ignored.data(), ignored.size()) <= 0)
            QCoreApplication::quit();
    });
    QTimer::singleShot(
        std::chrono::seconds(number("seconds")), &application, &QCoreApplication::quit);
    return QCoreApplication::exec();
}
