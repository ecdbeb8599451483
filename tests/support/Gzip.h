#pragma once

#include <QByteArray>

namespace roost::test {

/// `plain` in the format of gzip, as small as it gets.
QByteArray gzip(const QByteArray& plain);

/// `plain` in the content coding "deflate".
QByteArray deflate(const QByteArray& plain);

} // namespace roost::test
