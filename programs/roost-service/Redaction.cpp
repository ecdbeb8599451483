#include "programs/roost-service/Redaction.h"

#include <QList>

#include <algorithm>
#include <array>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr std::array<const char*, 10> secretFields{
    "code",  "code_verifier", "state",         "refresh_token",    "access_token",
    "token", "ticket",        "client_secret", "client_assertion", "assertion"};
constexpr std::array<const char*, 4> secretHeaders{"authorization", "cookie", "proxy-authorization",
                                                   "referer"};
constexpr qsizetype longestBody = 4096;

bool holds(const auto& names, const QByteArray& name)
{
    return std::ranges::any_of(names, [&](const char* known) { return name == known; });
}

/// Whether a JSON text has a member that is secret: a client that sends a form's fields as JSON.
bool namesSecret(const QByteArray& json)
{
    return std::ranges::any_of(
        secretFields, [&](const char* name) { return json.contains(QByteArray(1, '"') + name + '"'); });
}

} // namespace

QByteArray withoutSecrets(const QByteArray& query)
{
    QList<QByteArray> fields = query.split('&');
    for (QByteArray& field : fields) {
        const qsizetype equals = field.indexOf('=');
        if (equals >= 0 && holds(secretFields, QByteArray::fromPercentEncoding(field.left(equals)))) {
            field = field.left(equals + 1) + "…";
        }
    }
    return fields.join('&');
}

QJsonObject describe(const Request& request)
{
    QJsonObject headers;
    for (const auto& [name, value] : request.headers) {
        const bool isSecret = holds(secretHeaders, name.toLower());
        headers.insert(QString::fromLatin1(name).toLower(), isSecret ? u"…"_s : QString::fromLatin1(value));
    }
    QJsonObject told{{u"method"_s, QString::fromLatin1(request.method)},
                     {u"query"_s, QString::fromUtf8(withoutSecrets(request.query))},
                     {u"headers"_s, headers}};
    const QByteArray type = request.header("Content-Type").value_or(QByteArray());
    if (type.startsWith("application/x-www-form-urlencoded")) {
        told.insert(u"body"_s, QString::fromUtf8(withoutSecrets(request.body.left(longestBody))));
    } else if (type.startsWith("application/json")) {
        const bool isTold = !namesSecret(request.body);
        told.insert(u"body"_s, isTold ? QString::fromUtf8(request.body.left(longestBody)) : u"…"_s);
    }
    return told;
}

} // namespace roost::local
