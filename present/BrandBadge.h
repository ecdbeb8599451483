#pragma once

#include "present/VectorPath.h"

#include <optional>
#include <string>
#include <string_view>

namespace roost {

/// What stands for a platform that has no mark: a letter in a rounded square, in one colour. Lengths are in
/// the unit of the size it was made for. A plain value.
struct BrandBadge {
    /// The centre line of the frame, from (0, 0) to (size, size); half of its stroke lies outside of that.
    VectorPath frame;
    double lineWidth = 0;
    /// The letter is set in a heavy, rounded font of this size, in the middle.
    double fontSize = 0;
    /// What a reader takes for one character, upper-cased: it may be several code points, and several letters
    /// where the language has no other upper case ("ß"). UTF-8.
    std::string letter;

    bool operator==(const BrandBadge&) const = default;
};

/// The badge of a platform at that size, lettered after `label`, or after the platform's name when there is
/// no label or an empty one.
BrandBadge brandBadge(std::string_view platform, const std::optional<std::string>& label, double size);

/// The first character of `text` as readers count them (extended grapheme clusters, UAX #29), upper-cased
/// independently of any language. Bytes that are no UTF-8 count as U+FFFD. Empty for an empty text.
std::string badgeLetter(std::string_view text);

/// The outline of a square from (0, 0) to (size, size) whose corners have that radius and grow out of the
/// sides with a steadily increasing curvature instead of a jump; `radius` is at most 0.37 x `size`.
VectorPath continuousSquare(double size, double radius);

} // namespace roost
