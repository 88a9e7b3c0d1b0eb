// A test certificate authority, with valid and invalid certificates for "localhost".
#pragma once

#include <QSslConfiguration>

#include <string>

namespace ellwynd::test {

enum class CertificateKind { good, expired, notYetValid, otherHost, unknownAuthority };

/// A server's certificate and key, created with openssl once per process.
[[nodiscard]] QSslConfiguration serverConfiguration(CertificateKind kind);

/// The file with the authority's certificate, which is deleted when the process ends.
[[nodiscard]] std::string authorityFile();

/// Makes every client in this process trust the authority.
void trustAuthority();
/// The same for an authority file of another process. @throws std::runtime_error if it cannot be
/// read
void trustAuthority(const std::string &file);

} // namespace ellwynd::test
