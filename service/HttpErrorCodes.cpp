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

int ofHandshake(const QList<QSslError>& errors)
{
    const auto specific = std::ranges::find_if(errors, [](const QSslError& error) {
        return ofCertificate(error.error()) != secureConnectionFailed;
    });
    return specific == errors.end() ? secureConnectionFailed : ofCertificate(specific->error());
}

} // namespace

int of(QNetworkReply::NetworkError error, const QList<QSslError>& certificateErrors)
{
    switch (error) {
    case QNetworkReply::ConnectionRefusedError:
    case QNetworkReply::ProxyConnectionRefusedError:
    case QNetworkReply::ProxyConnectionClosedError:
        return cannotConnect;
    case QNetworkReply::RemoteHostClosedError:
        return connectionLost;
    case QNetworkReply::HostNotFoundError:
    case QNetworkReply::ProxyNotFoundError:
        return hostNotFound;
    case QNetworkReply::TimeoutError:
    case QNetworkReply::ProxyTimeoutError:
        return timedOut;
    case QNetworkReply::SslHandshakeFailedError:
        return ofHandshake(certificateErrors);
    case QNetworkReply::TemporaryNetworkFailureError:
    case QNetworkReply::NetworkSessionFailedError:
    // Qt's name for a route that is not there.
    case QNetworkReply::UnknownNetworkError:
        return offline;
    default:
        return unknown;
    }
}

bool isStatus(QNetworkReply::NetworkError error)
{
    const bool ofContent =
        error >= QNetworkReply::ContentAccessDenied && error < QNetworkReply::UnknownContentError;
    const bool ofServer =
        error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError;
    return error == QNetworkReply::NoError || ofContent || ofServer ||
           error == QNetworkReply::UnknownContentError ||
           error == QNetworkReply::ProtocolInvalidOperationError;
}

} // namespace roost::HttpErrorCodes
