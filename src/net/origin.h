// What counts as an https address, and the origin that it belongs to.
#pragma once

#include <QUrl>

#include <optional>
#include <string>

namespace ellwynd {

/// The URL of an address. Absent unless the address is exactly https with a host and without a user
/// name; nothing is added or completed.
[[nodiscard]] std::optional<QUrl> httpsURL(const std::string &address);

/// Scheme, host and port of an address exactly as it is written, the standard port left out. Absent
/// without a scheme or a host, and where a user name stands before the host.
[[nodiscard]] std::optional<std::string> originAsWritten(const std::string &address);

/// The host of an address in lower case; empty when it has none.
[[nodiscard]] std::string hostOf(const std::string &address);

} // namespace ellwynd
