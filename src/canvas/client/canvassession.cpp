#include "canvas/client/canvassession.h"

#include "canvas/client/request.h"

namespace ellwynd {

namespace {

/// Canvas refills its bucket by ten units a second and charges fifty up front for each request in
/// flight, so six at a time never empty a full one.
constexpr int maxInFlight = 6;
/// Units left below which requests go one at a time.
constexpr double lowRateLimit = 200;

} // namespace

CanvasSession::CanvasSession(DownloadLimits limits, Wait wait)
    : limits(limits), waitFor(std::move(wait)), limiter(maxInFlight) {}

QCoro::Task<HttpResponse>
CanvasSession::get(QUrl url, std::string token, std::stop_token stop, RequestPriority priority) {
    const RequestLimiter::Permit permit = co_await limiter.acquire(priority);
    const QNetworkRequest request = canvasRequest(url, token);
    auto downloading = downloader.get(request, limits, stop);
    HttpResponse response = co_await downloading;

    bool isNumber = false;
    const double remaining =
        QByteArray::fromStdString(response.header("X-Rate-Limit-Remaining")).toDouble(&isNumber);
    limiter.setLimit(isNumber && remaining < lowRateLimit ? 1 : maxInFlight);
    // Room for the decoder's padding, which spares a copy.
    response.body.reserve(response.body.size() + 64);
    co_return response;
}

} // namespace ellwynd
