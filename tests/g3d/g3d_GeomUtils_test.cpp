#include "g3d_GeomUtils.h"

#include "g3d_Plane.h"
#include "g3d_Ray.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>
#include <utility>

namespace {

using Utils = g3d_GeomUtils;
using Polygon = Utils::Polygon;
__extension__ typedef __int128 Wide;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();
const Polygon kClosedSquare{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 0}};

TEST(GeomUtils, ComparesPointsWithinTolerances) {
    EXPECT_TRUE(Utils::EqualPoint({1, 2, 3}, {1.5F, 1.5F, 3.5F}, 0.5));
    EXPECT_FALSE(Utils::EqualPoint({1, 2, 3}, {1, 2, 3.5F}, 0.4999));
    EXPECT_TRUE(Utils::EqualPoint({2, 4, kInf, 2}, {1, 2, kInf}, 0));
    EXPECT_FALSE(Utils::EqualPoint({kNaN, 0, 0}, {kNaN, 0, 0}, 1));
    EXPECT_TRUE(Utils::PointsCollinear({0, 0, 0}, {1, 0, 0}, {2, 1e-6F, 0}));
    EXPECT_FALSE(Utils::PointsCollinear({0, 0, 0}, {1, 0, 0}, {2, 2e-5F, 0}));
    EXPECT_FALSE(Utils::PointsCollinear({kNaN, 0, 0}, {1, 0, 0}, {2, 0, 0}));
    const g3d_Plane plane({0, 0, 1}, {0, 0, -10});  // distances, whatever the normal's length
    EXPECT_TRUE(Utils::PointInPlane(plane, {5, 6, 1.5F}, 0.5));
    EXPECT_FALSE(Utils::PointInPlane(plane, {5, 6, 1.5F}, 0.4999));
    EXPECT_FALSE(Utils::PointInPlane({{0, 0, 1}, {0, 0, 0}}, {0, 0, 1}, 1));
    EXPECT_FALSE(Utils::PointInPlane({{0, 0, 1}, {kInf, 0, 0}}, {1, 0, 1}, 1));
}

TEST(GeomUtils, MeetsLinesWithPlanesPointsAndLines) {
    const g3d_Point none;
    g3d_Point p, q(9, 9, 9);
    const g3d_Plane plane({0, 0, 2}, {0, 0, 3});
    EXPECT_TRUE(Utils::LinePlaneIntersection({{1, 1, 4}, {1, 0, 1}}, plane, p));
    EXPECT_EQ(p, g3d_Point(-1, 1, 2));
    for (const g3d_Vector direction : {g3d_Vector(1, 0, 0), g3d_Vector(), g3d_Vector(0, 0, kNaN)}) {
        EXPECT_FALSE(Utils::LinePlaneIntersection({{1, 1, 2}, direction}, plane, p));
        EXPECT_EQ(std::exchange(p, q), none);
    }
    const g3d_Ray line({0, 0, 1}, {2, 0, 0});
    EXPECT_TRUE(Utils::LinePointIntersection(line, {-3, 4, 1}, 4, p));
    EXPECT_EQ(p, g3d_Point(-3, 0, 1));
    EXPECT_FALSE(Utils::LinePointIntersection(line, {-3, 4, 1}, 3.999, p));
    EXPECT_EQ(p, g3d_Point(-3, 0, 1));
    EXPECT_FALSE(Utils::LinePointIntersection({{0, 0, 1}, {0, 0, 0}}, {0, 0, 1}, 1, p));
    EXPECT_EQ(p, none);

    EXPECT_TRUE(Utils::LineLineIntersection(line, {{5, 7, 4}, {0, -1, 0}}, 3, p, q));
    EXPECT_EQ(p, g3d_Point(5, 0, 1));
    EXPECT_EQ(q, g3d_Point(5, 0, 4));
    EXPECT_FALSE(Utils::LineLineIntersection(line, {{5, 7, 4}, {0, -1, 0}}, 2.999, p, q));
    // Parallel only if exactly so: the least float makes a difference.
    EXPECT_TRUE(Utils::LineLineIntersection(line, {{0, 0, 1}, {2, 1e-45F, 0}}, 0, p, q));
    EXPECT_EQ(p, g3d_Point(0, 0, 1));
    EXPECT_FALSE(Utils::LineLineIntersection(line, {{0, 0, 1}, {-0.1F, 0, 0}}, 1, p, q));
    EXPECT_EQ(p, none);
    EXPECT_EQ(q, none);
}

TEST(GeomUtils, MeetsALineWithATriangle) {
    const g3d_Point a(0, 0, 5), b(4, 0, 5), c(0, 4, 7);
    const g3d_Vector up(0, 0, 1);
    g3d_Point p;
    double parameter = 0;
    EXPECT_TRUE(Utils::LineTriIntersection({{1, 1, 0}, up * 2}, a, b, c, p, &parameter));
    EXPECT_EQ(p, g3d_Point(1, 1, 5.5F));
    EXPECT_EQ(parameter, 2.75);
    EXPECT_TRUE(Utils::LineTriIntersection({{1, 1, 9}, up}, b, a, c, p, &parameter));
    EXPECT_EQ(parameter, -3.5);  // behind the origin, from the other side
    EXPECT_FALSE(Utils::LineTriIntersection({{3, 3, 0}, up}, a, b, c, p));
    EXPECT_EQ(p, g3d_Point());
    EXPECT_FALSE(Utils::LineTriIntersection({{0, 1, 5.5F}, {4, 0, 0}}, a, {4, 4, 7}, c, p));
    EXPECT_FALSE(Utils::LineTriIntersection({{0, 0, 0}, up}, a, a, c, p));
    EXPECT_FALSE(Utils::LineTriIntersection({{1, 1, 0}, {0, 0, 0}}, a, b, c, p));
    EXPECT_FALSE(Utils::LineTriIntersection({{kNaN, 1, 0}, up}, a, b, c, p));
    EXPECT_FALSE(Utils::LineTriIntersection({{1, 1, 0}, up}, a, b, {0, 4, kInf}, p));
}

TEST(GeomUtils, HitsASheetOnceAtSharedEdgesAndVertices) {
    constexpr int n = 12;  // bumpy quads along a side, each of two triangles wound as it happens
    std::mt19937 random(3);
    std::uniform_real_distribution<float> jitter(-0.15F, 0.15F);
    for (int round = 0; round < 6; ++round) {
        const bool isExact = round < 2;  // integers: lines meet vertices and edges exactly
        const float scale = isExact ? 1.0F : std::ldexp(1.1F, 6 * round - 20);
        const auto turn = [&](float x, float y, float z) {
            return round % 2 == 0 ? g3d_Vector(x, y, z) * scale : g3d_Vector(x, -z, y) * scale;
        };
        g3d_Point sheet[n + 1][n + 1];
        for (int i = 0; i <= n; ++i) {
            for (int j = 0; j <= n; ++j) {
                const float bump = isExact ? static_cast<float>(i * j % 3) : jitter(random);
                const float shift = isExact ? 0 : jitter(random);
                const g3d_Vector v =
                    turn(static_cast<float>(i) + shift, static_cast<float>(j) - shift, bump);
                sheet[i][j] = {v.x, v.y, v.z};
            }
        }
        const g3d_Vector direction = isExact ? turn(0, 0, 3) : turn(0.1F, -0.1F, 3);
        const auto check = [&](const g3d_Point& p, const g3d_Point& q) {
            const g3d_Point aim((p.x + q.x) / 2, (p.y + q.y) / 2, (p.z + q.z) / 2);
            const g3d_Ray ray({aim.x + direction.x, aim.y + direction.y, aim.z + direction.z},
                              direction);
            int hits = 0;
            const auto tryTriangle = [&](const auto& a, const auto& b, const auto& c) {
                g3d_Point at;
                if (Utils::LineTriIntersection(ray, a, b, c, at)) {
                    ++hits;
                    EXPECT_TRUE(Utils::EqualPoint(at, aim, 1e-5F * scale));
                }
            };
            for (int quad = 0; quad < n * n; ++quad) {
                const int i = quad / n, j = quad % n, turned = quad % 2;
                tryTriangle(sheet[i][j], sheet[i + 1][j], sheet[i + 1][j + 1]);
                tryTriangle(sheet[i + turned][j + turned], sheet[i + 1 - turned][j + 1 - turned],
                            sheet[i][j + 1]);
            }
            EXPECT_EQ(hits, 1) << "round " << round << " at " << aim.x << ", " << aim.y;
        };
        for (int quad = n; quad < n * n - n; ++quad) {
            const int i = quad / n, j = std::max(1, quad % n);
            check(sheet[i][j], sheet[i][j]);
            check(sheet[i][j], sheet[i + 1][j]);
            check(sheet[i][j], sheet[i][j + 1]);
            check(sheet[i][j], sheet[i + 1][j + 1]);
        }
    }
}

TEST(GeomUtils, RangeIsThatOfTheFiniteVertices) {
    g3d_Point low, high;
    EXPECT_TRUE(Utils::RangeOfPolygon(
        {{3, -1, 5}, {kNaN, 0, 0}, {4, 4, 8, 2}, {-kInf, 9, 9}, {0, 0, 7}}, low, high));
    EXPECT_EQ(low, g3d_Point(0, -1, 4));
    EXPECT_EQ(high, g3d_Point(3, 2, 7));
    EXPECT_FALSE(Utils::RangeOfPolygon({{kNaN, 0, 0}}, low, high));
    EXPECT_EQ(low, g3d_Point());
    EXPECT_EQ(high, g3d_Point());
}

Wide Turn(const g3d_Point& a, const g3d_Point& b, const g3d_Point& c) {
    const auto whole = [](float value) { return static_cast<Wide>(value); };
    return (whole(b.x) - whole(a.x)) * (whole(c.y) - whole(a.y)) -
           (whole(b.y) - whole(a.y)) * (whole(c.x) - whole(a.x));
}

bool IsBetween(const g3d_Point& a, const g3d_Point& b, const g3d_Point& p) {
    return Turn(a, b, p) == 0 && std::min(a.x, b.x) <= p.x && p.x <= std::max(a.x, b.x) &&
           std::min(a.y, b.y) <= p.y && p.y <= std::max(a.y, b.y);
}

// In whole numbers: proper crossings, and any end on the other segment.
bool SegmentsMeet(const g3d_Point& a, const g3d_Point& b, const g3d_Point& c, const g3d_Point& d) {
    const auto split = [](Wide one, Wide other) {
        return (one < 0 && other > 0) || (one > 0 && other < 0);
    };
    return (split(Turn(a, b, c), Turn(a, b, d)) && split(Turn(c, d, a), Turn(c, d, b))) ||
           IsBetween(a, b, c) || IsBetween(a, b, d) || IsBetween(c, d, a) || IsBetween(c, d, b);
}

// Edges that pass on the right, from below p to its level or above or back; p on an edge counts if
// that leads upward.
bool IsInside(const Polygon& polygon, const g3d_Point& p) {
    int passes = 0;
    for (int i = 0; i < polygon.Length(); ++i) {
        const g3d_Point& a = polygon[i];
        const g3d_Point& b = polygon[(i + 1) % polygon.Length()];
        passes += a.y < p.y && b.y >= p.y && Turn(a, b, p) >= 0 ? 1 : 0;
        passes += b.y < p.y && a.y >= p.y && Turn(a, b, p) < 0 ? 1 : 0;
    }
    return passes % 2 != 0;
}

TEST(GeomUtils, ClassifiesSegmentsAndOutlinesExactly) {
    std::mt19937 random(11);
    const auto makePoint = [&](int round) {
        // Small grids are full of touching and overlapping; wide ranges need exact arithmetic.
        const auto coordinate = [&] {
            const float small = static_cast<float>(random() % 7) - 3;
            const float wide = static_cast<float>(random() % 9 + 8388600) * small;
            return round % 2 == 0 ? small : std::ldexp(wide, static_cast<int>(random() % 2) * 24);
        };
        const float x = coordinate();
        return g3d_Point(x, coordinate(), 9, 2);
    };
    int seen[4] = {};
    for (int round = 0; round < 6000; ++round) {
        Polygon polygon;
        for (auto i = random() % 9; i > 0; --i) {
            polygon.Append(makePoint(round));
        }
        const g3d_Point p = makePoint(round), q = makePoint(round), r = makePoint(round);
        const auto crosses = [&](const g3d_Point& from, const g3d_Point& to) {
            int i = 0;
            while (i + 1 < polygon.Length() &&
                   !SegmentsMeet(from, to, polygon[i], polygon[i + 1])) {
                ++i;
            }
            return i + 1 < polygon.Length();
        };
        const int uncut = IsInside(polygon, p) ? 0 : 3;
        ASSERT_EQ(Utils::PointInPolygon2D(polygon, p), uncut == 0) << round;
        const int result = Utils::IntersectLinePolygon2D(polygon, p, q);
        ASSERT_EQ(result, crosses(p, q) ? 1 : uncut) << round;
        ASSERT_EQ(Utils::IntersectPolygonPolygon2D(polygon, {p, q, r}),
                  crosses(p, q) || crosses(q, r) ? 1 : uncut);
        ++seen[result];
    }
    EXPECT_GT(seen[0], 100);
    EXPECT_GT(seen[3], 100);
}

TEST(GeomUtils, TheBoxDecidesFirstAndTheClosingEdgeIsNotTested) {
    const Polygon open{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    const g3d_Point in(0.5F, 0.5F, 0), out(-0.5F, 0.5F, 0), low(0, 0, 0), high(1, 1, 0);
    EXPECT_EQ(Utils::IntersectLinePolygon2D(open, in, out), 0);
    EXPECT_EQ(Utils::IntersectLinePolygon2D(open, out, in), 3);
    EXPECT_EQ(Utils::IntersectLinePolygon2D(kClosedSquare, in, out), 1);
    const g3d_Point left(-1, 0.2F, 0), border(0, 2, 0);
    Polygon points{in};
    cow_1DArrayList<Polygon> pieces{points};
    EXPECT_EQ(Utils::IntersectLinePolygon2D({}, left, out, &low, &high), 2);
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D({}, {left, out}, &low, &high), 2);
    EXPECT_EQ(Utils::ClipLinePolygon2D({}, left, out, &low, &high, points), 2);
    EXPECT_EQ(Utils::ClipPolylinePolygon2D({}, {left, out}, &low, &high, pieces), 2);
    EXPECT_TRUE(points.IsEmpty() && pieces.IsEmpty());
    EXPECT_EQ(Utils::IntersectLinePolygon2D(kClosedSquare, left, out, &low, nullptr), 3);
    EXPECT_EQ(Utils::IntersectLinePolygon2D(kClosedSquare, left, border, &low, &high), 3);
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(kClosedSquare, {}, &low, &high), 3);
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(kClosedSquare, {in}), 0);
    EXPECT_EQ(Utils::IntersectLinePolygon2D({{0, 0, 0}, {kNaN, 1, 0}, {kInf, 2, 0}}, in, out), 3);
    EXPECT_EQ(Utils::IntersectLinePolygon2D(kClosedSquare, in, {kNaN, 0, 0}), 0);
}

g3d_Point OnCircle(double radius, double turns) {
    const double angle = 2 * std::numbers::pi * turns;
    return {static_cast<float>(radius * std::cos(angle)),
            static_cast<float>(radius * std::sin(angle)), 0};
}

TEST(GeomUtils, ManagesAMillionVertices) {
    constexpr int million = 1000000;
    Polygon inner, outer, comb;
    for (int i = 0; i <= million; ++i) {
        inner.Append(OnCircle(1, i % million / 1e6));
        outer.Append(OnCircle(1.00001, i % million / 1e6));
        comb.Append({static_cast<float>(i), i % 2 == 0 ? 2.0F : -2.0F, 0});
    }
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(outer, inner), 0);
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(inner, outer), 3);
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(outer, comb), 1);
    Polygon spikes, spikesBetween;  // the boxes around them overlap by the thousand
    for (int i = 0; i < 100000; ++i) {
        for (int k = 0; k < 3; ++k) {  // there and back
            spikes.Append(OnCircle(k == 1 ? 1 : 0.5, i / 1e5));
            spikesBetween.Append(OnCircle(k == 1 ? 0.6 : 1.1, (i + 0.5) / 1e5));
        }
    }
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(spikes, spikesBetween), 3);
    Polygon scribble, scribbleBeside;  // long edges in all directions
    std::mt19937 random(8);
    std::uniform_real_distribution<float> unit(0, 1);
    for (int i = 0; i < million; ++i) {
        scribble.Append({unit(random), unit(random), 0});
        scribbleBeside.Append({unit(random) + 1.001F, unit(random), 0});
    }
    EXPECT_EQ(Utils::IntersectPolygonPolygon2D(scribble, scribbleBeside), 3);

    comb.Append({million, 5, 0});
    comb.Append({0, 5, 0});
    comb.Append(g3d_Point(comb[0]));
    Polygon points;
    cow_1DArrayList<Polygon> pieces;
    const g3d_Point p(-1, 0, 0), q(million + 1, 0, 0);  // through all teeth
    EXPECT_EQ(Utils::ClipLinePolygon2D(comb, p, q, nullptr, nullptr, points), 1);
    EXPECT_EQ(points.Length(), million);
    EXPECT_EQ(Utils::ClipPolylinePolygon2D(comb, {p, q}, nullptr, nullptr, pieces), 1);
    EXPECT_EQ(pieces.Length(), million / 2);
}

TEST(GeomUtils, ClipsASegmentToItsPointsInOrder) {
    struct Case {
        g3d_Point p0, p1;
        g3d_ClipResultEnum answer;
        Polygon points;
    };
    const g3d_Point in(0.5F, 0.5F, 0);
    const Case cases[] = {
        {{0.25F, 0.5F, 1}, {0.75F, 0.5F, 2}, g3d_CLIP_INSIDE, {{0.25F, 0.5F, 1}, {0.75F, 0.5F, 2}}},
        {{-1, 0.5F, 0}, {3, 0.5F, 8}, g3d_CLIP_CROSSING, {{0, 0.5F, 2}, {1, 0.5F, 4}}},
        {in, {1.5F, 0.5F, 2}, g3d_CLIP_CROSSING, {in, {1, 0.5F, 1}}},
        {{1.5F, 0.5F, 2}, in, g3d_CLIP_CROSSING, {{1, 0.5F, 1}, in}},
        {{2, 0, 0}, {3, 1, 0}, g3d_CLIP_OUTSIDE, {}},
        {{-1, -1, 0}, {2, 2, 0}, g3d_CLIP_CROSSING, {{0, 0, 0}, {1, 1, 0}}},  // through corners
        {{-1, 1, 0}, {1, -1, 0}, g3d_CLIP_CROSSING, {{0, 0, 0}}},             // touches a corner
        {{1, 0.5F, 0}, in, g3d_CLIP_CROSSING, {{1, 0.5F, 0}, in}},            // starts on an edge
        {{-1, 1, 0}, {0.5F, 1, 0}, g3d_CLIP_CROSSING, {{0, 1, 0}, {0.5F, 1, 0}}},  // along one
        {in, in, g3d_CLIP_INSIDE, {in}},
        {{1, 0.5F, 3}, {1, 0.5F, 3}, g3d_CLIP_CROSSING, {{1, 0.5F, 3}}},
        {in, {kNaN, 0, 0}, g3d_CLIP_OUTSIDE, {}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        Polygon points = kClosedSquare;  // in and out may be the same
        EXPECT_EQ(Utils::ClipLinePolygon2D(points, c.p0, c.p1, nullptr, nullptr, points), c.answer);
        ASSERT_EQ(points.Length(), c.points.Length());
        for (int i = 0; i < points.Length(); ++i) {
            EXPECT_TRUE(Utils::EqualPoint(points[i], c.points[i], 1e-7)) << i;
        }
    }
}

TEST(GeomUtils, ClipsAPolylineToItsPartsInside) {
    std::mt19937 random(23);
    cow_1DArrayList<Polygon> pieces;
    const auto clip = [&](const Polygon& polygon, const Polygon& line) {
        return Utils::ClipPolylinePolygon2D(polygon, line, nullptr, nullptr, pieces);
    };
    EXPECT_EQ(clip(kClosedSquare, {{0.5F, 0.5F, 7}}), 0);
    EXPECT_EQ(pieces, cow_1DArrayList<Polygon>{Polygon({{0.5F, 0.5F, 7}})});
    EXPECT_EQ(clip(kClosedSquare, {{1.5F, 0.5F, 7}}), 3);
    EXPECT_TRUE(pieces.IsEmpty());
    EXPECT_EQ(clip(kClosedSquare, {}), 3);
    const Polygon openSquare{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}};
    EXPECT_EQ(clip(openSquare, {{0.5F, 0.5F, 0}, {-0.5F, 0.5F, 4}}), 1);
    EXPECT_EQ(pieces, cow_1DArrayList<Polygon>{Polygon({{0.5F, 0.5F, 0}, {0, 0.5F, 2}})});
    // Random stars: places on the polyline are in a piece exactly when in the polygon.
    std::uniform_real_distribution<float> unit(-1, 1);
    for (int round = 0; round < 300; ++round) {
        Polygon polygon, line;
        for (int i = 0; i < 7; ++i) {
            polygon.Append({unit(random), unit(random), 0});
        }
        if (round % 2 == 0) {  // else the closing edge cuts all the same
            polygon.Append(g3d_Point(polygon[0]));
        }
        for (int i = 0; i < 4; ++i) {  // z runs along the polyline, so that places can be found
            line.Append({unit(random), unit(random), static_cast<float>(i)});
        }
        clip(polygon, line);
        for (int k = 0; k < 60; ++k) {
            const float z = (static_cast<float>(k) + 0.37F) / 20;
            const int i = static_cast<int>(z);
            const float t = z - static_cast<float>(i);
            const g3d_Point at(std::lerp(line[i].x, line[i + 1].x, t),
                               std::lerp(line[i].y, line[i + 1].y, t), z);
            const bool isInPiece = std::any_of(pieces.begin(), pieces.end(), [&](auto& piece) {
                return piece[0].z < z && z < piece[piece.Length() - 1].z;
            });
            ASSERT_EQ(isInPiece, Utils::PointInPolygon2D(polygon, at)) << round << " " << z;
        }
    }
}

}  // namespace
