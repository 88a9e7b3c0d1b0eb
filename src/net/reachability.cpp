#include "net/reachability.h"

#include <QNetworkInformation>

namespace ellwynd {

std::shared_ptr<void> observeReachability(std::function<void()> reachable) {
    auto observer = std::make_shared<QObject>();
    if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability))
        return observer;
    using Reachability = QNetworkInformation::Reachability;
    QObject::connect(
        QNetworkInformation::instance(), &QNetworkInformation::reachabilityChanged, observer.get(),
        [reachable = std::move(reachable)](Reachability now) {
            if (now == Reachability::Local || now == Reachability::Site ||
                now == Reachability::Online)
                reachable();
        });
    return observer;
}

} // namespace ellwynd
