#include "g3d_BoundingVolume.h"
#include "g3d_Plane.h"
#include "g3d_Ray.h"
#include "g3d_Sphere.h"
#include "mem_ExhaustedException.h"
#include "test_Faults.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <utility>
#include <vector>

namespace {

using Points = std::vector<g3d_Point>;
using Long = long double;

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

Points VertexesOf(const g3d_BoundingVolume& volume) {
    return {volume.Vertexes(), volume.Vertexes() + volume.VertexCount()};
}

const Points kCube{{-1, -1, -1}, {-1, -1, 1}, {-1, 1, -1}, {-1, 1, 1},
                   {1, -1, -1},  {1, -1, 1},  {1, 1, -1},  {1, 1, 1}};

TEST(BoundingVolume, IsDefaultOnlyWithTheCubeInItsInlineStorage) {
    const g3d_Point extra(5, 6, 7);
    g3d_BoundingVolume volume;
    volume.AppendVertexes(&extra, 0);
    EXPECT_TRUE(volume.IsDefault());
    EXPECT_EQ(VertexesOf(volume), kCube);
    volume.AllocateVertexes(3);  // room for fewer than there are: only the storage changes
    EXPECT_FALSE(volume.IsDefault());
    EXPECT_EQ(VertexesOf(volume), kCube);
    EXPECT_FALSE(g3d_BoundingVolume(volume).IsDefault());
    volume.Reset();
    EXPECT_TRUE(volume.IsDefault());
    volume.AppendVertexes(&extra, 1);
    EXPECT_FALSE(volume.IsDefault());
    EXPECT_EQ(volume.VertexCount(), 9U);
    EXPECT_EQ(volume.Vertexes()[8], extra);
    volume.Reset();
    volume.Clear();
    EXPECT_FALSE(volume.IsDefault());
    volume.SetToRectangleBox({1, -1, 1}, {-1, 1, -1});
    EXPECT_TRUE(volume.IsDefault());
}

TEST(BoundingVolume, TakesARectangleBoxFromAnyTwoOppositeCorners) {
    struct Case {
        g3d_Point a, b, low, high;
    };
    const Case cases[] = {
        {{1, 1, 1}, {0, 0, 0}, {0, 0, 0}, {1, 1, 1}},
        {{0, 5, -2}, {3, 4, 7}, {0, 4, -2}, {3, 5, 7}},
        {{2, 4, 6, 2}, {0, 0, 0, 0}, {0, 0, 0}, {1, 2, 3}},  // 2 divides, 0 does not
        {{kNaN, 2, 3}, {1, kNaN, -3}, {1, 2, -3}, {1, 2, 3}},
    };
    for (const auto& [a, b, low, high] : cases) {
        g3d_BoundingVolume volume;
        volume.SetToRectangleBox(a, b);
        Points expected = kCube;
        for (g3d_Point& p : expected) {
            p = {p.x < 0 ? low.x : high.x, p.y < 0 ? low.y : high.y, p.z < 0 ? low.z : high.z};
        }
        EXPECT_EQ(VertexesOf(volume), expected);
        volume.SetToRectangleBox(b, a);
        EXPECT_EQ(VertexesOf(volume), expected);
    }
}

TEST(BoundingVolume, CopiesDeepAndAppendsItsOwnVertices) {
    Points model{{0, 1, 2}, {1, 1, 2}, {2, 1, 2}};
    g3d_BoundingVolume volume(model.data(), 3);
    for (int i = 0; i < 9; ++i) {  // doubles, through all growths
        volume.AppendVertexes(volume.Vertexes(), volume.VertexCount());
        const Points before = model;
        model.insert(model.end(), before.begin(), before.end());
        ASSERT_EQ(VertexesOf(volume), model);
    }
    g3d_BoundingVolume copy(volume);
    const g3d_BoundingVolume& same = copy;
    copy = same;
    EXPECT_EQ(VertexesOf(copy), model);
    copy.SetToRectangleBox({0, 0, 0}, {1, 1, 1});
    g3d_BoundingVolume moved(std::move(volume));
    EXPECT_TRUE(volume.IsDefault());  // NOLINT(bugprone-use-after-move): as promised
    copy = std::move(moved);
    EXPECT_EQ(VertexesOf(copy), model);
    copy = g3d_BoundingVolume(model.data(), 2);  // inline again
    EXPECT_EQ(VertexesOf(copy), Points(model.begin(), model.begin() + 2));
}

TEST(BoundingVolume, IsUnchangedWhenMemoryIsExhausted) {
    const Points many(1000, g3d_Point(1, 2, 3));
    const g3d_BoundingVolume large(many.data(), 1000);
    g3d_BoundingVolume volume;
    const std::function<void()> actions[] = {
        [&] { volume.AppendVertexes(many.data(), 1000); },
        [&] { volume.AllocateVertexes(1000); },
        [&] { volume = large; },
        [&] { volume.AppendVertexes(many.data(), UINT_MAX); },
    };
    for (const auto& action : actions) {
        const test_Faults faults(0, 1);
        EXPECT_THROW(action(), mem_ExhaustedException);
        EXPECT_TRUE(volume.IsDefault());
    }
}

struct Place {
    Long x, y, z;
    explicit Place(const g3d_Point& p)
        : x(Long(p.x) / p.w), y(Long(p.y) / p.w), z(Long(p.z) / p.w) {}
    Long DistanceTo(const Place& p) const { return std::hypot(x - p.x, y - p.y, z - p.z); }
};

Place FarthestFrom(const Place& center, const Points& points) {
    return Place(*std::max_element(points.begin(), points.end(), [&](auto& p, auto& q) {
        return center.DistanceTo(Place(p)) < center.DistanceTo(Place(q));
    }));
}

// The radius of the smallest sphere, to about 1e-4: M. Badoiu and K. Clarkson's iteration, which
// steps towards the farthest point by 1/i.
Long SmallestRadius(const Points& points) {
    Place center(points[0]);
    Long smallest = center.DistanceTo(FarthestFrom(center, points));
    for (int i = 2; i < 10000; ++i) {
        const Place toward = FarthestFrom(center, points);
        smallest = std::min(smallest, center.DistanceTo(toward));
        center.x += (toward.x - center.x) / i;
        center.y += (toward.y - center.y) / i;
        center.z += (toward.z - center.z) / i;
    }
    return smallest;
}

bool Holds(const g3d_Sphere& sphere, const Points& points) {
    const Place center(sphere.Center());
    return center.DistanceTo(FarthestFrom(center, points)) <= sphere.Radius();
}

g3d_Sphere ExtentOf(const Points& points) {
    g3d_Sphere sphere({1, 2, 3}, 4);
    g3d_BoundingVolume(points.data(), static_cast<unsigned>(points.size())).GetExtent(sphere);
    return sphere;
}

TEST(BoundingVolume, ExtentIsTightAroundAnySet) {
    std::mt19937 random(5);
    std::uniform_real_distribution<float> unit(-1, 1);
    std::normal_distribution<float> normal;
    const auto make = [&](int count, auto&& next) {
        Points points;
        std::generate_n(std::back_inserter(points), count, next);
        return points;
    };
    const auto onSphere = [&] {
        const float p[3] = {normal(random), normal(random), normal(random)};
        const float length = std::hypot(p[0], p[1], p[2]);
        return g3d_Point(p[0] / length + 3, p[1] / length, p[2] / length);
    };
    const Points sets[] = {
        make(60, [&] { return g3d_Point(unit(random), unit(random), unit(random)); }),
        make(60, [&] { return g3d_Point(unit(random), 7, unit(random) * 40); }),
        make(60, [t = 1.0F]() mutable { return t *= -1.1F, g3d_Point(t, 3 - t, 5 * t); }),
        make(60, onSphere),
        make(60, [&] { return g3d_Point(1e4F + unit(random), -3e4F, 1e-3F * unit(random)); }),
        make(60, [&] { return g3d_Point(1e-30F * unit(random), 1e-30F * unit(random), 0); }),
        make(60, [&] { return g3d_Point(1e37F * unit(random), 1e37F * unit(random), 1, 0.5F); }),
        make(60, [&] { return g3d_Point(std::round(unit(random)), std::round(unit(random)), 0); }),
        {{0, 0, 0}, {1, 0, 0}, {0.5F, 1e-6F, 0}, {1, 0, 0}},
    };
    for (const Points& points : sets) {
        SCOPED_TRACE(&points - sets);
        const g3d_Sphere sphere = ExtentOf(points);
        EXPECT_TRUE(Holds(sphere, points));
        EXPECT_LE(sphere.Radius(), SmallestRadius(points) * 1.0005L);

        Points spoilt = points;
        spoilt.insert(spoilt.begin(), {{kNaN, 0, 0}, {0, -kInf, 0}, {1, 1, 1, 1e-45F}});
        EXPECT_EQ(ExtentOf(spoilt), sphere);
    }
    const Points million = make(1000000, onSphere);
    const g3d_Sphere sphere = ExtentOf(million);
    EXPECT_TRUE(Holds(sphere, million));
    EXPECT_LE(sphere.Radius(), 1.0005F);
}

TEST(BoundingVolume, ExtentOfNextToNothing) {
    EXPECT_TRUE(ExtentOf({}).IsEmpty());
    EXPECT_TRUE(ExtentOf({{kNaN, 0, 0}, {0, 0, kInf}}).IsEmpty());
    EXPECT_EQ(ExtentOf({{1, 2, 3}}), g3d_Sphere({1, 2, 3}, 0));
    EXPECT_EQ(ExtentOf(Points(100, {2, 4, 6, 2})), g3d_Sphere({1, 2, 3}, 0));
    EXPECT_EQ(ExtentOf({{2, 4, 6, 0}}), g3d_Sphere({2, 4, 6}, 0));
}

TEST(Sphere, UnionEnclosesBoth) {
    struct Case {
        g3d_Sphere a, b, expected;
    };
    const g3d_Sphere empty({9, 9, 9}, -2);
    const g3d_Sphere other({8, 8, 8}, -1);
    const g3d_Sphere unit({0, 0, 0}, 1);
    const Case cases[] = {
        {unit, g3d_Sphere({2, 0, 0}, 1), g3d_Sphere({1, 0, 0}, 2)},
        {unit, empty, unit},
        {empty, unit, unit},
        {empty, other, other},
        {unit, g3d_Sphere({0.5F, 0, 0}, 0.5F), unit},  // touches from inside
        {unit, g3d_Sphere({0, 0, 0, 3}, 1), unit},     // the same sphere: the first
        {g3d_Sphere({2, 4, 6, 2}, 0), g3d_Sphere({1, 2, 7}, 1), g3d_Sphere({1, 2, 5.5F}, 2.5F)},
        {unit, g3d_Sphere({5, 0, 0}, kInf), g3d_Sphere({5, 0, 0}, kInf)},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.a + c.b, c.expected) << &c - cases;
    }
    EXPECT_EQ((g3d_Sphere({0, 0, 0}, kNaN) + unit).Radius(), 1);
}

TEST(Plane, ProjectsAlongTheRayUnlessTheyAreExactlyParallel) {
    struct Case {
        g3d_Plane plane;
        g3d_Ray ray;
        g3d_Point expected;
    };
    const Case cases[] = {
        {{{0, 0, 2}, {0, 0, 5}}, {{1, 1, 0}, {1, 0, 1}}, {3, 1, 2}},
        {{{0, 0, 2}, {0, 0, 5}}, {{1, 1, 4}, {1, 0, 1}}, {-1, 1, 2}},  // behind the origin
        {{{0, 0, 4, 2}, {0, 0, 1}}, {{2, 2, 0, 2}, {0, 0, 1}}, {1, 1, 2}},
        {{{0, 0, 2}, {0, 0, 1}}, {{1, 1, 0}, {1, 0, 0}}, {0, 0, 0, 1}},
        {{{0, 0, 2}, {0, 0, 1}}, {{1, 1, 2}, {0, 0, 0}}, {0, 0, 0, 1}},
        // The dot product underflows in float: not parallel for that.
        {{{0, 0, 2}, {0, 0, 1e-30F}}, {{1, 1, 0}, {0, 0, 1e-30F}}, {1, 1, 2}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(c.plane.Project(c.ray), c.expected) << &c - cases;
    }
}

}  // namespace
