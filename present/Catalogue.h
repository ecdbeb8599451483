#pragma once

#include <QByteArray>
#include <QTranslator>

#include <cstdint>
#include <string>
#include <string_view>

namespace roost::RoostL10n {

/// The texts of one localisation, by their English keys. Reading is safe on any thread.
class Catalogue {
public:
    /// `localisation` is a language tag such as "pt-BR"; `compiled` are the bytes of its .qm file. Bytes that
    /// are none make a catalogue that speaks English.
    Catalogue(std::string localisation, QByteArray compiled);

    /// The language tag of the texts.
    const std::string& localisation() const { return localisation_; }

    /// The translation of `key`, or `key` itself where there is none. Placeholders are still in it.
    std::string text(std::string_view key) const;

    /// The form of a plural text for `n` by the rules of this language, or `key` itself where there is none.
    /// A form that serves a single number may say it in words and hold no "%lld".
    std::string plural(std::string_view key, std::int64_t n) const;

private:
    std::string translated(std::string_view key, int n) const;

    std::string localisation_;
    /// Read in place by the translator.
    QByteArray compiled_;
    QTranslator translator_;
};

} // namespace roost::RoostL10n
