#include "service/HttpErrorCodes.h"

#include <algorithm>

namespace roost::HttpErrorCodes {

namespace {

int ofCertificate(QSslError::SslError error)
{
    switch (error) {
    case QSslError::CertificateExpired:
    case QSslError::InvalidNotBeforeField:
    case QSslError::InvalidNotAfterField:
        return certificateHasBadDate;
    case QSslError::CertificateNotYetValid:
        return certificateNotYetValid;
    case QSslError::SelfSignedCertificate:
    case QSslError::SelfSignedCertificateInChain:
    case QSslError::UnableToGetIssuerCertificate:
    case QSslError::UnableToGetLocalIssuerCertificate:
    case QSslError::UnableToVerifyFirstCertificate:
        return certificateHasUnknownRoot;
    case QSslError::HostNameMismatch:
    case QSslError::CertificateUntrusted:
    case QSslError::CertificateRejected:
    case QSslError::CertificateRevoked:
    case QSslError::CertificateBlacklisted:
    case QSslError::CertificateSignatureFailed:
    case QSslError::InvalidCaCertificate:
    case QSslError::InvalidPurpose:
    case QSslError::PathLengthExceeded:
        return certificateUntrusted;
    default:
        return secureConnectionFailed;
    }
}

} // namespace

int ofLookup(QHostInfo::HostInfoError error)
{
    // A machine without a network gets "try again later" from its resolver, which Qt gives as an unknown
    // error.
    return error == QHostInfo::HostNotFound ? hostNotFound : offline;
}

int ofConnecting(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::ConnectionRefusedError:
    case QAbstractSocket::RemoteHostClosedError:
    case QAbstractSocket::ProxyConnectionRefusedError:
    case QAbstractSocket::ProxyConnectionClosedError:
        return cannotConnect;
    case QAbstractSocket::HostNotFoundError:
    case QAbstractSocket::ProxyNotFoundError:
        return hostNotFound;
    case QAbstractSocket::SocketTimeoutError:
    case QAbstractSocket::ProxyConnectionTimeoutError:
        return timedOut;
    case QAbstractSocket::NetworkError:
        // No route: to a connection that is not there yet nothing else of this kind happens.
        return offline;
    default:
        return unknown;
    }
}

int ofTalking(QAbstractSocket::SocketError error)
{
    switch (error) {
    case QAbstractSocket::RemoteHostClosedError:
    case QAbstractSocket::NetworkError:
    case QAbstractSocket::ProxyConnectionClosedError:
        return connectionLost;
    case QAbstractSocket::SocketTimeoutError:
        return timedOut;
    case QAbstractSocket::SslHandshakeFailedError:
    case QAbstractSocket::SslInternalError:
    case QAbstractSocket::SslInvalidUserDataError:
        return secureConnectionFailed;
    default:
        return unknown;
    }
}

int ofHandshake(const QList<QSslError>& errors)
{
    const auto specific = std::ranges::find_if(errors, [](const QSslError& error) {
        return ofCertificate(error.error()) != secureConnectionFailed;
    });
    return specific == errors.end() ? secureConnectionFailed : ofCertificate(specific->error());
}

} // namespace roost::HttpErrorCodes
