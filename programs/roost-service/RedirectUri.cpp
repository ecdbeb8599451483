#include "programs/roost-service/RedirectUri.h"

#include <QUrl>

#include <algorithm>

namespace roost::local {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype longest = 2048;
constexpr const char* ownScheme = "briskenroost";

bool isPlain(const QByteArray& uri)
{
    return uri.size() <= longest &&
           std::ranges::all_of(uri, [](char c) { return c > ' ' && c <= '~' && c != '#' && c != '\\'; });
}

bool isLoopbackAddress(const QString& host) { return host == u"127.0.0.1"_s || host == u"::1"_s; }

bool isPrivateUse(const QString& scheme)
{
    return scheme == QLatin1StringView(ownScheme) || scheme.contains(u'.');
}

QUrl urlOf(const QByteArray& uri) { return {QString::fromLatin1(uri), QUrl::StrictMode}; }

} // namespace

bool mayBeRegistered(const QByteArray& uri)
{
    const QUrl url = urlOf(uri);
    if (!isPlain(uri) || !url.isValid() || !url.userInfo().isEmpty()) {
        return false;
    }
    if (url.scheme() == u"http"_s) {
        return isLoopbackAddress(url.host()) || url.host() == u"localhost"_s;
    }
    return isPrivateUse(url.scheme()) && url.path().startsWith(u'/');
}

bool isSameRedirect(const QByteArray& registered, const QByteArray& uri)
{
    if (registered == uri) {
        return true;
    }
    const QUrl known = urlOf(registered);
    if (!mayBeRegistered(uri) || known.scheme() != u"http"_s || !isLoopbackAddress(known.host())) {
        return false;
    }
    const QUrl asked = urlOf(uri);
    const auto behindPort = [](const QByteArray& text) {
        constexpr QByteArrayView scheme = "http://";
        const qsizetype path = text.indexOf('/', scheme.size());
        return path < 0 ? QByteArray() : text.mid(path);
    };
    return asked.scheme() == known.scheme() && asked.host() == known.host() &&
           behindPort(uri) == behindPort(registered);
}

QByteArray formActionOf(const QByteArray& uri)
{
    const QUrl url = urlOf(uri);
    if (url.scheme() != u"http"_s) {
        return url.scheme().toLatin1() + ':';
    }
    return url.toEncoded(QUrl::RemovePath | QUrl::RemoveQuery);
}

} // namespace roost::local
