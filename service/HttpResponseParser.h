#pragma once

#include "service/HttpInflater.h"
#include "service/HttpSession.h"

#include <optional>

namespace roost {

/// Reads one answer of HTTP/1.x (RFC 9112) from the bytes of a connection that carries nothing else. A pure
/// value: it is fed, and says when it knows the result. Takes memory for the head, at most 64 KiB, and for
/// the body, at most its limit. Interim answers (RFC 9110 §15.2) are passed over.
class HttpResponseParser {
public:
    HttpResponseParser(HttpRequest::Bodies bodies, qint64 bodyLimit);

    /// The next bytes, in pieces of any size. What follows the end of the answer is ignored.
    void feed(QByteArrayView bytes);

    /// The peer has closed the connection. Settles the result: an answer that was not whole is lost.
    void close();

    /// The result, as soon as it is settled; after that nothing changes it.
    const std::optional<HttpResult>& result() const { return result_; }

private:
    enum class State {
        statusLine,
        headerLine,
        countedBody,
        bodyUntilClose,
        chunkSize,
        chunk,
        chunkEnd,
        trailerLine
    };

    void takeLine(QByteArrayView line);
    void takeStatusLine(QByteArrayView line);
    void takeHeaderLine(QByteArrayView line);
    void takeChunkSize(QByteArrayView line);
    void takeBody(QByteArrayView bytes);
    void headEnded();
    void chooseFraming();
    bool chooseCoding();
    void bodyEnded();
    void fail(HttpFailure failure);

    HttpRequest::Bodies bodies_;
    qint64 bodyLimit_;
    State state_ = State::statusLine;
    /// The line that is still being received.
    QByteArray line_;
    /// What all lines so far took.
    qsizetype lineBytes_ = 0;
    /// What is still to come of the body or the chunk.
    qint64 remaining_ = 0;
    HttpResponse response_;
    std::optional<HttpInflater> inflater_;
    std::optional<HttpResult> result_;
};

} // namespace roost
