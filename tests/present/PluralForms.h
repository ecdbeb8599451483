#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace roost::test {

/// The plural categories whose forms the catalogues hold, in the order of the file, by localisation. They are
/// CLDR's for whole numbers, but for two that Qt does not know: "two" of Hebrew, whose words are those of
/// "other" beside a digit, and "many" of French, Italian, Portuguese and Spanish, which is for whole millions
/// before a noun.
const std::map<std::string, std::vector<std::string>>& pluralForms();

/// Which of those forms CLDR, as ICU has it, wants for `n`.
std::size_t formWanted(const std::string& localisation, std::int64_t n);

/// Whether a form is for one number alone, which it may then say in words.
bool servesOneNumber(const std::string& localisation, std::size_t form);

} // namespace roost::test
