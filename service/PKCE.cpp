#include "service/PKCE.h"

#include <unistd.h>

#include <QCryptographicHash>

#include <algorithm>

namespace roost::PKCE {

QByteArray systemRandom(std::size_t count)
{
    // Not QRandomGenerator: where the system has no random bytes it makes up some of its own.
    constexpr std::size_t most = 256;
    QByteArray bytes(static_cast<qsizetype>(count), '\0');
    for (std::size_t filled = 0; filled < count; filled += most) {
        if (::getentropy(bytes.data() + filled, std::min(most, count - filled)) != 0) {
            qFatal("the system has no random bytes");
        }
    }
    return bytes;
}

std::string base64URL(const QByteArray& bytes)
{
    return bytes.toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals).toStdString();
}

std::string challenge(std::string_view verifier)
{
    const QByteArrayView bytes{verifier.data(), static_cast<qsizetype>(verifier.size())};
    return base64URL(QCryptographicHash::hash(bytes, QCryptographicHash::Sha256));
}

} // namespace roost::PKCE
