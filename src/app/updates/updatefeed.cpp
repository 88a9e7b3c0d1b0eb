#include "app/updates/updatefeed.h"

#include "canvas/client/request.h"

#include <QCoro/QCoroSignal>
#include <QNetworkReply>
#include <QTimer>

#include <fmt/format.h>

namespace ellwynd {

namespace {

UpdateError notLoaded(const std::string &reason) {
    return UpdateError(fmt::format("The list of updates couldn’t be loaded: {}.", reason));
}

struct DeleteLater {
    void operator()(QNetworkReply *reply) const { reply->deleteLater(); }
};

} // namespace

AppcastFeed::AppcastFeed(UserDefaults &store, std::string feedAddress, Clock clock)
    : AppcastFeed(store, std::move(feedAddress), clock, Limits()) {}

AppcastFeed::AppcastFeed(UserDefaults &store, std::string feedAddress, Clock clock, Limits bounds)
    : defaults(store), address(std::move(feedAddress)), now(clock), limits(bounds) {}

bool AppcastFeed::mayCheck() const {
    const QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    return address.starts_with("https://") && url.isValid() && !url.host().isEmpty();
}

bool AppcastFeed::checksAutomatically() const {
    return defaults.value(preferences::automaticUpdateChecks);
}

std::optional<Date> AppcastFeed::lastCheck() const {
    return parseInstant(defaults.value(preferences::lastUpdateCheck));
}

QCoro::Task<std::optional<Update>> AppcastFeed::newest(bool counted) {
    // Before it is known how the check ends: one that always fails is no more frequent.
    defaults.set(preferences::lastUpdateCheck, formatInstant(now()));
    if (!mayCheck())
        throw notLoaded("this copy of the program knows no address for it");
    QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    if (counted) {
        const QString query = url.query(QUrl::FullyEncoded);
        url.setQuery(query.isEmpty() ? QStringLiteral("fd=1") : query + QStringLiteral("&fd=1"));
    }
    if (!manager)
        manager = std::make_unique<QNetworkAccessManager>();
    const QNetworkRequest request =
        statelessRequest(url, "application/rss+xml, application/xml", limits.silence);
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(manager->get(request));

    std::string feed;
    bool tooLarge = false;
    const auto take = [&] {
        const QByteArray piece = reply->isOpen() ? reply->readAll() : QByteArray();
        tooLarge = tooLarge || feed.size() + std::size_t(piece.size()) > limits.bytes;
        if (tooLarge)
            reply->abort();
        else
            feed.append(piece.constData(), std::size_t(piece.size()));
    };
    QObject::connect(reply.get(), &QNetworkReply::readyRead, reply.get(), take);
    QTimer whole;
    whole.setSingleShot(true);
    QObject::connect(&whole, &QTimer::timeout, reply.get(), &QNetworkReply::abort);
    whole.start(limits.whole);
    co_await qCoro(reply.get(), &QNetworkReply::finished);

    if (!tooLarge)
        take();
    if (tooLarge)
        throw notLoaded("it is too long");
    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (status != 0 && status != 200)
        throw notLoaded(fmt::format("the server answered with status {}", status));
    if (reply->error() == QNetworkReply::OperationCanceledError)
        throw notLoaded("the server took too long");
    if (reply->error() != QNetworkReply::NoError)
        throw notLoaded(reply->errorString().toStdString());
    co_return newestUpdate(feed);
}

} // namespace ellwynd
