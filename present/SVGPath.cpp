#include "present/SVGPath.h"

#include "present/EllipticalArc.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <system_error>
#include <utility>

namespace roost::SVGPath {

namespace {

constexpr std::string_view commands = "MmLlHhVvCcSsQqTtAaZz";

bool isDigit(char c) { return c >= '0' && c <= '9'; }
bool isSign(char c) { return c == '+' || c == '-'; }
bool isSeparator(char c) { return c == ' ' || c == ',' || c == '\n' || c == '\t'; }
bool isCommand(char c) { return commands.find(c) != std::string_view::npos; }
bool isRelative(char command) { return command >= 'a'; }

/// The command that repeats when only arguments follow: further pairs after a move are lines.
char repeated(char command)
{
    switch (command) {
    case 'M':
        return 'L';
    case 'm':
        return 'l';
    default:
        return command;
    }
}

/// Of a well-formed number that no double can hold: whether it is too large, rather than too small.
bool isTooLarge(std::string_view text)
{
    const std::size_t exponentAt = std::min(text.find_first_of("eE"), text.size());
    std::string_view exponent = text.substr(std::min(exponentAt + 1, text.size()));
    exponent.remove_prefix(exponent.starts_with('+') ? 1 : 0);
    std::int64_t shift = 0;
    const auto [end, error] = std::from_chars(exponent.data(), exponent.data() + exponent.size(), shift);
    if (error == std::errc::result_out_of_range) {
        return !exponent.starts_with('-');
    }
    const std::size_t point = std::min(text.find('.'), exponentAt);
    const std::size_t first = text.find_first_of("123456789");
    return shift > static_cast<std::int64_t>(first) - static_cast<std::int64_t>(point);
}

/// The double nearest to a well-formed `text`; 0 where that is too small, nothing where it is too large.
std::optional<double> converted(std::string_view text)
{
    text.remove_prefix(text.starts_with('+') ? 1 : 0); // std::from_chars takes none.
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range) {
        return isTooLarge(text) ? std::nullopt : std::optional{0.0};
    }
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

} // namespace

VectorPath Parser::run()
{
    std::optional<char> command;
    skipSeparators();
    while (index_ < scalars_.size()) {
        if (isCommand(scalars_[index_])) {
            command = scalars_[index_++];
            if (command == 'Z' || command == 'z') {
                closeSubpath();
                skipSeparators();
                continue;
            }
        }
        if (!command || !apply(*command)) {
            break;
        }
        command = repeated(*command);
        skipSeparators();
    }
    return std::exchange(path_, {});
}

void Parser::skipSeparators()
{
    while (index_ < scalars_.size() && isSeparator(scalars_[index_])) {
        ++index_;
    }
}

bool Parser::skipDigits()
{
    const std::size_t start = index_;
    while (index_ < scalars_.size() && isDigit(scalars_[index_])) {
        ++index_;
    }
    return index_ > start;
}

std::optional<double> Parser::number()
{
    const auto at = [this](auto predicate) {
        return index_ < scalars_.size() && predicate(scalars_[index_]);
    };
    const auto isPoint = [](char c) { return c == '.'; };
    const auto isExponent = [](char c) { return c == 'e' || c == 'E'; };

    skipSeparators();
    const std::size_t start = index_;
    index_ += at(isSign) ? 1U : 0U;
    bool hasDigits = skipDigits();
    if (at(isPoint)) {
        ++index_;
        hasDigits = skipDigits() || hasDigits;
    }
    if (hasDigits && at(isExponent)) {
        ++index_;
        index_ += at(isSign) ? 1U : 0U;
        skipDigits(); // An exponent without digits belongs to the number all the same, which is none then.
    }
    const auto value = hasDigits ? converted(scalars_.substr(start, index_ - start)) : std::nullopt;
    if (!value) {
        index_ = start;
    }
    return value;
}

std::optional<bool> Parser::flag()
{
    skipSeparators();
    if (index_ == scalars_.size() || (scalars_[index_] != '0' && scalars_[index_] != '1')) {
        return std::nullopt;
    }
    return scalars_[index_++] == '1';
}

template <std::size_t count>
std::optional<std::array<PathPoint, count>> Parser::points(PathPoint base)
{
    std::array<PathPoint, count> all;
    for (PathPoint& point : all) {
        const auto x = number();
        const auto y = x ? number() : std::nullopt;
        if (!y) {
            return std::nullopt;
        }
        point = base + PathPoint{*x, *y};
    }
    return all;
}

bool Parser::apply(char command)
{
    const PathPoint base = isRelative(command) ? current_ : PathPoint{};
    switch (command) {
    case 'M':
    case 'm':
        if (const auto p = points<1>(base)) {
            forgetControls();
            current_ = subpathStart_ = p->front();
            path_.move(current_);
            return true;
        }
        return false;
    case 'L':
    case 'l':
        if (const auto p = points<1>(base)) {
            lineTo(p->front());
            return true;
        }
        return false;
    case 'H':
    case 'h':
        if (const auto x = number()) {
            lineTo({base.x + *x, current_.y});
            return true;
        }
        return false;
    case 'V':
    case 'v':
        if (const auto y = number()) {
            lineTo({current_.x, base.y + *y});
            return true;
        }
        return false;
    case 'C':
    case 'c':
        if (const auto p = points<3>(base)) {
            cubicTo((*p)[0], (*p)[1], (*p)[2]);
            return true;
        }
        return false;
    case 'S':
    case 's':
        if (const auto p = points<2>(base)) {
            cubicTo(reflected(lastCubicControl_), (*p)[0], (*p)[1]);
            return true;
        }
        return false;
    case 'Q':
    case 'q':
        if (const auto p = points<2>(base)) {
            quadTo((*p)[0], (*p)[1]);
            return true;
        }
        return false;
    case 'T':
    case 't':
        if (const auto p = points<1>(base)) {
            quadTo(reflected(lastQuadControl_), p->front());
            return true;
        }
        return false;
    case 'A':
    case 'a':
        return applyArc(base);
    default:
        return false; // After a close there is nothing to repeat.
    }
}

bool Parser::applyArc(PathPoint base)
{
    EllipticalArc arc;
    for (double* part : {&arc.rx, &arc.ry, &arc.rotation}) {
        const auto value = number();
        if (!value) {
            return false;
        }
        *part = *value;
    }
    for (bool* part : {&arc.large, &arc.sweep}) {
        const auto value = flag();
        if (!value) {
            return false;
        }
        *part = *value;
    }
    const auto to = points<1>(base);
    if (!to) {
        return false;
    }
    arc.to = to->front();
    addArc(path_, current_, arc);
    forgetControls();
    current_ = arc.to;
    return true;
}

void Parser::lineTo(PathPoint to)
{
    path_.line(to);
    forgetControls();
    current_ = to;
}

void Parser::quadTo(PathPoint control, PathPoint to)
{
    path_.quad(control, to);
    forgetControls();
    lastQuadControl_ = control;
    current_ = to;
}

void Parser::cubicTo(PathPoint control1, PathPoint control2, PathPoint to)
{
    path_.cubic(control1, control2, to);
    forgetControls();
    lastCubicControl_ = control2;
    current_ = to;
}

void Parser::closeSubpath()
{
    path_.close();
    forgetControls();
    current_ = subpathStart_;
}

void Parser::forgetControls()
{
    lastCubicControl_.reset();
    lastQuadControl_.reset();
}

PathPoint Parser::reflected(const std::optional<PathPoint>& control) const
{
    return control ? 2 * current_ - *control : current_;
}

} // namespace roost::SVGPath
