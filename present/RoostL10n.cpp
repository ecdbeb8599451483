#include "present/RoostL10n.h"

#include "present/FormatLocale.h"
#include "present/LocalisationChoice.h"
#include "present/RoostTexts.h"

#include <unicode/numberformatter.h>

#include <QDir>
#include <QFile>

#include <algorithm>
#include <array>
#include <map>
#include <mutex>
#include <vector>

namespace roost::RoostL10n {

namespace {

const QString folder = QStringLiteral(":/roost/translations/");
const QString prefix = QStringLiteral("roost_");
const QString ending = QStringLiteral(".qm");

/// The localisations that are compiled in, as language tags.
std::vector<std::string> availableLocalisations()
{
    std::vector<std::string> available;
    for (const QString& name : QDir{folder}.entryList({prefix + u'*' + ending}, QDir::Files, QDir::Name)) {
        available.push_back(
            name.mid(prefix.size(), name.size() - prefix.size() - ending.size()).toStdString());
    }
    return available;
}

/// Empty where there is no such file.
QByteArray compiledCatalogue(const std::string& localisation)
{
    QFile file{folder + prefix + QString::fromStdString(localisation) + ending};
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray{};
}

/// Which catalogue each locale gets. Catalogues are loaded when they are first chosen, and shared.
class Bundles {
public:
    const Catalogue& bundle(std::string_view locale)
    {
        const std::scoped_lock guard{lock_};
        if (const auto known = chosen_.find(locale); known != chosen_.end()) {
            return *known->second;
        }
        const std::string localisation = choice_.localisation(locale);
        auto catalogue = catalogues_.find(localisation);
        if (catalogue == catalogues_.end()) {
            catalogue =
                catalogues_.try_emplace(localisation, localisation, compiledCatalogue(localisation)).first;
        }
        chosen_.emplace(locale, &catalogue->second);
        return catalogue->second;
    }

private:
    std::mutex lock_;
    LocalisationChoice choice_{availableLocalisations()};
    std::map<std::string, Catalogue> catalogues_;
    std::map<std::string, const Catalogue*, std::less<>> chosen_;
};

/// `n` as the locale writes it, grouped.
std::string number(std::int64_t n, std::string_view locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const auto written =
        icu::number::NumberFormatter::withLocale(formatLocale(std::string{locale})).formatInt(n, status);
    std::string text;
    written.toString(status).toUTF8String(text);
    return U_SUCCESS(status) ? text : std::to_string(n);
}

/// `text` with every `placeholder` replaced, in order, while there are replacements.
std::string replaced(std::string_view text, std::string_view placeholder,
                     std::initializer_list<std::string_view> replacements)
{
    std::string result;
    for (const std::string_view replacement : replacements) {
        const auto place = text.find(placeholder);
        if (place == std::string_view::npos) {
            break;
        }
        result.append(text.substr(0, place)).append(replacement);
        text.remove_prefix(place + placeholder.size());
    }
    return result.append(text);
}

} // namespace

const Catalogue& bundle(std::string_view locale)
{
    // Never destroyed: a thread may still be reading while the process exits.
    static Bundles& bundles = *new Bundles;
    return bundles.bundle(locale);
}

std::string counted(std::string_view key, std::int64_t n, std::string_view locale)
{
    return replaced(bundle(locale).plural(key, n), "%lld", {number(n, locale)});
}

std::string scheduled(std::int64_t n, std::string_view locale)
{
    return counted(knownText("%lld scheduled"), n, locale);
}

bool isRightToLeft(std::string_view locale)
{
    constexpr std::array<std::string_view, 5> languages{"ar", "he", "iw", "fa", "ur"};
    std::string language{locale.substr(0, locale.find_first_of("-_.@"))};
    std::ranges::transform(language, language.begin(), [](char c) {
        return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
    });
    return std::ranges::find(languages, language) != languages.end();
}

std::string filled(std::string_view text, std::initializer_list<std::string_view> replacements)
{
    return replaced(text, "%@", replacements);
}

} // namespace roost::RoostL10n
