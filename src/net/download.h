// One download over HTTPS with a size cap, time limits and a stop token.
#pragma once

#include "net/task.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <memory>
#include <vector>

namespace ellwynd {

/// A request that brought no response.
struct TransportFailure {
    QNetworkReply::NetworkError code = QNetworkReply::NoError;
    /// The platform's words.
    std::string description;
    /// A time limit ended it.
    bool timedOut = false;
    /// This machine has no network at all.
    bool offline = false;
};

/// A response, whatever its status.
struct HttpResponse {
    /// 0 when the response was not HTTP.
    int status = 0;
    QList<QNetworkReply::RawHeaderPair> headers;
    std::string body;
    /// The body exceeds the size cap and is incomplete.
    bool tooLarge = false;

    /// A header's value, several of one name joined by ", "; empty without one. Letter case does
    /// not matter.
    [[nodiscard]] std::string header(const char *name) const;
};

struct DownloadLimits {
    /// Silence on the wire after which a request has timed out.
    std::chrono::milliseconds inactivityTimeout = std::chrono::seconds(60);
    /// A request in all, however much of it trickles in.
    std::chrono::milliseconds totalTimeout = std::chrono::minutes(10);
    /// Of the body, unpacked.
    std::size_t maxBytes = std::size_t{64} * 1024 * 1024;
};

/// A GET that takes part in nothing that stores or forwards what it carries: no cache, no cookies,
/// no saved credentials, no redirects.
/// @param accept the content types that are understood.
[[nodiscard]] QNetworkRequest statelessRequest(const QUrl &url, const char *accept);

/// Sends requests over connections that are used again. No certificate is trusted that the system
/// does not trust. Lives on the main thread and must outlive the downloads that it started.
class Downloader {
  public:
    /// @throws TransportFailure when no response came, Cancelled when a stop was requested.
    [[nodiscard]] QCoro::Task<HttpResponse>
    get(QNetworkRequest request, DownloadLimits limits, std::stop_token stop = {});

  private:
    QNetworkReply *send(const QNetworkRequest &request);
    void retireConnectionsOf(const QNetworkReply &reply);

    /// Created on first use.
    std::unique_ptr<QNetworkAccessManager> manager;
    /// Whose connections are used no more; kept while one of their replies is under way.
    std::vector<std::unique_ptr<QNetworkAccessManager>> retired;
};

} // namespace ellwynd
