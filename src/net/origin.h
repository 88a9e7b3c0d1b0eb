// What counts as an https address, and when two belong to one origin.
#pragma once

#include <QUrl>

#include <optional>
#include <string>

namespace ellwynd {

/// The URL of an address. Absent unless the address is exactly https with a host and without a user
/// name; nothing is added or completed.
[[nodiscard]] std::optional<QUrl> httpsURL(const std::string &address);

/// Whether an address leads to the origin of a URL that was requested: https, the host as it was
/// sent, letter for letter, and the same port. An address with a user name never does.
[[nodiscard]] bool isSameOrigin(const QUrl &requested, const std::string &address);

/// Whether two saved addresses have one origin, however they are written. An address that is not
/// https has none.
[[nodiscard]] bool haveSameOrigin(const std::string &address, const std::string &other);

/// The host of an address in lower case; empty when it has none.
[[nodiscard]] std::string hostOf(const std::string &address);

} // namespace ellwynd
