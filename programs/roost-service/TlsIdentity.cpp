#include "programs/roost-service/TlsIdentity.h"

#include <QFile>
#include <QSslCertificate>
#include <QSslKey>

#include <array>

namespace roost::local {

namespace {

QSslKey keyIn(const QString& fileName)
{
    QFile file(fileName);
    const QByteArray bytes = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    for (const QSsl::KeyAlgorithm algorithm : std::array{QSsl::Ec, QSsl::Rsa}) {
        if (QSslKey key(bytes, algorithm); !key.isNull()) {
            return key;
        }
    }
    return {};
}

} // namespace

std::expected<QSslConfiguration, QString> tlsIdentity(const QString& certificateFile, const QString& keyFile)
{
    const QList<QSslCertificate> chain = QSslCertificate::fromPath(certificateFile);
    if (chain.isEmpty()) {
        return std::unexpected(QStringLiteral("there is no certificate in \"%1\"").arg(certificateFile));
    }
    const QSslKey key = keyIn(keyFile);
    if (key.isNull()) {
        return std::unexpected(QStringLiteral("there is no EC or RSA key in \"%1\"").arg(keyFile));
    }
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setLocalCertificateChain(chain);
    configuration.setPrivateKey(key);
    return configuration;
}

} // namespace roost::local
