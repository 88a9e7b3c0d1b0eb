#include "net/origin.h"

#include <algorithm>

namespace ellwynd {

std::optional<QUrl> httpsURL(const std::string &address) {
    // QUrl lowers the scheme and reads a host into "https:///x", so the text itself is asked first.
    const auto origin = originAsWritten(address);
    QUrl url(QString::fromStdString(address), QUrl::StrictMode);
    if (!origin || !origin->starts_with("https://") || !url.isValid() || url.host().isEmpty())
        return std::nullopt;
    return url;
}

std::optional<std::string> originAsWritten(const std::string &address) {
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

std::string hostOf(const std::string &address) {
    return QUrl(QString::fromStdString(address)).host().toStdString();
}

} // namespace ellwynd
