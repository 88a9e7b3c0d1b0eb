#include "base/largevalue.h"

#include <QThreadPool>

#include <utility>

namespace ellwynd {

void releaseAside(std::shared_ptr<const void> value) {
    // There is no pool while the application ends.
    if (QThreadPool *pool = QThreadPool::globalInstance())
        pool->start([last = std::move(value)]() mutable { last.reset(); });
}

} // namespace ellwynd
