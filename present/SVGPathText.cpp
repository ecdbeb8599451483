#include "present/SVGPath.h"

#include <charconv>
#include <utility>

namespace roost::SVGPath {

namespace {

/// Writes elements one after another: the letter of each, then its numbers, as short as they can be and still
/// be read as the same.
class Writer {
public:
    void operator()(const VectorPath::Move& move) { write('M', move.to); }
    void operator()(const VectorPath::Line& line) { write('L', line.to); }
    void operator()(const VectorPath::Quad& quad) { write('Q', quad.control, quad.to); }
    void operator()(const VectorPath::Cubic& cubic) { write('C', cubic.control1, cubic.control2, cubic.to); }
    void operator()(const VectorPath::Close&) { text_ += 'Z'; }

    std::string text() && { return std::move(text_); }

private:
    template <class... Points>
    void write(char letter, Points... points)
    {
        text_ += letter;
        (writeNumber(points.x, points.y), ...);
    }

    void writeNumber(double x, double y)
    {
        for (const double value : {x, y}) {
            if (!isLetter(text_.back())) {
                text_ += ' ';
            }
            constexpr std::size_t longest = 32;
            char digits[longest];
            text_.append(digits, std::to_chars(digits, digits + longest, value).ptr);
        }
    }

    static bool isLetter(char c) { return c >= 'A' && c <= 'Z'; }

    std::string text_;
};

} // namespace

std::string text(const VectorPath& path)
{
    Writer writer;
    path.visit(writer);
    return std::move(writer).text();
}

} // namespace roost::SVGPath
