#include "net/origin.h"

namespace ellwynd {

namespace {

constexpr std::string_view scheme = "https://";
constexpr int httpsPort = 443;

/// The host as it is sent to the server: lower case, international names in ASCII form.
std::string sentHost(const QUrl &url) {
    const std::string host = url.host(QUrl::FullyEncoded).toStdString();
    return host.find(':') == std::string::npos ? host : "[" + host + "]";
}

} // namespace

std::optional<QUrl> httpsURL(const std::string &address) {
    // QUrl converts the scheme to lower case, so the text itself is checked.
    if (!address.starts_with(scheme))
        return std::nullopt;
    const std::string authority = address.substr(
        scheme.size(), address.find_first_of("/?#\\", scheme.size()) - scheme.size());
    QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    if (!url.isValid() || url.host().isEmpty() || authority.find('@') != std::string::npos)
        return std::nullopt;
    return url;
}

bool isSameOrigin(const QUrl &requested, const std::string &address) {
    const auto url = httpsURL(address);
    const std::string host = sentHost(requested);
    return url && sentHost(*url) == host && url->port(httpsPort) == requested.port(httpsPort) &&
        // QUrl converts the host to lower case too.
        std::string_view(address).substr(scheme.size()).starts_with(host);
}

bool haveSameOrigin(const std::string &address, const std::string &other) {
    const auto first = httpsURL(address);
    const auto second = httpsURL(other);
    return first && second && first->host() == second->host() &&
        first->port(httpsPort) == second->port(httpsPort);
}

std::string hostOf(const std::string &address) {
    return QUrl(QString::fromStdString(address)).host().toStdString();
}

} // namespace ellwynd
