#include "canvas/client/request.h"

#include "generated/version.h"

#include <QUrl>

namespace ellwynd {

std::optional<QUrl>
endpointURL(const std::string &baseURL, const std::string &path, const QueryItems &query) {
    const auto origin = writtenOrigin(baseURL);
    QUrl url(QString::fromStdString(baseURL), QUrl::StrictMode);
    if (!origin || !origin->starts_with("https://") || !url.isValid() || url.host().isEmpty())
        return std::nullopt;
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

QNetworkRequest
statelessRequest(const QUrl &url, const char *accept, std::chrono::milliseconds silence) {
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
    request.setTransferTimeout(int(silence.count()));
    return request;
}

QNetworkRequest
canvasRequest(const QUrl &url, const std::string &token, std::chrono::milliseconds silence) {
    QNetworkRequest request = statelessRequest(url, "application/json", silence);
    QByteArray authorization = QByteArray::fromStdString("Bearer " + token);
    // A line break in a pasted token must not begin a header of its own.
    authorization.removeIf([](char c) { return static_cast<unsigned char>(c) < 0x20; });
    request.setRawHeader("Authorization", authorization);
    return request;
}

std::optional<std::string> writtenOrigin(const std::string &address) {
    const std::size_t colon = address.find("://");
    if (colon == std::string::npos || colon == 0)
        return std::nullopt;
    const std::size_t begin = colon + 3;
    const std::size_t end = std::min(address.find_first_of("/?#\\", begin), address.size());
    std::string authority = address.substr(begin, end - begin);
    const std::string scheme = address.substr(0, colon);
    if (scheme == "https" && authority.ends_with(":443"))
        authority.resize(authority.size() - 4);
    if (authority.empty() || authority.starts_with(':') || authority.find('@') != std::string::npos)
        return std::nullopt;
    return scheme + "://" + authority;
}

} // namespace ellwynd
