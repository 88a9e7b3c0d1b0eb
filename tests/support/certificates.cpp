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

/// The files of the script, in a temporary folder.
class Authority {
  public:
    Authority() {
        QProcess shell;
        shell.setWorkingDirectory(folder.path());
        shell.setProcessChannelMode(QProcess::MergedChannels);
        shell.start("bash", {"-c", script});
        if (!shell.waitForFinished() || shell.exitCode() != 0)
            throw std::runtime_error("no certificates: " + shell.readAll().toStdString());
    }

    [[nodiscard]] QString file(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] QByteArray read(const QString &name) const {
        QFile opened(file(name));
        if (!opened.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot open " + name.toStdString());
        return opened.readAll();
    }

  private:
    QTemporaryDir folder;
};

const Authority &authority() {
    static const Authority instance;
    return instance;
}

} // namespace

QSslConfiguration serverConfiguration(CertificateKind kind) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    const QString name = names.at(std::size_t(kind));
    configuration.setLocalCertificate(QSslCertificate(authority().read(name + ".pem")));
    configuration.setPrivateKey(QSslKey(authority().read(name + ".key"), QSsl::Ec));
    configuration.setPeerVerifyMode(QSslSocket::VerifyNone);
    return configuration;
}

std::string authorityFile() {
    return authority().file("ca.pem").toStdString();
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
