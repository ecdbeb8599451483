#include "programs/roost-service/Scopes.h"

#include <QByteArrayList>
#include <QList>

#include <algorithm>

namespace roost::local {

Scopes allScopes() { return {supportedScopes.begin(), supportedScopes.end()}; }

std::optional<Scopes> scopesIn(const QByteArray& text)
{
    Scopes scopes;
    for (const QByteArray& name : text.split(' ')) {
        if (std::ranges::none_of(supportedScopes, [&](const char* known) { return name == known; })) {
            return std::nullopt;
        }
        scopes.insert(name);
    }
    return scopes;
}

QByteArray textOf(const Scopes& scopes)
{
    QByteArrayList names;
    for (const char* known : supportedScopes) {
        if (scopes.contains(known)) {
            names.append(known);
        }
    }
    return names.join(' ');
}

bool isWithin(const Scopes& part, const Scopes& whole) { return std::ranges::includes(whole, part); }

} // namespace roost::local
