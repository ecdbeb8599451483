#include "tests/support/TestCertificate.h"

#include <QFile>
#include <QProcess>
#include <QSslCertificate>
#include <QSslKey>
#include <QTemporaryDir>

#include <stdexcept>

namespace roost::test {

namespace {

QByteArray contentsOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error("openssl wrote no file");
    }
    return file.readAll();
}

} // namespace

TestCertificate TestCertificate::make(const QString& names)
{
    const QTemporaryDir folder;
    const QString keyFile = folder.filePath(QStringLiteral("key.pem"));
    const QString certificateFile = folder.filePath(QStringLiteral("certificate.pem"));
    const QString arguments =
        QStringLiteral(
            "req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -days 1 -subj /CN=test "
            "-addext subjectAltName=") +
        names;
    QProcess openssl;
    openssl.start(QStringLiteral("openssl"),
                  arguments.split(QLatin1Char(' ')) + QStringList{QStringLiteral("-keyout"), keyFile,
                                                                  QStringLiteral("-out"), certificateFile});
    if (!openssl.waitForFinished() || openssl.exitCode() != 0) {
        throw std::runtime_error("openssl: " + openssl.readAllStandardError().toStdString());
    }
    return {QSslCertificate(contentsOf(certificateFile)), QSslKey(contentsOf(keyFile), QSsl::Ec)};
}

QSslConfiguration TestCertificate::forServer() const
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificate(certificate);
    configuration.setPrivateKey(key);
    return configuration;
}

ScopedTrust::ScopedTrust(const QSslCertificate& certificate)
    : previous_(QSslConfiguration::defaultConfiguration())
{
    QSslConfiguration trusting = previous_;
    trusting.addCaCertificate(certificate);
    QSslConfiguration::setDefaultConfiguration(trusting);
}

ScopedTrust::~ScopedTrust() { QSslConfiguration::setDefaultConfiguration(previous_); }

} // namespace roost::test
