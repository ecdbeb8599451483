#pragma once

#include <QtNumeric>

#include <cstdint>

namespace roost {

/// Sums and differences of the service's numbers, which are small. One that does not fit into 64 bits means
/// that something is badly wrong, and no number made of it may be shown: the program ends (SIGABRT), with a
/// fatal line in the log. Any thread.
inline std::int64_t checkedSum(std::int64_t left, std::int64_t right)
{
    std::int64_t sum = 0;
    if (qAddOverflow(left, right, &sum)) {
        qFatal("integer overflow in a sum");
    }
    return sum;
}

/// `left` minus `right`.
inline std::int64_t checkedDifference(std::int64_t left, std::int64_t right)
{
    std::int64_t difference = 0;
    if (qSubOverflow(left, right, &difference)) {
        qFatal("integer overflow in a difference");
    }
    return difference;
}

} // namespace roost
