#include "canvas/client/request.h"

#include "net/download.h"
#include "net/origin.h"

namespace ellwynd {

std::optional<QUrl>
endpointURL(const std::string &baseURL, const std::string &path, const QueryItems &query) {
    const auto base = httpsURL(baseURL);
    if (!base)
        return std::nullopt;
    QUrl url = *base;
    QString prefix = url.path();
    while (prefix.endsWith(u'/'))
        prefix.chop(1);
    url.setPath(prefix + QString::fromStdString(path));
    url.setFragment({});
    QByteArray items;
    for (const auto &[key, value] : query) {
        items += (items.isEmpty() ? "" : "&") +
            QUrl::toPercentEncoding(QString::fromStdString(key)) + "=" +
            QUrl::toPercentEncoding(QString::fromStdString(value));
    }
    url.setQuery(items.isEmpty() ? QString() : QString::fromLatin1(items), QUrl::StrictMode);
    return url.isValid() ? std::optional{url} : std::nullopt;
}

QNetworkRequest canvasRequest(const QUrl &url, const std::string &token) {
    QNetworkRequest request = statelessRequest(url, "application/json");
    QByteArray authorization = QByteArray::fromStdString("Bearer " + token);
    // A line break in a pasted token must not start another header.
    authorization.removeIf([](char c) { return static_cast<unsigned char>(c) < 0x20; });
    request.setRawHeader("Authorization", authorization);
    return request;
}

} // namespace ellwynd
