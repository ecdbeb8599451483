#pragma once

#include <string>
#include <vector>

namespace roost::test {

/// Path data in a box of about 24 x 24 units that every renderer of SVG must draw in the same way: each
/// command in both cases, once and repeated, after each kind of predecessor, and every combination of an
/// arc's flags.
std::vector<std::string> writtenPaths();

/// That many paths of random commands, numbers and ways to write them; always the same.
std::vector<std::string> randomPaths(int count);

} // namespace roost::test
