#include "servedcanvas.h"

#include "support/certificates.h"

#include <sys/resource.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>
#include <unistd.h>

namespace ellwynd::bench {

namespace {

constexpr std::int64_t pageSize = 100;
constexpr std::int64_t requestsInFlight = 6;

std::int64_t pagesOf(std::int64_t records) {
    return std::max<std::int64_t>(1, (records + pageSize - 1) / pageSize);
}

} // namespace

std::chrono::milliseconds ServedShape::bound() const {
    const std::int64_t submissions = pagesOf(students * assignments);
    // A course's assignment groups are one page.
    const std::int64_t pages = courses * (submissions + pagesOf(students) + 1);
    const std::int64_t concurrent = (pages + requestsInFlight - 1) / requestsInFlight;
    return latency * std::max(submissions, concurrent);
}

ServedCanvas::ServedCanvas(const ServedShape &shape) {
    const auto option = [](const char *name, std::int64_t value) {
        return QStringLiteral("--%1=%2").arg(QString::fromLatin1(name)).arg(value);
    };
    server.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    server.start(
        QStringLiteral(ELLWYND_FAKE_CANVAS),
        {option("courses", shape.courses), option("students", shape.students),
         option("assignments", shape.assignments), option("latency", shape.latency.count()),
         option("new-students", shape.newStudents), option("seconds", shape.lifetime.count())});
    const auto line = [this] {
        while (!server.canReadLine()) {
            constexpr int limit = 300'000;
            if (!server.waitForReadyRead(limit))
                throw std::runtime_error("the fake Canvas did not start");
        }
        return server.readLine().trimmed().toStdString();
    };
    base = line();
    test::trustAuthority(line());
}

ServedCanvas::~ServedCanvas() {
    server.closeWriteChannel();
    server.waitForFinished();
}

double residentMemory() {
    std::int64_t pages = 0;
    std::int64_t resident = 0;
    std::ifstream("/proc/self/statm") >> pages >> resident;
    return double(resident) * double(sysconf(_SC_PAGESIZE));
}

double peakResidentMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    // Linux reports KiB.
    return 1024.0 * double(usage.ru_maxrss);
}

} // namespace ellwynd::bench
