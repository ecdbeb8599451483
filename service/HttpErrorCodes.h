#pragma once

#include <QAbstractSocket>
#include <QHostInfo>
#include <QList>
#include <QSslError>

/// The codes of `HttpFailure` for what can go wrong on the way. Pure functions.
namespace roost::HttpErrorCodes {

inline constexpr int unknown = 0;
inline constexpr int cancelled = -999;
inline constexpr int timedOut = -1001;
inline constexpr int hostNotFound = -1003;
inline constexpr int cannotConnect = -1004;
inline constexpr int connectionLost = -1005;
inline constexpr int offline = -1009;
inline constexpr int secureConnectionFailed = -1200;
inline constexpr int certificateHasBadDate = -1201;
inline constexpr int certificateUntrusted = -1202;
inline constexpr int certificateHasUnknownRoot = -1203;
inline constexpr int certificateNotYetValid = -1204;
inline constexpr int clientCertificateRejected = -1205;
inline constexpr int clientCertificateRequired = -1206;

/// A name could not be turned into addresses.
int ofLookup(QHostInfo::HostInfoError error);

/// A connection, to the service or to a proxy, could not be made.
int ofConnecting(QAbstractSocket::SocketError error);

/// A connection that had been made broke.
int ofTalking(QAbstractSocket::SocketError error);

/// The certificate was not accepted for one of `errors`; with none of them the handshake itself failed.
int ofHandshake(const QList<QSslError>& errors);

} // namespace roost::HttpErrorCodes
