#include "present/Catalogue.h"

#include <utility>

namespace roost::RoostL10n {

namespace {

/// The translator counts in `int`. The plural rules look at small numbers as they are and at the last digits
/// of larger ones, without the sign.
int countOfSameForm(std::int64_t n)
{
    constexpr std::uint64_t large = 1'000'000;
    const auto bits = static_cast<std::uint64_t>(n);
    const std::uint64_t magnitude = n < 0 ? 0 - bits : bits;
    return static_cast<int>(magnitude < large ? magnitude : large + magnitude % large);
}

} // namespace

Catalogue::Catalogue(std::string localisation, QByteArray compiled)
    : localisation_{std::move(localisation)},
      compiled_{std::move(compiled)}
{
    // Where this fails, every look-up below finds nothing.
    (void)translator_.load(reinterpret_cast<const uchar*>(compiled_.constData()),
                           static_cast<int>(compiled_.size()));
}

std::string Catalogue::text(std::string_view key) const { return translated(key, -1); }

std::string Catalogue::plural(std::string_view key, std::int64_t n) const
{
    return translated(key, countOfSameForm(n));
}

std::string Catalogue::translated(std::string_view key, int n) const
{
    const std::string source{key};
    const QString found = translator_.translate("Roost", source.c_str(), nullptr, n);
    return found.isEmpty() ? source : found.toStdString();
}

} // namespace roost::RoostL10n
