// The HTTP session for Canvas, one for each process.
#pragma once

#include "net/download.h"
#include "net/requestlimiter.h"

#include <functional>

namespace ellwynd {

/// Sends requests to Canvas. At most six are in flight, and only one while Canvas reports a low
/// remaining rate limit.
///
/// Used on the main thread; must outlive the event loop.
class CanvasSession {
  public:
    /// Waits, or throws Cancelled when a stop is requested.
    using Wait = std::function<QCoro::Task<>(std::chrono::milliseconds, std::stop_token)>;

    /// @param waitFor waits between retries; tests replace it.
    explicit CanvasSession(DownloadLimits limits = {}, Wait waitFor = sleepFor);

    /// @throws TransportFailure without a complete response, Cancelled when a stop was requested.
    [[nodiscard]] QCoro::Task<HttpResponse>
    get(QUrl url, std::string token, std::stop_token stop,
        RequestPriority priority = RequestPriority::foreground);

    [[nodiscard]] QCoro::Task<> wait(std::chrono::milliseconds duration, std::stop_token stop) {
        return waitFor(duration, std::move(stop));
    }
    [[nodiscard]] const RequestLimiter &requestLimiter() const { return limiter; }

  private:
    DownloadLimits limits;
    Wait waitFor;
    RequestLimiter limiter;
    Downloader downloader;
};

} // namespace ellwynd
