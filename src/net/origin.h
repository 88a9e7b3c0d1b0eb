// HTTPS addresses and the comparison of their origins.
#pragma once

#include <QUrl>

#include <optional>
#include <string>

namespace ellwynd {

/// The URL of an address. Absent unless the address begins with "https://" in lower case and has a
/// host and no user name; nothing is completed.
[[nodiscard]] std::optional<QUrl> httpsURL(const std::string &address);

/// Whether an address has the origin of a requested URL: https, the same host exactly as it was
/// sent, and the same port. False for an address with a user name.
[[nodiscard]] bool isSameOrigin(const QUrl &requested, const std::string &address);

/// Whether two saved addresses have one origin, however they are written. An address that is not
/// https has none.
[[nodiscard]] bool haveSameOrigin(const std::string &address, const std::string &other);

/// The host of an address in lower case; empty when it has none.
[[nodiscard]] std::string hostOf(const std::string &address);

} // namespace ellwynd
