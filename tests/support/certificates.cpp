#include "support/certificates.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

#include <stdexcept>

namespace ellwynd::test {

namespace {

/// Two authorities and their certificates, in a temporary folder.
class Authority {
  public:
    Authority() {
        makeRoot("ca");
        makeRoot("untrusted");
        make("good", "ca", "localhost", {});
        make("expired", "ca", "localhost", {"faketime", "2020-01-01"});
        make("future", "ca", "localhost", {"faketime", "2098-01-01"});
        make("other", "ca", "elsewhere.example", {});
        make("unknown", "untrusted", "localhost", {});
    }

    [[nodiscard]] QString file(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] QByteArray read(const QString &name) const {
        QFile opened(file(name));
        if (!opened.open(QIODevice::ReadOnly))
            throw std::runtime_error("cannot open " + name.toStdString());
        return opened.readAll();
    }

  private:
    void run(QStringList words) const {
        QProcess process;
        process.setWorkingDirectory(folder.path());
        process.setProcessChannelMode(QProcess::MergedChannels);
        const QString program = words.takeFirst();
        process.start(program, words);
        if (!process.waitForFinished() || process.exitCode() != 0)
            throw std::runtime_error(
                program.toStdString() + " failed: " + process.readAll().toStdString());
    }

    static QStringList key(const QString &name) {
        return {"-newkey", "ec",      "-pkeyopt",   "ec_paramgen_curve:P-256",
                "-nodes",  "-keyout", name + ".key"};
    }

    void makeRoot(const QString &name) const {
        run(QStringList{"openssl", "req", "-x509", "-days", "36500"} + key(name) +
            QStringList{"-out", name + ".pem", "-subj", "/CN=Test authority " + name});
    }

    void
    make(const QString &name, const QString &root, const QString &host, QStringList clock) const {
        run(QStringList{"openssl", "req"} + key(name) +
            QStringList{
                "-out", name + ".csr", "-subj", "/CN=" + host, "-addext",
                "subjectAltName=DNS:" + host});
        run(clock +
            QStringList{
                "openssl", "x509", "-req", "-days", "30", "-in", name + ".csr", "-CA",
                root + ".pem", "-CAkey", root + ".key", "-CAcreateserial", "-copy_extensions",
                "copy", "-out", name + ".pem"});
    }

    QTemporaryDir folder;
};

const Authority &authority() {
    static const Authority instance;
    return instance;
}

QString fileOf(CertificateKind kind) {
    switch (kind) {
    case CertificateKind::good:
        return "good";
    case CertificateKind::expired:
        return "expired";
    case CertificateKind::notYetValid:
        return "future";
    case CertificateKind::otherHost:
        return "other";
    case CertificateKind::unknownAuthority:
        break;
    }
    return "unknown";
}

} // namespace

QSslConfiguration serverConfiguration(CertificateKind kind) {
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    const QString name = fileOf(kind);
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
