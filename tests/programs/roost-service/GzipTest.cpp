#include "programs/roost-service/Gzip.h"

#include <gtest/gtest.h>

#include <QtEndian>

namespace roost::local {
namespace {

/// What is deflated inside a gzip file without extra fields, by way of the zlib format, RFC 1950.
QByteArray inflated(const QByteArray& gzip, const QByteArray& expected)
{
    quint32 a = 1;
    quint32 b = 0;
    for (const char byte : expected) {
        a = (a + static_cast<unsigned char>(byte)) % 65'521;
        b = (b + a) % 65'521;
    }
    QByteArray adler(4, '\0');
    qToBigEndian((b << 16U) | a, adler.data());
    QByteArray length(4, '\0');
    qToBigEndian(static_cast<quint32>(expected.size()), length.data());
    return qUncompress(length + QByteArray("\x78\xda", 2) + gzip.sliced(10, gzip.size() - 18) + adler);
}

TEST(Gzip, CompressesAndEndsWithChecksumAndLength)
{
    const QByteArray plain = "123456789";
    const QByteArray gzip = gzipped(plain);
    EXPECT_TRUE(gzip.startsWith(QByteArray("\x1f\x8b\x08\x00", 4)));
    EXPECT_EQ(inflated(gzip, plain), plain);
    // The check value of this checksum.
    EXPECT_EQ(gzip.last(8), QByteArray("\x26\x39\xf4\xcb\x09\x00\x00\x00", 8));
}

TEST(Gzip, CompressesNothingToo)
{
    EXPECT_EQ(gzipped({}).last(8), QByteArray(8, '\0'));
    EXPECT_EQ(gzipped({}).mid(10, 2), QByteArray("\x03\x00", 2));
}

} // namespace
} // namespace roost::local
