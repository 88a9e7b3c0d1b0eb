#include "canvas/client/canvassession.h"

#include "canvas/client/request.h"

namespace ellwynd {

namespace {

/// Canvas's rate limit is a bucket that refills by ten units a second, and each request in flight
/// takes fifty units in advance, so six at a time never empty a full bucket.
constexpr int maxInFlight = 6;
/// The remaining units below which requests are sent one at a time.
constexpr double lowRateLimit = 200;

} // namespace

CanvasSession::CanvasSession(DownloadLimits limits, Wait waitFor)
    : limits(limits), waitFor(std::move(waitFor)), limiter(maxInFlight) {}

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
    // Spare capacity for the decoder's padding avoids a copy.
    response.body.reserve(response.body.size() + 64);
    co_return response;
}

} // namespace ellwynd
