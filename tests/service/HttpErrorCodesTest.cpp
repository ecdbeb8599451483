#include "service/HttpErrorCodes.h"

#include <gmock/gmock.h>

namespace roost::test {

using namespace HttpErrorCodes;

namespace {

int ofCertificateError(QSslError::SslError error) { return ofHandshake({QSslError(error)}); }

} // namespace

TEST(HttpErrorCodes, NamesAFailedLookup)
{
    EXPECT_EQ(ofLookup(QHostInfo::HostNotFound), -1003);
    EXPECT_EQ(ofLookup(QHostInfo::UnknownError), -1009);
}

TEST(HttpErrorCodes, NamesAConnectionThatCouldNotBeMade)
{
    EXPECT_EQ(ofConnecting(QAbstractSocket::ConnectionRefusedError), -1004);
    EXPECT_EQ(ofConnecting(QAbstractSocket::ProxyConnectionRefusedError), -1004);
    EXPECT_EQ(ofConnecting(QAbstractSocket::ProxyConnectionClosedError), -1004);
    EXPECT_EQ(ofConnecting(QAbstractSocket::HostNotFoundError), -1003);
    EXPECT_EQ(ofConnecting(QAbstractSocket::ProxyNotFoundError), -1003);
    EXPECT_EQ(ofConnecting(QAbstractSocket::SocketTimeoutError), -1001);
    EXPECT_EQ(ofConnecting(QAbstractSocket::ProxyConnectionTimeoutError), -1001);
    EXPECT_EQ(ofConnecting(QAbstractSocket::NetworkError), -1009);
    EXPECT_EQ(ofConnecting(QAbstractSocket::ProxyAuthenticationRequiredError), 0);
    EXPECT_EQ(ofConnecting(QAbstractSocket::SocketResourceError), 0);
}

TEST(HttpErrorCodes, NamesAConnectionThatBroke)
{
    EXPECT_EQ(ofTalking(QAbstractSocket::RemoteHostClosedError), -1005);
    EXPECT_EQ(ofTalking(QAbstractSocket::NetworkError), -1005);
    EXPECT_EQ(ofTalking(QAbstractSocket::SocketTimeoutError), -1001);
    EXPECT_EQ(ofTalking(QAbstractSocket::SslHandshakeFailedError), -1200);
    EXPECT_EQ(ofTalking(QAbstractSocket::SslInternalError), -1200);
    EXPECT_EQ(ofTalking(QAbstractSocket::UnknownSocketError), 0);
}

TEST(HttpErrorCodes, NamesWhatIsWrongWithACertificate)
{
    EXPECT_EQ(ofCertificateError(QSslError::CertificateExpired), -1201);
    EXPECT_EQ(ofCertificateError(QSslError::HostNameMismatch), -1202);
    EXPECT_EQ(ofCertificateError(QSslError::CertificateRevoked), -1202);
    EXPECT_EQ(ofCertificateError(QSslError::SelfSignedCertificate), -1203);
    EXPECT_EQ(ofCertificateError(QSslError::SelfSignedCertificateInChain), -1203);
    EXPECT_EQ(ofCertificateError(QSslError::UnableToGetLocalIssuerCertificate), -1203);
    EXPECT_EQ(ofCertificateError(QSslError::CertificateNotYetValid), -1204);
    EXPECT_EQ(ofCertificateError(QSslError::UnspecifiedError), -1200);
}

TEST(HttpErrorCodes, TakesTheFirstCertificateErrorThatSaysSomething)
{
    EXPECT_EQ(ofHandshake({}), -1200);
    EXPECT_EQ(ofHandshake({QSslError(QSslError::UnspecifiedError), QSslError(QSslError::CertificateExpired),
                           QSslError(QSslError::HostNameMismatch)}),
              -1201);
}

} // namespace roost::test
