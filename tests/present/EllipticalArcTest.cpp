#include "present/EllipticalArc.h"

#include "tests/present/PathElements.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

namespace {

using namespace roost;
using namespace roost::test;
using std::numbers::pi;

VectorPath pathOf(PathPoint from, const EllipticalArc& arc)
{
    VectorPath path;
    addArc(path, from, arc);
    return path;
}

/// The curves of an arc, each with where it begins.
struct Curve {
    PathPoint from;
    Cubic cubic;

    PathPoint at(double t) const
    {
        const double u = 1 - t;
        return u * u * u * from + 3 * u * u * t * cubic.control1 + 3 * u * t * t * cubic.control2 +
               t * t * t * cubic.to;
    }
};

std::vector<Curve> curvesOf(PathPoint from, const EllipticalArc& arc)
{
    std::vector<Curve> curves;
    for (const VectorPath::Element& element : pathOf(from, arc).elements()) {
        curves.push_back({from, std::get<Cubic>(element)});
        from = curves.back().cubic.to;
    }
    return curves;
}

double crossed(PathPoint a, PathPoint b) { return a.x * b.y - a.y * b.x; }

/// How far an arc turns about `centre`, in radians; positive where angles grow.
double turnOf(const std::vector<Curve>& curves, PathPoint centre)
{
    constexpr int steps = 64;
    double turn = 0;
    for (const Curve& curve : curves) {
        for (int step = 0; step < steps; ++step) {
            const PathPoint a = curve.at(static_cast<double>(step) / steps) - centre;
            const PathPoint b = curve.at(static_cast<double>(step + 1) / steps) - centre;
            turn += std::atan2(crossed(a, b), a.x * b.x + a.y * b.y);
        }
    }
    return turn;
}

/// 1 on the ellipse with these half axes and this rotation, in degrees, about the origin.
double onEllipse(PathPoint p, double rx, double ry, double degrees)
{
    const double phi = degrees * pi / 180;
    return std::hypot((p.x * std::cos(phi) + p.y * std::sin(phi)) / rx,
                      (p.y * std::cos(phi) - p.x * std::sin(phi)) / ry);
}

/// The best that a cubic curve does on a quarter of a circle.
constexpr double flaw = 3e-4;

TEST(EllipticalArc, DrawsNothingWhereItBegins)
{
    EXPECT_TRUE(pathOf({3, 4}, {.rx = 5, .ry = 6, .large = true, .to = {3, 4}}).isEmpty());
}

TEST(EllipticalArc, IsALineWhenARadiusIsZero)
{
    EXPECT_EQ(pathOf({3, 4}, {.rx = 0, .ry = 6, .to = {5, 6}}).elements(), (Elements{Line{{5, 6}}}));
    EXPECT_EQ(pathOf({3, 4}, {.rx = 6, .ry = 0, .to = {5, 6}}).elements(), (Elements{Line{{5, 6}}}));
    EXPECT_EQ(pathOf({3, 4}, {.rx = -0.0, .ry = 1, .to = {5, 6}}).elements(), (Elements{Line{{5, 6}}}));
}

TEST(EllipticalArc, TakesRadiiAsMagnitudes)
{
    const EllipticalArc arc{.rx = 5, .ry = 3, .rotation = 20, .sweep = true, .to = {2, 1}};
    EllipticalArc negative = arc;
    negative.rx = -5;
    negative.ry = -3;
    EXPECT_EQ(pathOf({0, 0}, negative), pathOf({0, 0}, arc));
}

TEST(EllipticalArc, DrawsAQuarterOfACircleAsOneCurve)
{
    const auto curves = curvesOf({1, 0}, {.rx = 1, .ry = 1, .sweep = true, .to = {0, 1}});
    ASSERT_EQ(curves.size(), 1U);
    const double handle = 4.0 / 3 * (std::sqrt(2.0) - 1);
    EXPECT_NEAR(curves[0].cubic.control1.x, 1, 1e-12);
    EXPECT_NEAR(curves[0].cubic.control1.y, handle, 1e-12);
    EXPECT_NEAR(curves[0].cubic.control2.x, handle, 1e-12);
    EXPECT_NEAR(curves[0].cubic.control2.y, 1, 1e-12);
    EXPECT_EQ(curves[0].cubic.to, (PathPoint{0, 1}));
}

TEST(EllipticalArc, DrawsHalfACircleAsTwoCurves)
{
    EXPECT_EQ(curvesOf({1, 0}, {.rx = 1, .ry = 1, .sweep = true, .to = {-1, 0}}).size(), 2U);
}

TEST(EllipticalArc, GoesTheWayThatItsFlagsSay)
{
    // From (1, 0) to (0, 1) there are a quarter and three quarters of two circles, about (0, 0) and (1, 1).
    const auto turn = [](bool large, bool sweep, PathPoint centre) {
        const auto curves =
            curvesOf({1, 0}, {.rx = 1, .ry = 1, .large = large, .sweep = sweep, .to = {0, 1}});
        for (const Curve& curve : curves) {
            EXPECT_NEAR(onEllipse(curve.at(0.3) - centre, 1, 1, 0), 1, flaw);
        }
        return turnOf(curves, centre);
    };
    EXPECT_NEAR(turn(false, true, {0, 0}), pi / 2, 1e-9);
    EXPECT_NEAR(turn(true, false, {0, 0}), -3 * pi / 2, 1e-9);
    EXPECT_NEAR(turn(false, false, {1, 1}), -pi / 2, 1e-9);
    EXPECT_NEAR(turn(true, true, {1, 1}), 3 * pi / 2, 1e-9);
}

TEST(EllipticalArc, ScalesRadiiUpUntilTheyReach)
{
    const auto curves = curvesOf({-4, 0}, {.rx = 1, .ry = 0.5, .sweep = true, .to = {4, 0}});
    ASSERT_EQ(curves.size(), 2U);
    EXPECT_NEAR(curves[0].cubic.to.x, 0, 1e-9);
    EXPECT_NEAR(curves[0].cubic.to.y, -2, 1e-9);
    EXPECT_NEAR(turnOf(curves, {0, 0}), pi, 1e-6);
}

TEST(EllipticalArc, EndsExactlyWhereItWasTold)
{
    const PathPoint to{0.1, 1e9 / 7};
    EXPECT_EQ(curvesOf({1.0 / 3, 7}, {.rx = 1.7, .ry = 3.1, .rotation = 77, .to = to}).back().cubic.to, to);
}

TEST(EllipticalArc, LiesOnItsEllipse)
{
    std::mt19937_64 random{6};
    const auto between = [&random](double least, double most) {
        return std::uniform_real_distribution{least, most}(random);
    };
    for (int round = 0; round < 2000; ++round) {
        const double rx = between(0.1, 20);
        const double ry = between(0.1, 20);
        const double rotation = between(-400, 400);
        const double start = between(-pi, pi);
        const double sweep = between(0.05, 2 * pi - 0.05) * (round % 2 == 0 ? 1 : -1);
        const auto at = [&](double angle) -> PathPoint {
            const double phi = rotation * pi / 180;
            const double x = rx * std::cos(angle);
            const double y = ry * std::sin(angle);
            return {x * std::cos(phi) - y * std::sin(phi), x * std::sin(phi) + y * std::cos(phi)};
        };
        const auto curves = curvesOf(at(start), {.rx = rx,
                                                 .ry = ry,
                                                 .rotation = rotation,
                                                 .large = std::abs(sweep) > pi,
                                                 .sweep = sweep > 0,
                                                 .to = at(start + sweep)});
        ASSERT_NEAR(turnOf(curves, {0, 0}) > 0 ? 1 : -1, sweep > 0 ? 1 : -1, 0.5) << round;
        ASSERT_EQ(curves.size(), static_cast<std::size_t>(std::ceil(std::abs(sweep) / (pi / 2)))) << round;
        for (std::size_t i = 0; i < curves.size(); ++i) {
            for (const double t : {0.0, 0.25, 0.5, 0.75, 1.0}) {
                ASSERT_NEAR(onEllipse(curves[i].at(t), rx, ry, rotation), 1, flaw) << round;
            }
            const double angle =
                start + sweep * static_cast<double>(i + 1) / static_cast<double>(curves.size());
            const PathPoint apart = curves[i].cubic.to - at(angle);
            ASSERT_LT(std::hypot(apart.x, apart.y), 1e-4) << round;
        }
    }
}

TEST(EllipticalArc, IsALineWhenItsEllipseCannotBeFound)
{
    constexpr double huge = std::numeric_limits<double>::max();
    constexpr double tiny = std::numeric_limits<double>::denorm_min();
    for (const EllipticalArc& arc : {EllipticalArc{.rx = huge, .ry = huge, .to = {1, 1}},
                                     EllipticalArc{.rx = tiny, .ry = tiny, .to = {1, 1}},
                                     EllipticalArc{.rx = 1, .ry = 1, .to = {huge, -huge}},
                                     EllipticalArc{.rx = 1, .ry = 1, .to = {tiny, 0}},
                                     EllipticalArc{.rx = huge, .ry = tiny, .rotation = huge, .to = {3, 1}}}) {
        EXPECT_EQ(pathOf({0, 0}, arc).elements(), (Elements{Line{arc.to}})) << arc.rx << ' ' << arc.to.x;
    }
}

} // namespace
