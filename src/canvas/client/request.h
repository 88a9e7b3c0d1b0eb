// Building a Canvas request.
#pragma once

#include <QNetworkRequest>

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace ellwynd {

using QueryItems = std::vector<std::pair<std::string, std::string>>;

/// The address of an API endpoint: `path` ("/api/v1/courses") appended to the saved address, which
/// keeps a path of its own, and the query items in their order. Absent when no valid https address
/// comes of it.
[[nodiscard]] std::optional<QUrl>
endpointURL(const std::string &baseURL, const std::string &path, const QueryItems &query);

/// A stateless request for JSON, with the token.
[[nodiscard]] QNetworkRequest canvasRequest(const QUrl &url, const std::string &token);

} // namespace ellwynd
