#include "service/HttpInflater.h"

#include <array>

#define ZLIB_CONST
#include <zlib.h>

namespace roost {

namespace {

/// The largest window, with the header of zlib or gzip found out by the library.
constexpr int windowBitsOfEither = 15 + 32;

} // namespace

void HttpInflater::End::operator()(z_stream_s* stream) const
{
    inflateEnd(stream);
    delete stream;
}

HttpInflater::HttpInflater() : stream_(new z_stream_s{})
{
    // Fails only without memory, and then each call below says that the stream is broken.
    inflateInit2(stream_.get(), windowBitsOfEither);
}

HttpInflater::Status HttpInflater::inflate(QByteArrayView bytes, qint64 limit, QByteArray& out)
{
    std::array<char, 16 * 1024> piece;
    stream_->next_in = reinterpret_cast<const Bytef*>(bytes.data());
    stream_->avail_in = static_cast<uInt>(bytes.size());
    bool outputMayWait = false;
    while (stream_->avail_in > 0 || outputMayWait) {
        if (complete_) {
            // A new stream begins: gzip may hold several, one after the other (RFC 1952 §2.2).
            inflateReset(stream_.get());
            complete_ = false;
        }
        stream_->next_out = reinterpret_cast<Bytef*>(piece.data());
        stream_->avail_out = static_cast<uInt>(piece.size());
        const int code = ::inflate(stream_.get(), Z_NO_FLUSH);
        if (code != Z_OK && code != Z_STREAM_END && code != Z_BUF_ERROR) {
            return Status::broken;
        }
        const qsizetype count = static_cast<qsizetype>(piece.size() - stream_->avail_out);
        if (count > limit - out.size()) {
            return Status::overLimit;
        }
        out.append(piece.data(), count);
        complete_ = code == Z_STREAM_END;
        outputMayWait = !complete_ && stream_->avail_out == 0;
    }
    return Status::ok;
}

} // namespace roost
