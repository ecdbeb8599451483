#include "programs/roost-service/HttpValues.h"

#include <QJsonDocument>
#include <QList>

namespace roost::local {

namespace {

QByteArray reasonOf(int status)
{
    switch (status) {
    case 200:
        return "OK";
    case 201:
        return "Created";
    case 302:
        return "Found";
    case 303:
        return "See Other";
    case 400:
        return "Bad Request";
    case 401:
        return "Unauthorized";
    case 403:
        return "Forbidden";
    case 404:
        return "Not Found";
    case 405:
        return "Method Not Allowed";
    case 429:
        return "Too Many Requests";
    case 500:
        return "Internal Server Error";
    case 503:
        return "Service Unavailable";
    default:
        // RFC 9112 §4: the phrase may be empty.
        return {};
    }
}

} // namespace

std::vector<QByteArray> Request::headerValues(QByteArrayView name) const
{
    std::vector<QByteArray> values;
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            values.push_back(value);
        }
    }
    return values;
}

std::optional<QByteArray> Request::header(QByteArrayView name) const
{
    std::vector<QByteArray> values = headerValues(name);
    return values.size() == 1 ? std::optional(std::move(values.front())) : std::nullopt;
}

bool isContentType(const Request& request, QByteArrayView type)
{
    const QByteArray value = request.header("Content-Type").value_or(QByteArray());
    return value.split(';').constFirst().trimmed().toLower() == type;
}

Answer jsonAnswer(const QJsonObject& body, int status)
{
    return textAnswer(QJsonDocument(body).toJson(QJsonDocument::Compact), "application/json", status);
}

Answer textAnswer(const QByteArray& body, const QByteArray& contentType, int status)
{
    return {status, {{"Content-Type", contentType}, {"Cache-Control", "no-store"}}, body};
}

QByteArray headOf(const Answer& answer)
{
    QByteArray head =
        "HTTP/1.1 " + QByteArray::number(answer.status) + ' ' + reasonOf(answer.status) + "\r\n";
    for (const auto& [name, value] : answer.headers) {
        head += name + ": " + value + "\r\n";
    }
    head += "Content-Length: " + QByteArray::number(answer.body.size()) + "\r\nConnection: close\r\n\r\n";
    return head;
}

} // namespace roost::local
