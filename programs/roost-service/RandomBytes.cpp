#include "programs/roost-service/RandomBytes.h"

#include <QCryptographicHash>
#include <QRandomGenerator>

namespace roost::local {

RandomBytes systemRandomBytes()
{
    return [](int count) {
        QByteArray bytes(count, '\0');
        for (char& byte : bytes) {
            byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
        }
        return bytes;
    };
}

RandomBytes seededRandomBytes(std::uint64_t seed)
{
    return [seed, drawn = std::uint64_t{0}](int count) mutable {
        QByteArray bytes;
        while (bytes.size() < count) {
            const QByteArray input = QByteArray::number(seed) + '/' + QByteArray::number(drawn++);
            bytes += QCryptographicHash::hash(input, QCryptographicHash::Sha256);
        }
        return bytes.first(count);
    };
}

QByteArray randomText(const RandomBytes& random, int count)
{
    return random(count).toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace roost::local
