#include "programs/roost-service/ProofKey.h"

#include <QCryptographicHash>

#include <algorithm>

namespace roost::local {

namespace {

constexpr qsizetype challengeLength = 43;
constexpr qsizetype longestVerifier = 128;

bool isAlphanumeric(char c)
{
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
}

bool consistsOf(const QByteArray& text, QByteArrayView others)
{
    return std::ranges::all_of(text, [&](char c) { return isAlphanumeric(c) || others.contains(c); });
}

} // namespace

bool isVerifier(const QByteArray& text)
{
    return text.size() >= challengeLength && text.size() <= longestVerifier && consistsOf(text, "-._~");
}

bool isChallenge(const QByteArray& text) { return text.size() == challengeLength && consistsOf(text, "-_"); }

QByteArray challengeOf(const QByteArray& verifier)
{
    return QCryptographicHash::hash(verifier, QCryptographicHash::Sha256)
        .toBase64(QByteArray::Base64UrlEncoding | QByteArray::OmitTrailingEquals);
}

} // namespace roost::local
