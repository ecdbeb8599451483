#pragma once

#include "tests/present/TranslationFile.h"

#include <string>
#include <vector>

namespace roost::test {

/// What is wrong with a catalogue, one sentence each: texts that are missing, empty, unfinished, left in
/// English or not in the table, plural forms and placeholders that are missing or wrong, names that were
/// translated, an end or blanks unlike those of the key.
std::vector<std::string> faultsOf(const std::string& localisation, const TranslationFile& file);

} // namespace roost::test
