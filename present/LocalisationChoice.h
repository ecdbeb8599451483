#pragma once

#include <unicode/localematcher.h>

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace roost {

/// Chooses, among the localisations that there are, the one for a locale. Stays within one language and one
/// script: who reads Catalan or Traditional Chinese is given English, not Spanish or Simplified Chinese. One
/// thread at a time.
class LocalisationChoice {
public:
    /// `available` are language tags such as "de" and "pt-BR", "en" among them.
    explicit LocalisationChoice(std::vector<std::string> available);

    /// One of the available localisations; "en" where none is in the language and script of `identifier`.
    std::string localisation(std::string_view identifier) const;

private:
    std::vector<std::string> available_;
    std::optional<icu::LocaleMatcher> matcher_;
};

} // namespace roost
