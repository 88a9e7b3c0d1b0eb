#include "canvas/client/canvassession.h"

#include "canvas/client/request.h"

#include <QCoro/QCoroSignal>
#include <QCoro/QCoroTimer>
#include <QNetworkInformation>
#include <QNetworkReply>
#include <QTimer>

namespace ellwynd {

namespace {

/// Canvas refills its bucket by ten units a second and charges fifty up front for each request in
/// flight, so six at a time never empty a full one.
constexpr int requestsInFlight = 6;
/// Units left below which requests go one at a time.
constexpr double littleLeft = 200;

bool isOffline() {
    static const bool asked =
        QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Reachability);
    const auto *information = asked ? QNetworkInformation::instance() : nullptr;
    return information != nullptr &&
        information->reachability() == QNetworkInformation::Reachability::Disconnected;
}

/// A wait by the clock that a stop request cuts short.
QCoro::Task<> sleepFor(std::chrono::milliseconds duration, std::stop_token stop) {
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(duration);
    const std::stop_callback wake(stop, [&timer] { timer.start(0); });
    co_await timer;
    if (stop.stop_requested())
        throw Cancelled();
}

TransportFailure failureOf(const QNetworkReply &reply, bool timedOut) {
    const auto code = reply.error();
    const bool mayBeOffline = code == QNetworkReply::ConnectionRefusedError ||
        code == QNetworkReply::HostNotFoundError || code == QNetworkReply::UnknownNetworkError;
    return {
        .code = code,
        .description = reply.errorString().toStdString(),
        .timedOut = timedOut,
        .offline = mayBeOffline && isOffline()};
}

/// A body that ended early although nobody said so.
bool isCutShort(const QNetworkReply &reply, std::size_t received) {
    if (reply.hasRawHeader("Content-Encoding") || !reply.hasRawHeader("Content-Length"))
        return false;
    bool isNumber = false;
    const auto announced = reply.rawHeader("Content-Length").toULongLong(&isNumber);
    return isNumber && received < announced;
}

struct DeleteLater {
    void operator()(QNetworkReply *reply) const { reply->deleteLater(); }
};

} // namespace

// ---- The gate ----------------------------------------------------------------------------------

bool RequestGate::tryEnter() {
    if (active >= limit || !waiting.empty())
        return false;
    ++active;
    return true;
}

void RequestGate::leave() {
    --active;
    admit();
}

void RequestGate::setLimit(int most) {
    limit = most;
    admit();
}

void RequestGate::admit() {
    while (active < limit && !waiting.empty()) {
        ++active;
        const auto next = waiting.front();
        waiting.pop_front();
        // Not from inside whoever leaves: the next one begins on a stack of its own.
        QTimer::singleShot(0, [next] { next.resume(); });
    }
}

// ---- The session -------------------------------------------------------------------------------

CanvasSession::CanvasSession() : CanvasSession(Limits{}) {}

CanvasSession::CanvasSession(Limits bounds) : limits(std::move(bounds)), gate(requestsInFlight) {
    if (!limits.wait)
        limits.wait = sleepFor;
}

CanvasSession::~CanvasSession() = default;

QCoro::Task<HTTPAnswer> CanvasSession::get(QUrl url, std::string token, std::stop_token stop) {
    const RequestGate::Place place = co_await gate.enter();
    if (stop.stop_requested())
        throw Cancelled();
    if (!manager) {
        manager = std::make_unique<QNetworkAccessManager>();
        manager->setRedirectPolicy(QNetworkRequest::ManualRedirectPolicy);
    }
    const QNetworkRequest request = canvasRequest(url, token, limits.silence);
    const std::unique_ptr<QNetworkReply, DeleteLater> reply(manager->get(request));

    HTTPAnswer answer;
    bool overdue = false;
    const auto take = [&] {
        const QByteArray piece = reply->isOpen() ? reply->readAll() : QByteArray();
        answer.tooLarge = answer.body.size() + std::size_t(piece.size()) > limits.bodyBytes;
        if (answer.tooLarge)
            reply->abort();
        else
            answer.body.append(piece.constData(), std::size_t(piece.size()));
    };
    QObject::connect(reply.get(), &QNetworkReply::readyRead, reply.get(), take);
    QTimer whole;
    whole.setSingleShot(true);
    QObject::connect(&whole, &QTimer::timeout, reply.get(), [&] {
        overdue = true;
        reply->abort();
    });
    whole.start(limits.whole);
    const std::stop_callback abort(stop, [&reply] {
        QMetaObject::invokeMethod(reply.get(), &QNetworkReply::abort, Qt::QueuedConnection);
    });
    co_await qCoro(reply.get(), &QNetworkReply::finished);

    if (stop.stop_requested())
        throw Cancelled();
    bool isNumber = false;
    const double remaining = reply->rawHeader("X-Rate-Limit-Remaining").toDouble(&isNumber);
    gate.setLimit(isNumber && remaining < littleLeft ? 1 : requestsInFlight);

    answer.status = reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt();
    if (!answer.tooLarge)
        take();
    if (answer.tooLarge)
        co_return answer;
    const bool success = answer.status == 0 || (answer.status >= 200 && answer.status <= 299);
    if (success && reply->error() != QNetworkReply::NoError) {
        // The platform ends a silent request as if it had been cancelled.
        const bool silent = reply->error() == QNetworkReply::OperationCanceledError;
        throw failureOf(*reply, overdue || silent);
    }
    if (success && isCutShort(*reply, answer.body.size())) {
        throw TransportFailure{
            .code = QNetworkReply::RemoteHostClosedError, .description = "cut short"};
    }
    answer.link = reply->rawHeader("Link").toStdString();
    answer.body.reserve(answer.body.size() + 64);
    co_return answer;
}

} // namespace ellwynd
