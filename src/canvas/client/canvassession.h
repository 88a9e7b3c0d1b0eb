// The one HTTP session of the process.
#pragma once

#include "net/download.h"
#include "net/requestlimiter.h"

#include <functional>

namespace ellwynd {

/// Sends Canvas's requests. At most six are in flight for the whole process, and one at a time
/// while Canvas reports that the remaining rate limit is low.
///
/// Lives on the main thread and must outlive the event loop.
class CanvasSession {
  public:
    /// Waits, or throws Cancelled when a stop is requested.
    using Wait = std::function<QCoro::Task<>(std::chrono::milliseconds, std::stop_token)>;

    /// @param wait how retries wait; tests that look at the waits need not sit them out.
    explicit CanvasSession(DownloadLimits limits = {}, Wait wait = sleepFor);

    /// @throws TransportFailure when no response came, Cancelled when a stop was requested.
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
