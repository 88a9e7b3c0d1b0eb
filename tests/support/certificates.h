// A certificate authority of the tests' own, with certificates good and bad for "localhost".
#pragma once

#include <QSslConfiguration>

#include <string>

namespace ellwynd::test {

enum class CertificateKind { good, expired, notYetValid, otherHost, unknownAuthority };

/// Certificate and key for a server. Made with openssl once a process.
[[nodiscard]] QSslConfiguration serverConfiguration(CertificateKind kind);

/// The authority's own certificate, a file that lasts as long as the process.
[[nodiscard]] std::string authorityFile();

/// Makes every client of this process trust the authority, as a system store would.
void trustAuthority();
/// The same for the authority of another process. Throws std::runtime_error without one.
void trustAuthority(const std::string &file);

} // namespace ellwynd::test
