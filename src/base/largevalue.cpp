#include "base/largevalue.h"

#include <QCoreApplication>
#include <QThreadPool>
#include <QTimer>

#include <utility>

namespace ellwynd {

namespace {

/// Threads that allocate and release at the same time wait for each other. After this time the
/// event that gave up the value has ended, and with it what it made anew.
constexpr std::chrono::milliseconds releaseDelay{100};

/// Releases the value in a thread of the pool, if this is its last owner.
void releaseNow(std::shared_ptr<const void> value) {
    // There is no pool while the application ends.
    if (QThreadPool *pool = QThreadPool::globalInstance())
        pool->start([last = std::move(value)]() mutable { last.reset(); });
}

} // namespace

void releaseAside(std::shared_ptr<const void> value) {
    QCoreApplication *application = QCoreApplication::instance();
    if (application == nullptr) {
        releaseNow(std::move(value));
        return;
    }
    QMetaObject::invokeMethod(application, [application, last = std::move(value)]() mutable {
        QTimer::singleShot(releaseDelay, application, [last = std::move(last)]() mutable {
            releaseNow(std::move(last));
        });
    });
}

} // namespace ellwynd
