// Builds Canvas requests.
#pragma once

#include <QNetworkRequest>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ellwynd {

using QueryItems = std::vector<std::pair<std::string, std::string>>;

/// The URL of an API endpoint: the saved address including its path, followed by `path`
/// ("/api/v1/courses") and the query items in their order. Absent unless the result is a valid
/// https URL.
[[nodiscard]] std::optional<QUrl>
endpointURL(const std::string &baseURL, const std::string &path, const QueryItems &query);

/// A stateless request for JSON, authorised by the token.
[[nodiscard]] QNetworkRequest canvasRequest(const QUrl &url, const std::string &token);

} // namespace ellwynd
