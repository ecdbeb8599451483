#pragma once

#include <QList>
#include <QNetworkReply>
#include <QSslError>

/// The codes of `HttpFailure` for what can go wrong on the way: the well-known numbers of URL loading. Pure
/// functions.
namespace roost::HttpErrorCodes {

inline constexpr int unknown = 0;
inline constexpr int cancelled = -999;
inline constexpr int timedOut = -1001;
inline constexpr int hostNotFound = -1003;
inline constexpr int cannotConnect = -1004;
inline constexpr int connectionLost = -1005;
inline constexpr int offline = -1009;
inline constexpr int bodyTooLarge = -1103;
inline constexpr int secureConnectionFailed = -1200;
inline constexpr int certificateHasBadDate = -1201;
inline constexpr int certificateUntrusted = -1202;
inline constexpr int certificateHasUnknownRoot = -1203;
inline constexpr int certificateNotYetValid = -1204;
inline constexpr int clientCertificateRejected = -1205;
inline constexpr int clientCertificateRequired = -1206;

/// No whole answer came, because of `error`; `certificateErrors` are those of the handshake.
int of(QNetworkReply::NetworkError error, const QList<QSslError>& certificateErrors);

/// Whether `error` only repeats the status of an answer that came whole.
bool isStatus(QNetworkReply::NetworkError error);

} // namespace roost::HttpErrorCodes
