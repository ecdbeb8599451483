#pragma once

#include <QByteArray>

namespace roost::local {

/// `bytes` in the gzip format, RFC 1952.
QByteArray gzipped(const QByteArray& bytes);

} // namespace roost::local
