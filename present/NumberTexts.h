#pragma once

#include <unicode/numberformatter.h>

#include <cstdint>
#include <string>

namespace roost {

/// The texts of numbers in one locale, as `RoostFormat` promises them. Any thread, several at once.
class NumberTexts {
public:
    explicit NumberTexts(const std::string& locale);

    std::string compact(std::int64_t count) const;
    std::string full(std::int64_t count) const;
    std::string signedCount(std::int64_t change) const;
    std::string percent(double fraction) const;
    std::string signedPercent(double fraction) const;

private:
    icu::number::LocalizedNumberFormatter full_;
    icu::number::LocalizedNumberFormatter signed_;
    icu::number::LocalizedNumberFormatter compactWithDecimal_;
    icu::number::LocalizedNumberFormatter compactWhole_;
    icu::number::LocalizedNumberFormatter percent_;
    icu::number::LocalizedNumberFormatter signedPercent_;
};

} // namespace roost
