#include "programs/roost-service/Gzip.h"

#include <array>
#include <cstdint>

namespace roost::local {

namespace {

constexpr std::array<std::uint32_t, 256> crcTable = [] {
    std::array<std::uint32_t, 256> table{};
    for (std::uint32_t i = 0; i < table.size(); ++i) {
        std::uint32_t value = i;
        for (int bit = 0; bit < 8; ++bit) {
            value = (value & 1U) != 0 ? 0xEDB88320U ^ (value >> 1U) : value >> 1U;
        }
        table[i] = value;
    }
    return table;
}();

std::uint32_t crc32(const QByteArray& bytes)
{
    std::uint32_t value = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        value = crcTable[(value ^ static_cast<unsigned char>(byte)) & 0xFFU] ^ (value >> 8U);
    }
    return value ^ 0xFFFFFFFFU;
}

void appendLittleEndian(QByteArray& to, std::uint32_t value)
{
    for (unsigned shift = 0; shift < 32; shift += 8) {
        to += static_cast<char>((value >> shift) & 0xFFU);
    }
}

} // namespace

QByteArray gzipped(const QByteArray& bytes)
{
    // qCompress writes four bytes of length, two of zlib header, the deflated data and four of checksum.
    // Of nothing it makes nothing, where an empty block is needed, RFC 1951 §3.2.6.
    const QByteArray compressed = qCompress(bytes, 9);
    QByteArray out("\x1f\x8b\x08\x00\x00\x00\x00\x00\x00\xff", 10);
    out += bytes.isEmpty() ? QByteArray("\x03\x00", 2) : compressed.sliced(6, compressed.size() - 10);
    appendLittleEndian(out, crc32(bytes));
    appendLittleEndian(out, static_cast<std::uint32_t>(bytes.size()));
    return out;
}

} // namespace roost::local
