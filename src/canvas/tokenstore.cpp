#include "canvas/tokenstore.h"

#include "net/origin.h"

#include <QStringDecoder>

namespace ellwynd {

namespace {

bool isUTF8(const std::string &bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString decoded = decoder.decode(QByteArrayView(bytes.data(), qsizetype(bytes.size())));
    static_cast<void>(decoded.size());
    return !decoder.hasError();
}

} // namespace

std::optional<std::string>
TokenStore::readToken(const std::string &account, const SecretAccess &access) const {
    auto token = secrets.read(service, account, access);
    return token && isUTF8(*token) ? token : std::nullopt;
}

void TokenStore::saveToken(
    const std::string &token, const std::string &account, const SecretAccess &access) const {
    secrets.save(token, service, account, access);
}

void TokenStore::deleteToken(const std::string &account, const SecretAccess &access) const {
    secrets.remove(service, account, access);
}

std::string TokenStore::accountOf(const std::string &address) {
    const std::string host = hostOf(address);
    return host.empty() ? address : host;
}

} // namespace ellwynd
