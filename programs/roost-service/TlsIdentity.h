#pragma once

#include <QSslConfiguration>
#include <QString>

#include <expected>

namespace roost::local {

/// What the service shows of itself over TLS: the certificates in the PEM file `certificateFile`, its own
/// first, and the key in `keyFile`. The error is one sentence that names the file.
std::expected<QSslConfiguration, QString> tlsIdentity(const QString& certificateFile, const QString& keyFile);

} // namespace roost::local
