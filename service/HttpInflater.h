#pragma once

#include <QByteArray>

#include <memory>

struct z_stream_s;

namespace roost {

/// Undoes the content codings gzip and deflate (RFC 9110 §8.4.1) piece by piece, within a limit. Never holds
/// more than one piece and what it has given out. Not copyable; one thread.
class HttpInflater {
public:
    enum class Status {
        ok,
        /// What comes next would make `out` longer than the limit.
        overLimit,
        /// This is not gzip, nor deflate.
        broken,
    };

    HttpInflater();

    /// Appends to `out` what the next `bytes` stand for. After another result than `ok` it must not be called
    /// again.
    Status inflate(QByteArrayView bytes, qint64 limit, QByteArray& out);

    /// Whether the coded text may end here: nothing of it came, or all of it.
    bool isComplete() const { return complete_; }

private:
    struct End {
        void operator()(z_stream_s* stream) const;
    };

    std::unique_ptr<z_stream_s, End> stream_;
    bool complete_ = true;
};

} // namespace roost
