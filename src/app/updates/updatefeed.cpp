#include "app/updates/updatefeed.h"

#include "net/origin.h"

#include <fmt/format.h>

namespace ellwynd {

namespace {

UpdateError notLoaded(const std::string &reason) {
    return UpdateError(fmt::format("The list of updates couldn’t be loaded: {}.", reason));
}

} // namespace

AppcastFeed::AppcastFeed(
    UserDefaults &defaults, std::string address, Clock now, DownloadLimits limits)
    : defaults(defaults), address(std::move(address)), now(now), limits(limits) {}

bool AppcastFeed::mayCheck() const {
    return httpsURL(address).has_value();
}

bool AppcastFeed::checksAutomatically() const {
    return defaults.value(preferences::automaticUpdateChecks);
}

std::optional<Date> AppcastFeed::lastCheck() const {
    return parseInstant(defaults.value(preferences::lastUpdateCheck));
}

QCoro::Task<std::optional<Update>> AppcastFeed::newest(bool counted) {
    // Saved before the result is known, so that failing checks are not repeated more often.
    defaults.set(preferences::lastUpdateCheck, formatInstant(now()));
    auto url = httpsURL(address);
    if (!url)
        throw notLoaded("this copy of the program has no address for it");
    if (counted) {
        const QString query = url->query(QUrl::FullyEncoded);
        url->setQuery(query.isEmpty() ? QStringLiteral("fd=1") : query + QStringLiteral("&fd=1"));
    }
    const QNetworkRequest request = statelessRequest(*url, "application/rss+xml, application/xml");
    HttpResponse response;
    try {
        auto downloading = downloader.get(request, limits);
        response = co_await downloading;
    } catch (const TransportFailure &failure) {
        throw notLoaded(failure.timedOut ? "the server took too long" : failure.description);
    }
    if (response.tooLarge)
        throw notLoaded("it is too long");
    if (response.status != 200)
        throw notLoaded(fmt::format("the server answered with status {}", response.status));
    co_return newestUpdate(response.body);
}

} // namespace ellwynd
