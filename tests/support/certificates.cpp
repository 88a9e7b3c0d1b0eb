#include "support/certificates.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

#include <array>
#include <stdexcept>

namespace ellwynd::test {

namespace {

/// Makes the files NAME.key and NAME.pem of two authorities, and of their certificates.
const char *const script = R"(
set -euo pipefail
key='-newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes'
for name in ca untrusted; do
  openssl req -x509 -days 36500 $key -keyout $name.key -out $name.pem -subj "/CN=Test authority $name"
done
# make NAME AUTHORITY HOST [COMMAND...]: a certificate signed by the authority, through the command.
make() {
  openssl req $key -keyout $1.key -out $1.csr -subj "/CN=$3" -addext "subjectAltName=DNS:$3"
  "${@:4}" openssl x509 -req -days 30 -in $1.csr -CA $2.pem -CAkey $2.key -CAcreateserial \
    -copy_extensions copy -out $1.pem
}
make good ca localhost
make expired ca localhost faketime 2020-01-01
make future ca localhost faketime 2098-01-01
make other ca elsewhere.example
make unknown untrusted localhost
)";

/// The names of the certificates, in the order of their kinds.
constexpr std::array names{"good", "expired", "future", "other", "unknown"};

/// The folder with the files of the script.
const QTemporaryDir &certificates() {
    static const QTemporaryDir folder = [] {
        QTemporaryDir made;
        QProcess shell;
        shell.setWorkingDirectory(made.path());
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start("bash", {"-c", script});
        if (!shell.waitForFinished() || shell.exitCode() != 0)
            throw std::runtime_error("no certificates: " + shell.readAll().toStdString());
        return made;
    }();
    return folder;
}

} // namespace

QSslConfiguration serverConfiguration(CertificateKind kind) {
    const QString name = certificates().filePath(names.at(std::size_t(kind)));
    QFile key(name + ".key");
    if (!key.open(QIODevice::ReadOnly))
        throw std::runtime_error("cannot open " + key.fileName().toStdString());
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(QSslCertificate::fromPath(name + ".pem").value(0));
    configuration.setPrivateKey(QSslKey(&key, QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    return configuration;
}

std::string authorityFile() {
    return certificates().filePath("ca.pem").toStdString();
}

void trustAuthority() {
    trustAuthority(authorityFile());
}

void trustAuthority(const std::string &file) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    if (!configuration.addCaCertificates(QString::fromStdString(file)))
        throw std::runtime_error("no certificate in " + file);
    QSslConfiguration::setDefaultConfiguration(configuration);
}

} // namespace ellwynd::test
