// Building a Canvas request.
#pragma once

#include <QNetworkRequest>

#include <chrono>
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

/// A GET that takes part in nothing that stores or forwards what it carries: no cache, no cookies,
/// no saved credentials, no redirects. Silence on the wire ends it after `silence`.
/// @param accept the content types that are understood.
[[nodiscard]] QNetworkRequest
statelessRequest(const QUrl &url, const char *accept, std::chrono::milliseconds silence);

/// Such a request for JSON, with the token.
[[nodiscard]] QNetworkRequest
canvasRequest(const QUrl &url, const std::string &token, std::chrono::milliseconds silence);

/// Scheme, host and port of an address exactly as it is written, the standard port left out. Absent
/// without a scheme or a host, and where a user name stands before the host.
[[nodiscard]] std::optional<std::string> writtenOrigin(const std::string &address);

} // namespace ellwynd
