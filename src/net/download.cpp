#include "net/download.h"

#include "generated/version.h"

#include <QCoro/QCoroSignal>
#include <QNetworkInformation>
#include <QTimer>

namespace ellwynd {

namespace {

bool isOffline() {
    static const bool loaded =
        QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability);
    const auto *information = loaded ? QNetworkInformation::instance() : nullptr;
    return information != nullptr &&
        information->reachability() == QNetworkInformation::Reachability::Disconnected;
}

// A manager keeps some kilobytes of TLS state for every connection it ever had. It is replaced
// while nothing is under way, after so many requests, or when servers have usually closed its
// connections.
constexpr int maxRequests = 200;
constexpr std::chrono::minutes maxIdle{1};

TransportFailure failureOf(const QNetworkReply &reply) {
    const auto code = reply.error();
    const bool mayBeOffline = code == QNetworkReply::ConnectionRefusedError ||
        code == QNetworkReply::HostNotFoundError || code == QNetworkReply::UnknownNetworkError;
    return {
        .code = code,
        .description = reply.errorString().toStdString(),
        // Qt reports a transfer timeout as a cancelled operation.
        .timedOut = code == QNetworkReply::OperationCanceledError,
        .offline = mayBeOffline && isOffline()};
}

/// Whether the body is shorter than announced, although Qt reports no error.
bool isCutShort(const QNetworkReply &reply, std::size_t received) {
    if (reply.hasRawHeader("Content-Encoding") || !reply.hasRawHeader("Content-Length"))
        return false;
    bool isNumber = false;
    const auto announced = reply.rawHeader("Content-Length").toULongLong(&isNumber);
    return isNumber && received < announced;
}

/// Collects the body of a reply, and aborts the reply when it exceeds the limits. It aborts only
/// through the event loop: an abort emits `finished`, which resumes the coroutine that owns this
/// object.
class BodyReader : public QObject {
  public:
    BodyReader(QNetworkReply &reply, DownloadLimits limits) : reply(reply), limits(limits) {
        connect(&reply, &QNetworkReply::readyRead, this, &BodyReader::readChunk);
        totalTimer.setSingleShot(true);
        connect(&totalTimer, &QTimer::timeout, this, &BodyReader::abortLater);
        totalTimer.start(limits.totalTimeout);
    }

    void readChunk() {
        if (tooLarge || !reply.isOpen())
            return;
        const QByteArray chunk = reply.readAll();
        tooLarge = body.size() + std::size_t(chunk.size()) > limits.maxBytes;
        if (tooLarge)
            abortLater();
        else
            body.append(chunk.constData(), std::size_t(chunk.size()));
    }

    /// May be called on any thread.
    void abortLater() {
        QMetaObject::invokeMethod(&reply, &QNetworkReply::abort, Qt::QueuedConnection);
    }

    std::string body;
    bool tooLarge = false;

  private:
    QNetworkReply &reply;
    DownloadLimits limits;
    QTimer totalTimer;
};

struct DeleteLater {
    void operator()(QNetworkReply *reply) const { reply->deleteLater(); }
};

} // namespace

std::string HttpResponse::header(const char *name) const {
    for (const auto &[key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0)
            return value.toStdString();
    }
    return {};
}

QNetworkRequest statelessRequest(const QUrl &url, const char *accept) {
    QNetworkRequest request(url);
    request.setRawHeader("Accept", accept);
    // Hosted Canvas refuses requests without one.
    request.setRawHeader("User-Agent", QByteArray("Ellwynd/") + version);
    request.setAttribute(
        QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    request.setAttribute(
        QNetworkRequest::CacheLoadControlAttribute, QNetworkRequest::AlwaysNetwork);
    request.setAttribute(QNetworkRequest::CacheSaveControlAttribute, false);
    request.setAttribute(QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::CookieSaveControlAttribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::AuthenticationReuseAttribute, QNetworkRequest::Manual);
    // When a server closes an HTTP/2 connection, Qt 6.4 fails the requests in flight and lets the
    // queued ones wait for the whole time limit. HTTP/1.1 with six connections is as fast.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    return request;
}

QNetworkReply *Downloader::send(const QNetworkRequest &request) {
    const auto isIdle = [](const std::unique_ptr<QNetworkAccessManager> &each) {
        return each->findChild<QNetworkReply *>() == nullptr;
    };
    std::erase_if(retired, isIdle);
    const ElapsedTime now = elapsedNow();
    const bool isOld = now - lastSentAt > maxIdle || ++sent > maxRequests;
    lastSentAt = now;
    if (manager && isOld && isIdle(manager))
        manager.reset();
    if (!manager) {
        sent = 1;
        manager = std::make_unique<QNetworkAccessManager>();
        manager->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    }
    return manager->get(request);
}

/// The manager's own `clearConnectionCache` would also silence the replies under way.
void Downloader::retireConnectionsOf(const QNetworkReply &reply) {
    if (manager.get() == reply.manager())
        retired.push_back(std::move(manager));
}

QCoro::Task<HttpResponse>
Downloader::get(QNetworkRequest request, DownloadLimits limits, std::stop_token stop) {
    if (stop.stop_requested())
        throw Cancelled();
    request.setTransferTimeout(int(limits.inactivityTimeout.count()));
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(send(request));
    BodyReader reader(*reply, limits);
    const std::stop_callback abort(stop, [&reader] { reader.abortLater(); });
    co_await qCoro(reply.get(), &QNetworkReply::finished);

    const int status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    // Qt 6.4 ends a reply with an informational response. The final response still arrives on that
    // connection, where it would be taken for the response to the next request.
    if (status >= 100 && status <= 199)
        retireConnectionsOf(*reply);
    if (stop.stop_requested())
        throw Cancelled();
    reader.readChunk();
    HttpResponse response{
        .status = status,
        .headers = reply->rawHeaderPairs(),
        .body = std::move(reader.body),
        .tooLarge = reader.tooLarge};
    if (response.tooLarge)
        co_return response;
    const bool success = response.status == 0 || (response.status >= 200 && response.status <= 299);
    if (success && reply->error() != QNetworkReply::NoError)
        throw failureOf(*reply);
    if (success && isCutShort(*reply, response.body.size())) {
        throw TransportFailure{
            .code = QNetworkReply::RemoteHostClosedError, .description = "cut short"};
    }
    co_return response;
}

} // namespace ellwynd
