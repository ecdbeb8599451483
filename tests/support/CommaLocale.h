#pragma once

#include "tests/support/ScopedVariable.h"

#include <QTemporaryDir>

#include <string>

namespace roost::test {

/// Puts the process into a locale that writes numbers with a comma, as long as it lives. Made on the spot by
/// localedef, so that the machine needs no locale but its built-in one. Throws when it cannot be made.
class CommaLocale {
public:
    CommaLocale();
    ~CommaLocale();

    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;

private:
    QTemporaryDir folder_;
    ScopedVariable path_;
    std::string previous_;
};

} // namespace roost::test
