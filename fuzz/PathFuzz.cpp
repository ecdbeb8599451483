#include "fuzz/Require.h"
#include "present/SVGPath.h"

#include <cmath>
#include <string>
#include <string_view>

namespace {

using namespace roost;
using fuzz::require;

VectorPath parsed(std::string_view data) { return SVGPath::Parser{data}.run(); }

bool isFinite(const VectorPath& path)
{
    bool finite = true;
    path.visit([&finite](const auto& element) {
        const auto check = [&finite](PathPoint p) {
            finite = finite && std::isfinite(p.x) && std::isfinite(p.y);
        };
        if constexpr (requires { element.control; }) {
            check(element.control);
        }
        if constexpr (requires { element.control1; }) {
            check(element.control1);
            check(element.control2);
        }
        if constexpr (requires { element.to; }) {
            check(element.to);
        }
    });
    return finite;
}

bool isSeparator(char c) { return c == ' ' || c == ',' || c == '\n' || c == '\t'; }

/// The same data with all separators of a run after the first left out.
std::string withFewestSeparators(std::string_view data)
{
    std::string result;
    for (const char c : data) {
        if (!isSeparator(c) || result.empty() || !isSeparator(result.back())) {
            result += c;
        }
    }
    return result;
}

/// Whether the elements of `path` begin with all those of `beginning`. Compared as text, since numbers that
/// overflow can make elements that do not equal themselves.
bool beginsWith(const VectorPath& path, const VectorPath& beginning)
{
    return SVGPath::text(path).starts_with(SVGPath::text(beginning));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const char* bytes, std::size_t size)
{
    const std::string_view data{bytes, size};
    const VectorPath path = parsed(data);
    const std::string text = SVGPath::text(path);

    require(path.size() <= size, "no path has more elements than its data have characters");
    if (isFinite(path)) {
        require(parsed(text) == path, "what was written is read as the same");
        require(SVGPath::text(parsed(text)) == text, "what was read is written as the same");
    }
    require(SVGPath::text(parsed(withFewestSeparators(data))) == text, "many separators are as good as one");
    require(SVGPath::text(parsed(std::string{"\n, \t"}.append(data).append(" ,"))) == text,
            "separators around the data mean nothing");
    require(SVGPath::text(parsed(std::string{data}.append("!M1 2L3 4"))) == text,
            "what follows something that is no path data is not drawn");

    // Data that are cut where a command begins draw the beginning of what the whole draws.
    const std::size_t middle = data.find_first_of("MmLlHhVvCcSsQqTtAaZz", size / 2);
    if (middle != std::string_view::npos) {
        require(beginsWith(path, parsed(data.substr(0, middle))), "a path is drawn in the order of its data");
    }
    return 0;
}
