#include "service/HttpSyntax.h"

#include <algorithm>

namespace roost::HttpSyntax {

namespace {

constexpr QByteArrayView protocol = "HTTP/1.";

bool isBlank(char c) { return c == ' ' || c == '\t'; }

bool isDigit(char c) { return c >= '0' && c <= '9'; }

bool isLetter(char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }

bool isControl(char c) { return (c >= 0 && c < ' ' && c != '\t') || c == '\x7f'; }

bool canBeSent(const std::pair<QByteArray, QByteArray>& header)
{
    return isToken(header.first) && std::ranges::none_of(header.second, isControl);
}

QByteArray host(const QUrl& url)
{
    const QByteArray name = url.host(QUrl::FullyEncoded).toLatin1();
    const QByteArray bracketed = name.contains(':') ? '[' + name + ']' : name;
    return url.port() < 0 ? bracketed : bracketed + ':' + QByteArray::number(url.port());
}

QByteArray target(const QUrl& url, Target form)
{
    QByteArray text;
    if (form == Target::absolute) {
        text = url.scheme().toLatin1() + "://" + host(url);
    }
    const QByteArray path = url.path(QUrl::FullyEncoded).toLatin1();
    text += path.isEmpty() ? QByteArray("/") : path;
    if (url.hasQuery()) {
        text += '?' + url.query(QUrl::FullyEncoded).toLatin1();
    }
    return text;
}

} // namespace

QByteArrayView trimmed(QByteArrayView text)
{
    while (!text.isEmpty() && isBlank(text.front())) {
        text = text.sliced(1);
    }
    while (!text.isEmpty() && isBlank(text.back())) {
        text.chop(1);
    }
    return text;
}

QByteArray fieldValue(QByteArrayView text)
{
    QByteArray value = trimmed(text).toByteArray();
    std::ranges::replace_if(value, isControl, ' ');
    return value;
}

bool isToken(QByteArrayView text)
{
    constexpr QByteArrayView marks = "!#$%&'*+-.^_`|~";
    return !text.isEmpty() && std::ranges::all_of(text, [marks](char c) {
        return isLetter(c) || isDigit(c) || marks.contains(c);
    });
}

std::optional<int> parseStatusLine(QByteArrayView line)
{
    const qsizetype status = protocol.size() + 2;
    const qsizetype end = status + 3;
    if (line.size() < end || !line.startsWith(protocol) || !isDigit(line[protocol.size()]) ||
        line[status - 1] != ' ' || (line.size() > end && line[end] != ' ')) {
        return std::nullopt;
    }
    const QByteArrayView digits = line.sliced(status, 3);
    if (!std::ranges::all_of(digits, isDigit) || digits.front() == '0') {
        return std::nullopt;
    }
    return digits.toByteArray().toInt();
}

std::optional<std::pair<QByteArray, QByteArray>> parseHeaderLine(QByteArrayView line)
{
    const qsizetype colon = line.indexOf(':');
    if (colon < 0 || !isToken(line.first(colon))) {
        return std::nullopt;
    }
    return std::pair(line.first(colon).toByteArray(), fieldValue(line.sliced(colon + 1)));
}

std::optional<qint64> parseChunkSize(QByteArrayView line)
{
    const qsizetype semicolon = line.indexOf(';');
    const QByteArrayView digits = trimmed(semicolon < 0 ? line : line.first(semicolon));
    const auto isHexDigit = [](char c) {
        return isDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    };
    bool fits = false;
    const qint64 size = digits.toByteArray().toLongLong(&fits, 16);
    if (!fits || !std::ranges::all_of(digits, isHexDigit)) {
        return std::nullopt;
    }
    return size;
}

std::optional<qint64> parseLength(QByteArrayView text)
{
    bool fits = false;
    const qint64 length = text.toByteArray().toLongLong(&fits);
    if (!fits || !std::ranges::all_of(text, isDigit)) {
        return std::nullopt;
    }
    return length;
}

std::optional<QByteArray> requestBytes(const HttpRequest& request, Target form,
                                       const QByteArray& proxyAuthorization)
{
    if (!std::ranges::all_of(request.headers, canBeSent)) {
        return std::nullopt;
    }
    const bool isPost = request.method == HttpRequest::Method::post;
    QByteArray bytes = (isPost ? "POST " : "GET ") + target(request.url, form) + " HTTP/1.1\r\n";
    const auto add = [&bytes](const QByteArray& name, const QByteArray& value) {
        bytes += name + ": " + value + "\r\n";
    };
    add("Host", host(request.url));
    for (const auto& [name, value] : request.headers) {
        add(name, value);
    }
    if (isPost) {
        add("Content-Length", QByteArray::number(request.body.size()));
    }
    add("Accept-Encoding", "gzip");
    add("User-Agent", "BriskenRoost");
    if (form == Target::absolute && !proxyAuthorization.isEmpty()) {
        add("Proxy-Authorization", proxyAuthorization);
    }
    add("Connection", "close");
    bytes += "\r\n";
    return isPost ? bytes + request.body : bytes;
}

} // namespace roost::HttpSyntax
