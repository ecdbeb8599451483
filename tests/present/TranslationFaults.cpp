#include "tests/present/TranslationFaults.h"

#include "present/RoostTexts.h"
#include "tests/present/PluralForms.h"

#include <set>
#include <utility>

namespace roost::test {

namespace {

using namespace std::string_view_literals;

/// Translations that are the English words: names, and words that the languages share.
const std::set<std::pair<std::string, std::string>> sameAsEnglish{
    {"es", "Total: %@"},
    {"pt-BR", "Total: %@"},
};

std::size_t count(std::string_view text, std::string_view part)
{
    std::size_t found = 0;
    for (auto at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) {
        ++found;
    }
    return found;
}

/// "." for a sentence, "…" for what goes on, nothing for a label.
std::string_view endOf(std::string_view text)
{
    for (const auto& [end, kind] :
         {std::pair{"."sv, "."sv}, std::pair{"。"sv, "."sv}, std::pair{"…"sv, "…"sv}}) {
        if (text.ends_with(end)) {
            return kind;
        }
    }
    return {};
}

std::string_view placeholderOf(Filling filling)
{
    switch (filling) {
    case Filling::nothing:
        return {};
    case Filling::text:
        return "%@";
    case Filling::count:
        return "%lld";
    }
    return {};
}

class Examination {
public:
    Examination(std::string localisation, const TranslationFile& file)
        : localisation_{std::move(localisation)},
          file_{file}
    {
    }

    std::vector<std::string> faults()
    {
        if (!file_.error.empty()) {
            report("the file", file_.error);
        }
        std::string language = localisation_;
        std::ranges::replace(language, '-', '_');
        if (file_.language != language) {
            report("the file", "is in the language \"" + file_.language + "\"");
        }
        std::set<std::string_view> seen;
        for (const TranslationEntry& entry : file_.entries) {
            if (!seen.insert(entry.key).second) {
                report(entry.key, "is there twice");
            }
            examine(entry);
        }
        for (const RoostText& text : roostTexts) {
            if (!seen.contains(text.key)) {
                report(text.key, "is missing");
            }
        }
        return faults_;
    }

private:
    void report(std::string_view key, const std::string& fault)
    {
        faults_.push_back(std::string{key} + ": " + fault);
    }

    void examine(const TranslationEntry& entry)
    {
        const auto* const text = std::ranges::find(roostTexts, entry.key, &RoostText::key);
        if (text == std::end(roostTexts) || entry.context != "Roost") {
            report(entry.key, "is not in the table");
            return;
        }
        if (!entry.state.empty()) {
            report(entry.key, "is " + entry.state);
        }
        const bool isPlural = text->filling == Filling::count;
        if (entry.isPlural != isPlural) {
            report(entry.key, isPlural ? "has no plural" : "has a plural");
        }
        const std::size_t forms = isPlural ? pluralForms().at(localisation_).size() : 1;
        if (entry.forms.size() != forms) {
            report(entry.key,
                   "has " + std::to_string(entry.forms.size()) + " forms, not " + std::to_string(forms));
        }
        for (std::size_t form = 0; form < entry.forms.size(); ++form) {
            examineWords(*text, entry.forms[form]);
            examinePlaceholders(*text, entry.forms[form], isPlural && servesOneNumber(localisation_, form));
        }
    }

    void examineWords(const RoostText& text, const std::string& words)
    {
        if (words.empty()) {
            report(text.key, "is empty");
            return;
        }
        const bool shared = text.key == "Brisken Roost" || localisation_ == "en" ||
                            sameAsEnglish.contains({localisation_, std::string{text.key}});
        if (shared != (words == text.key)) {
            report(text.key, shared ? "is unlike the English" : "is left in English");
        }
        for (const std::string_view name : {"Roost"sv, "Brisken Roost"sv, "macOS"sv, "Sonoma"sv}) {
            if (count(words, name) != count(text.key, name)) {
                report(text.key, "does not name " + std::string{name} + " as often");
            }
        }
        if (endOf(words) != endOf(text.key)) {
            report(text.key, "ends otherwise");
        }
        if (words.starts_with(' ') || words.ends_with(' ') || words.contains("  ") || words.contains('\n')) {
            report(text.key, "has blanks too many");
        }
    }

    void examinePlaceholders(const RoostText& text, const std::string& words, bool inWords)
    {
        const std::string_view placeholder = placeholderOf(text.filling);
        const std::size_t found = placeholder.empty() ? 0 : count(words, placeholder);
        if (count(words, "%") != found) {
            report(text.key, "has a placeholder that it should not");
        }
        if (!placeholder.empty() && found != 1 && !(inWords && found == 0)) {
            report(text.key, "has " + std::to_string(found) + " times " + std::string{placeholder});
        }
    }

    std::string localisation_;
    const TranslationFile& file_;
    std::vector<std::string> faults_;
};

} // namespace

std::vector<std::string> faultsOf(const std::string& localisation, const TranslationFile& file)
{
    return Examination{localisation, file}.faults();
}

} // namespace roost::test
