#pragma once

#include <QByteArray>

namespace roost::local {

/// Where a native application lets the browser come back to, RFC 8252.

/// Whether a client may register `uri`: one of a private-use scheme ("briskenroost", or a reverse domain
/// name, §7.1), or http to the loopback interface (§7.3). Never with a fragment.
bool mayBeRegistered(const QByteArray& uri);

/// Whether `uri` in a request is the registered one: byte for byte, but for the port of a loopback address,
/// which is the client's to choose at the time of the request (§7.3).
bool isSameRedirect(const QByteArray& registered, const QByteArray& uri);

/// The source expression with which a page's "form-action" allows going to `uri`: browsers hold the redirect
/// that follows a form against it.
QByteArray formActionOf(const QByteArray& uri);

} // namespace roost::local
