// A certificate authority of the tests' own, with certificates good and bad for "localhost".
#pragma once

#include <QSslConfiguration>

namespace ellwynd::test {

enum class CertificateKind { good, expired, notYetValid, otherHost, unknownAuthority };

/// Certificate and key for a server. Made with openssl once a process.
[[nodiscard]] QSslConfiguration serverConfiguration(CertificateKind kind);

/// Makes every client of this process trust the authority, as a system store would.
void trustAuthority();

} // namespace ellwynd::test
