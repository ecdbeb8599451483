#include "service/HttpResponseParser.h"

#include "service/HttpSyntax.h"

#include <QList>

#include <algorithm>

namespace roost {

namespace {

constexpr qsizetype lineBytesLimit = 64 * 1024;
constexpr QByteArrayView protocol = "HTTP/1.";

constexpr HttpFailure lost{HttpFailure::Kind::transport, -1005};
constexpr HttpFailure notHttp{HttpFailure::Kind::notHttp, 0};
constexpr HttpFailure bodyTooLarge{HttpFailure::Kind::bodyTooLarge, -1103};

/// The elements of all headers of that name as one list (RFC 9110 §5.3).
QList<QByteArray> listOf(const HttpResponse& response, QByteArrayView name)
{
    QList<QByteArray> list;
    for (const auto& [key, value] : response.headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            for (const QByteArray& element : value.split(',')) {
                list.append(HttpSyntax::trimmed(element).toByteArray().toLower());
            }
        }
    }
    return list;
}

} // namespace

HttpResponseParser::HttpResponseParser(HttpRequest::Bodies bodies, qint64 bodyLimit)
    : bodies_(bodies),
      bodyLimit_(bodyLimit)
{
}

void HttpResponseParser::feed(QByteArrayView bytes)
{
    while (!result_ && !bytes.isEmpty()) {
        qsizetype taken = bytes.size();
        if (state_ == State::bodyUntilClose) {
            takeBody(bytes);
        } else if (state_ == State::countedBody || state_ == State::chunk) {
            taken = static_cast<qsizetype>(std::min<qint64>(taken, remaining_));
            remaining_ -= taken;
            takeBody(bytes.first(taken));
            if (!result_ && remaining_ == 0) {
                if (state_ == State::chunk) {
                    state_ = State::chunkEnd;
                } else {
                    bodyEnded();
                }
            }
        } else {
            const qsizetype end = bytes.indexOf('\n');
            taken = end < 0 ? bytes.size() : end + 1;
            // A chunked body may have any number of lines; what one line and the headers take is limited.
            lineBytes_ = state_ == State::chunkSize || state_ == State::chunkEnd ? line_.size() : lineBytes_;
            lineBytes_ += taken;
            line_.append(bytes.first(taken));
            if (lineBytes_ > lineBytesLimit) {
                fail(notHttp);
            } else if (state_ == State::statusLine && !line_.startsWith(protocol) &&
                       !protocol.startsWith(line_)) {
                fail(notHttp);
            } else if (end >= 0) {
                const QByteArray line = std::exchange(line_, {});
                takeLine(QByteArrayView(line).chopped(line.endsWith("\r\n") ? 2 : 1));
            }
        }
        bytes = bytes.sliced(taken);
    }
}

void HttpResponseParser::close()
{
    if (result_) {
        return;
    }
    if (state_ == State::bodyUntilClose && (!inflater_ || inflater_->isComplete())) {
        bodyEnded();
    } else {
        fail(lost);
    }
}

void HttpResponseParser::takeLine(QByteArrayView line)
{
    switch (state_) {
    case State::statusLine:
        takeStatusLine(line);
        break;
    case State::headerLine:
        takeHeaderLine(line);
        break;
    case State::chunkSize:
        takeChunkSize(line);
        break;
    case State::chunkEnd:
        if (line.isEmpty()) {
            state_ = State::chunkSize;
        } else {
            fail(lost);
        }
        break;
    case State::trailerLine:
        if (line.isEmpty()) {
            bodyEnded();
        }
        break;
    case State::countedBody:
    case State::bodyUntilClose:
    case State::chunk:
        break;
    }
}

void HttpResponseParser::takeStatusLine(QByteArrayView line)
{
    if (const std::optional<int> status = HttpSyntax::parseStatusLine(line)) {
        response_.status = *status;
        state_ = State::headerLine;
    } else {
        fail(notHttp);
    }
}

void HttpResponseParser::takeHeaderLine(QByteArrayView line)
{
    if (line.isEmpty()) {
        headEnded();
    } else if ((line.front() == ' ' || line.front() == '\t') && !response_.headers.empty()) {
        // A folded line (RFC 9112 §5.2).
        QByteArray& value = response_.headers.back().second;
        value = HttpSyntax::fieldValue(value + ' ' + line.toByteArray().trimmed());
    } else if (auto header = HttpSyntax::parseHeaderLine(line)) {
        response_.headers.push_back(*std::move(header));
    } else {
        fail(notHttp);
    }
}

void HttpResponseParser::takeChunkSize(QByteArrayView line)
{
    const std::optional<qint64> size = HttpSyntax::parseChunkSize(line);
    if (!size) {
        fail(lost);
    } else if (*size == 0) {
        state_ = State::trailerLine;
    } else {
        remaining_ = *size;
        state_ = State::chunk;
    }
}

void HttpResponseParser::takeBody(QByteArrayView bytes)
{
    if (inflater_) {
        const HttpInflater::Status status = inflater_->inflate(bytes, bodyLimit_, response_.body);
        if (status != HttpInflater::Status::ok) {
            fail(status == HttpInflater::Status::overLimit ? bodyTooLarge : notHttp);
        }
    } else if (bytes.size() > bodyLimit_ - response_.body.size()) {
        fail(bodyTooLarge);
    } else {
        response_.body.append(bytes);
    }
}

void HttpResponseParser::headEnded()
{
    const int status = response_.status;
    if (status < 200 && status != 101) {
        response_ = {};
        state_ = State::statusLine;
    } else if (status != 200 && bodies_ == HttpRequest::Bodies::onlyOfStatus200) {
        result_ = std::move(response_);
    } else if (status == 101 || status == 204 || status == 304) {
        result_ = std::move(response_);
    } else if (!chooseCoding()) {
        fail(notHttp);
    } else {
        chooseFraming();
    }
}

bool HttpResponseParser::chooseCoding()
{
    QList<QByteArray> codings = listOf(response_, "Content-Encoding");
    codings.removeIf([](const QByteArray& coding) { return coding.isEmpty() || coding == "identity"; });
    if (codings.isEmpty()) {
        return true;
    }
    inflater_.emplace();
    return codings == QList<QByteArray>{"gzip"} || codings == QList<QByteArray>{"x-gzip"} ||
           codings == QList<QByteArray>{"deflate"};
}

/// RFC 9112 §6.3.
void HttpResponseParser::chooseFraming()
{
    const QList<QByteArray> transfer = listOf(response_, "Transfer-Encoding");
    const QList<QByteArray> lengths = listOf(response_, "Content-Length");
    if (!transfer.isEmpty()) {
        if (transfer == QList<QByteArray>{"chunked"}) {
            state_ = State::chunkSize;
        } else {
            fail(notHttp);
        }
    } else if (lengths.isEmpty()) {
        state_ = State::bodyUntilClose;
    } else {
        const std::optional<qint64> length = HttpSyntax::parseLength(lengths.front());
        if (!length || lengths.count(lengths.front()) != lengths.size()) {
            fail(notHttp);
        } else if (*length == 0) {
            bodyEnded();
        } else {
            remaining_ = *length;
            state_ = State::countedBody;
        }
    }
}

void HttpResponseParser::bodyEnded()
{
    if (inflater_ && !inflater_->isComplete()) {
        fail(notHttp);
    } else {
        result_ = std::move(response_);
    }
}

void HttpResponseParser::fail(HttpFailure failure) { result_ = std::unexpected(failure); }

} // namespace roost
