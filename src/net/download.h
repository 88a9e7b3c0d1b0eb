// Downloads over HTTPS with a size limit, time limits and a stop token.
#pragma once

#include "base/elapsedtime.h"
#include "net/task.h"

#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QNetworkRequest>

#include <memory>
#include <vector>

namespace ellwynd {

/// A request without a complete response.
struct TransportFailure {
    QNetworkReply::NetworkError code = QNetworkReply::NoError;
    /// The platform's error message.
    std::string description;
    /// A time limit was exceeded.
    bool timedOut = false;
    /// This machine has no network.
    bool offline = false;
};

/// A response, whatever its status.
struct HttpResponse {
    /// 0 when the response was not HTTP.
    int status = 0;
    QList<QNetworkReply::RawHeaderPair> headers;
    std::string body;
    /// The body exceeds the size limit and is incomplete.
    bool tooLarge = false;

    /// A header's value; repeated headers are joined by ", ". Empty if absent. The name is not
    /// case-sensitive.
    [[nodiscard]] std::string header(const char *name) const;
};

struct DownloadLimits {
    /// How long no data may be transferred.
    std::chrono::milliseconds inactivityTimeout = std::chrono::seconds(60);
    /// How long the request may take in total.
    std::chrono::milliseconds totalTimeout = std::chrono::minutes(10);
    /// Of the decompressed body.
    std::size_t maxBytes = std::size_t{64} * 1024 * 1024;
};

/// A GET request without cache, cookies, saved credentials and redirects.
/// @param accept the accepted content types.
[[nodiscard]] QNetworkRequest statelessRequest(const QUrl &url, const char *accept);

/// Sends requests over persistent connections. Only certificates that the system trusts are
/// trusted. Used on the main thread; must outlive its downloads.
class Downloader {
  public:
    /// @throws TransportFailure without a complete response, Cancelled when a stop was requested.
    [[nodiscard]] QCoro::Task<HttpResponse>
    get(QNetworkRequest request, DownloadLimits limits, std::stop_token stop = {});

  private:
    QNetworkReply *send(const QNetworkRequest &request);
    void retireConnectionsOf(const QNetworkReply &reply);

    /// Created on first use.
    /// Requests sent by the manager.
    int sent = 0;
    ElapsedTime lastSentAt{};
    std::unique_ptr<QNetworkAccessManager> manager;
    /// Whose connections are used no more; kept while one of their replies is under way.
    std::vector<std::unique_ptr<QNetworkAccessManager>> retired;
};

} // namespace ellwynd
