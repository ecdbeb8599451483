#pragma once

#include <QByteArray>

#include <filesystem>
#include <string>
#include <vector>

namespace roost::test {

/// One entry of a catalogue's source.
struct TranslationEntry {
    std::string context;
    std::string key;
    bool isPlural = false;
    /// "unfinished", "vanished" or "obsolete"; empty for one that is done.
    std::string state;
    /// One text, or one per plural form.
    std::vector<std::string> forms;
};

/// A catalogue as Qt Linguist keeps it.
struct TranslationFile {
    std::string language;
    std::vector<TranslationEntry> entries;
    /// What makes it no XML; empty when nothing does.
    std::string error;
};

TranslationFile parsedTranslations(const QByteArray& xml);

/// Where the sources of the catalogues are, by localisation: "pt-BR".
std::filesystem::path translationsOf(const std::string& localisation);

/// The localisations that there is a source for.
std::vector<std::string> translatedLocalisations();

} // namespace roost::test
