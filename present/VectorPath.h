#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>
#include <vector>

namespace roost {

/// A point, or the way from the origin to it, in the units of its path. The y axis points down.
struct PathPoint {
    double x = 0;
    double y = 0;

    bool operator==(const PathPoint&) const = default;
};

constexpr PathPoint operator+(PathPoint a, PathPoint b) { return {a.x + b.x, a.y + b.y}; }
constexpr PathPoint operator-(PathPoint a, PathPoint b) { return {a.x - b.x, a.y - b.y}; }
constexpr PathPoint operator*(double factor, PathPoint p) { return {factor * p.x, factor * p.y}; }

/// A rectangle by its least corner and its extent, neither of which is negative.
struct PathRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    bool operator==(const PathRect&) const = default;
};

/// An outline of lines and Bézier curves, all in absolute coordinates. What is drawn before the first move
/// begins at the origin, and what is drawn after a close begins where the closed subpath began. Areas are
/// filled by the non-zero rule. A plain value; equality is member-wise.
class VectorPath {
public:
    struct Move {
        PathPoint to;
        bool operator==(const Move&) const = default;
    };
    struct Line {
        PathPoint to;
        bool operator==(const Line&) const = default;
    };
    struct Quad {
        PathPoint control;
        PathPoint to;
        bool operator==(const Quad&) const = default;
    };
    struct Cubic {
        PathPoint control1;
        PathPoint control2;
        PathPoint to;
        bool operator==(const Cubic&) const = default;
    };
    struct Close {
        bool operator==(const Close&) const = default;
    };
    using Element = std::variant<Move, Line, Quad, Cubic, Close>;

    void move(PathPoint to) { add(Verb::move, to); }
    void line(PathPoint to) { add(Verb::line, to); }
    void quad(PathPoint control, PathPoint to) { add(Verb::quad, control, to); }
    void cubic(PathPoint control1, PathPoint control2, PathPoint to)
    {
        add(Verb::cubic, control1, control2, to);
    }
    void close() { verbs_.push_back(Verb::close); }

    bool isEmpty() const { return verbs_.empty(); }
    /// The number of elements.
    std::size_t size() const { return verbs_.size(); }

    /// Calls `visitor` with each element in order; it takes each of the five types.
    template <class Visitor>
    void visit(Visitor&& visitor) const;

    std::vector<Element> elements() const;

    /// The path made `scale` times as large about the origin, which then moves to `origin`.
    VectorPath placed(double scale, PathPoint origin) const;

    bool operator==(const VectorPath&) const = default;

private:
    enum class Verb : std::uint8_t { move, line, quad, cubic, close };

    template <class... Points>
    void add(Verb verb, Points... points)
    {
        verbs_.push_back(verb);
        (points_.push_back(points), ...);
    }

    /// The points of all elements one after another, as many of each as its verb takes.
    std::vector<PathPoint> points_;
    std::vector<Verb> verbs_;
};

template <class Visitor>
void VectorPath::visit(Visitor&& visitor) const
{
    const PathPoint* next = points_.data();
    for (const Verb verb : verbs_) {
        switch (verb) {
        case Verb::move:
            visitor(Move{next[0]});
            next += 1;
            break;
        case Verb::line:
            visitor(Line{next[0]});
            next += 1;
            break;
        case Verb::quad:
            visitor(Quad{next[0], next[1]});
            next += 2;
            break;
        case Verb::cubic:
            visitor(Cubic{next[0], next[1], next[2]});
            next += 3;
            break;
        case Verb::close:
            visitor(Close{});
            break;
        }
    }
}

} // namespace roost
