#include "tests/support/Gzip.h"

#include <stdexcept>

#define ZLIB_CONST
#include <zlib.h>

namespace roost::test {

namespace {

constexpr int zlibWindowBits = 15;
constexpr int gzipWindowBits = 15 + 16;
constexpr int memoryLevel = 8;

QByteArray compress(const QByteArray& plain, int windowBits)
{
    z_stream stream{};
    if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, windowBits, memoryLevel, Z_DEFAULT_STRATEGY) !=
        Z_OK) {
        throw std::runtime_error("zlib did not start");
    }
    QByteArray coded(static_cast<qsizetype>(deflateBound(&stream, static_cast<uLong>(plain.size()))), '\0');
    stream.next_in = reinterpret_cast<const Bytef*>(plain.constData());
    stream.avail_in = static_cast<uInt>(plain.size());
    stream.next_out = reinterpret_cast<Bytef*>(coded.data());
    stream.avail_out = static_cast<uInt>(coded.size());
    const int code = ::deflate(&stream, Z_FINISH);
    deflateEnd(&stream);
    if (code != Z_STREAM_END) {
        throw std::runtime_error("zlib did not end");
    }
    coded.truncate(static_cast<qsizetype>(stream.total_out));
    return coded;
}

} // namespace

QByteArray gzip(const QByteArray& plain) { return compress(plain, gzipWindowBits); }

QByteArray deflate(const QByteArray& plain) { return compress(plain, zlibWindowBits); }

} // namespace roost::test
