#include "tests/present/PluralForms.h"

#include <unicode/plurrule.h>

#include <algorithm>
#include <memory>

namespace roost::test {

const std::map<std::string, std::vector<std::string>>& pluralForms()
{
    static const std::map<std::string, std::vector<std::string>> forms{
        {"ar", {"zero", "one", "two", "few", "many", "other"}},
        {"de", {"one", "other"}},
        {"en", {"one", "other"}},
        {"es", {"one", "other"}},
        {"fr", {"one", "other"}},
        {"he", {"one", "other"}},
        {"it", {"one", "other"}},
        {"ja", {"other"}},
        {"nl", {"one", "other"}},
        {"pl", {"one", "few", "many"}},
        {"pt-BR", {"one", "other"}},
        {"uk", {"one", "few", "many"}},
        {"zh-Hans", {"other"}},
    };
    return forms;
}

std::size_t formWanted(const std::string& localisation, std::int64_t n)
{
    static std::map<std::string, std::unique_ptr<icu::PluralRules>> rules;
    auto& mine = rules[localisation];
    if (!mine) {
        UErrorCode status = U_ZERO_ERROR;
        mine.reset(icu::PluralRules::forLocale(icu::Locale::forLanguageTag(localisation, status), status));
    }
    std::string category;
    mine->select(static_cast<double>(n)).toUTF8String(category);
    const std::vector<std::string>& forms = pluralForms().at(localisation);
    const auto form = std::ranges::find(forms, category);
    return form == forms.end() ? forms.size() - 1 : static_cast<std::size_t>(form - forms.begin());
}

bool servesOneNumber(const std::string& localisation, std::size_t form)
{
    int numbers = 0;
    for (std::int64_t n = 0; n <= 200; ++n) {
        numbers += formWanted(localisation, n) == form ? 1 : 0;
    }
    return numbers == 1;
}

} // namespace roost::test
