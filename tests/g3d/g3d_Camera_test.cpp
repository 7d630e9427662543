#include "g3d_Camera.h"

#include "g3d_BoundingVolume.h"
#include "g3d_Sphere.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

using Camera = g3d_Camera;
using Real = long double;

constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr float kHuge = std::numeric_limits<float>::max();
const g3d_Vector kY(0, 1, 0);

struct Vec {
    Real x, y, z;
};
Vec operator+(Vec a, Vec b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
Vec operator*(Vec a, Real s) { return {a.x * s, a.y * s, a.z * s}; }
Vec operator-(Vec a, Vec b) { return a + b * -1; }
Real Dot(Vec a, Vec b) { return a.x * b.x + a.y * b.y + a.z * b.z; }
Vec Cross(Vec a, Vec b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}
Real Length(Vec a) { return std::sqrt(Dot(a, a)); }
Vec Unit(Vec a) { return a * (1 / Length(a)); }
Vec Of(const g3d_Point& p) { return Vec{p.x, p.y, p.z} * (1 / Real(p.w == 0 ? 1 : p.w)); }
Vec Of(const g3d_Vector& v) { return {v.x, v.y, v.z}; }

struct Axes {
    Vec x, y, z;
};

/// The view's axes by the book: z against the sight, x = up x z.
Axes LookAt(const Camera& c) {
    const Vec z = Unit(Of(c.Eye()) - Of(c.Target()));
    const Vec x = Unit(Cross(Of(c.Up()), z));
    return {x, Cross(z, x), z};
}

/// Where the fields alone say that \p p is seen: x and y in [-1, 1] of the window, z the distance
/// along the sight.
Vec Seen(const Camera& c, Vec p) {
    const Axes axes = LookAt(c);
    const Vec d = p - Of(c.Eye());
    const Real depth = -Dot(d, axes.z);
    const Real scale = c.IsPerspective() ? c.Near() / depth : 1;
    return {(Dot(d, axes.x) * scale - c.ViewOffsetX()) / c.WindowWidth() * 2,
            (Dot(d, axes.y) * scale - c.ViewOffsetY()) / c.WindowHeight() * 2, depth};
}

Vec Carried(const g3d_XForm& xform, Vec p) {
    g3d_Point point(float(p.x), float(p.y), float(p.z));
    xform.XForm(&point, 1);
    return Of(point);
}

/// Where the camera's matrices say so, in the part that the viewport shows; z in [-1, 1].
Vec Projected(const Camera& c, Vec p) {
    return Carried(c.ConstGetPM(), Carried(c.ConstGetVOM(), p));
}

/// The point of the world seen at window position (x, y) from the centre, at the target's depth.
Vec AtTarget(const Camera& c, Real x, Real y) {
    const Axes axes = LookAt(c);
    const Real scale = c.IsPerspective() ? Length(Of(c.Eye()) - Of(c.Target())) / c.Near() : 1;
    return Of(c.Target()) + axes.x * ((c.ViewOffsetX() + x) * scale) +
           axes.y * ((c.ViewOffsetY() + y) * scale);
}

/// What the matrices must make of \p p by the fields alone.
Vec Expected(const Camera& c, Vec p) {
    const Vec seen = Seen(c, p);
    const auto part = [](Real v, Real low, Real high) {
        return (v + 1 - low - high) / (high - low);
    };
    const Real n = c.Near();
    const Real f = c.Far();
    const Real z = c.IsPerspective() ? f + n - 2 * f * n / seen.z : 2 * seen.z - f - n;
    return {part(seen.x, c.ViewportXMin(), c.ViewportXMax()),
            part(seen.y, c.ViewportYMin(), c.ViewportYMax()), z / (f - n)};
}

void ExpectNear(Real a, Real b, double tolerance) { EXPECT_NEAR(double(a), double(b), tolerance); }
void ExpectNear(Vec a, Vec b, double tolerance) {
    EXPECT_LE(double(Length(a - b)), tolerance)
        << a.x << " " << a.y << " " << a.z << " for " << b.x << " " << b.y << " " << b.z;
}

Camera At(const g3d_Point& eye, const g3d_Point& target, const g3d_Vector& up = kY) {
    Camera camera;
    camera.SetLocation(eye, target, up);
    return camera;
}
Camera Askew(bool perspective) {
    Camera camera = At({3, 4, 5}, {1, 0, -1});
    camera.SetViewOffset(0.1F, -0.2F);
    camera.SetProjection(perspective ? Camera::PERSPECTIVE : Camera::PARALLEL);
    return camera;
}

std::string Text(const Camera& camera) {
    std::string text;
    const auto append = [](void* to, const char* part, std::size_t length) {
        static_cast<std::string*>(to)->append(part, length);
    };
    aio_ostream stream(append, &text);
    stream << camera;
    return text;
}

using Gesture = void (*)(Camera&, g3d_Vector);

/// Every operation that takes numbers; the random walk gives it some in [-1, 1].
const Gesture kGestures[] = {
    [](Camera& c, g3d_Vector v) { c.SetWindow(1.5F + v.x, c.WindowHeight()); },
    [](Camera& c, g3d_Vector v) { c.SetViewOffset(v.x, c.ViewOffsetY()); },
    [](Camera& c, g3d_Vector v) { c.SetFieldOfView(60 + 40 * v.x, true); },
    [](Camera& c, g3d_Vector v) { c.SetFieldOfView(60 + 40 * v.x, false); },
    [](Camera& c, g3d_Vector v) { c.SetNearFar(1.5F + v.x, 99 + v.y); },
    [](Camera& c, g3d_Vector v) { c.SetLocation(c.Eye(), g3d_Point(v.x, v.y, v.z), c.Up()); },
    [](Camera& c, g3d_Vector v) { c.SetFitDistance(5 + v.x); },
    [](Camera& c, g3d_Vector v) { c.Pan(v.x, v.y, 0, false); },
    [](Camera& c, g3d_Vector v) { c.Pan(v.x, v.y, v.z / 4, true); },
    [](Camera& c, g3d_Vector v) { c.Zoom(50 * v.x, false); },
    [](Camera& c, g3d_Vector v) { c.Zoom(50 * v.x, true); },
    [](Camera& c, g3d_Vector v) { c.Zoom(-0.4F, v.y - 2, v.x + 2, 0.5F, false); },
    [](Camera& c, g3d_Vector v) { c.Zoom(-0.4F, v.y - 2, v.x + 2, 0.5F, true); },
    [](Camera& c, g3d_Vector v) { c.ZoomTo(v.x, v.y, 50 * v.z, false, true); },
    [](Camera& c, g3d_Vector v) { c.ZoomTo(v.x, v.y, 50 * v.z, true, false); },
    [](Camera& c, g3d_Vector v) { c.Rotate(90 * v.x, v, false); },
    [](Camera& c, g3d_Vector v) { c.Rotate(90 * v.x, v, true); },
    [](Camera& c, g3d_Vector v) { c.Rotate(90, v + kY, g3d_Point(v.x, v.y, v.z)); },
    [](Camera& c, g3d_Vector v) { c.Rotate(v, kY, false); },
    [](Camera& c, g3d_Vector v) { c.Rotate(v, kY, g3d_Point(v.x, v.y, v.z)); },
    [](Camera& c, g3d_Vector v) { c.Fit(g3d_Sphere(v, v.x * v.x + 0.1F)); },
    [](Camera& c, g3d_Vector v) { c.Fit(g3d_Point(v.x, v.y, v.z), g3d_Point(2, 3, 4)); },
    [](Camera& c, g3d_Vector v) { c.FitVP(1.5F + v.x, 1.5F + v.y); },
    [](Camera& c, g3d_Vector v) { c.FitCenterVP(v.x, v.y, v.z, false); },
    [](Camera& c, g3d_Vector v) { c.FitCenterVP(v.x, v.y, v.z, true); },
    [](Camera& c, g3d_Vector v) { c.Canned(g3d_Sphere(v, 2), g3d_VIEW_ISO); },
    [](Camera& c, g3d_Vector v) { c.CorrectAspect(2 + v.x, 2 + v.y, 1, 0, 1, 0, 1); },
    [](Camera& c, g3d_Vector v) { c.SetModelBoundingVolume(g3d_BoundingVolume(), 1 + v.x); },
};
constexpr std::size_t kCount = std::size(kGestures);

/// What takes no numbers; these only choose.
const Gesture kSwitches[] = {
    [](Camera& c, g3d_Vector) { c.MakePerspective(); },
    [](Camera& c, g3d_Vector) { c.MakeParallel(); },
    [](Camera& c, g3d_Vector v) { c.SetDollyMode(v.x > 0, v.y > 0); },
    [](Camera& c, g3d_Vector v) {
        const bool changes = (v.x > 0) != c.IsPerspective();
        EXPECT_EQ(c.SetProjection(v.x > 0 ? g3d_PERSPECTIVE : g3d_PARALLEL), changes);
    },
    [](Camera& c, g3d_Vector v) {
        c.SetLayerXForm(true, nullptr);
        c.Zoom(50 * v.x, false);
        c.SetWindow(v.x, 2);
        c.SetLayerXForm(false, nullptr);
    },
};
constexpr std::size_t kSwitchCount = std::size(kSwitches);

TEST(g3d_Camera, NeverShowsAStaleMatrix) {
    std::mt19937 random(20260711);
    std::uniform_real_distribution<float> number(-1, 1);
    Camera camera;
    Camera other;
    for (int i = 0; i < 20000; ++i) {
        // Read at random, so that either matrix is up to date or not when the next change comes.
        static_cast<void>(random() % 2 == 0 ? &camera.ConstGetVOM() : nullptr);
        static_cast<void>(random() % 2 == 0 ? &camera.ConstGetPM() : nullptr);
        const std::size_t choice = random() % (kCount + kSwitchCount + 2);
        const g3d_Vector v(number(random), number(random), number(random));
        if (choice < kCount) {
            kGestures[choice](camera, v);
        } else if (choice < kCount + kSwitchCount) {
            kSwitches[choice - kCount](camera, v);
        } else {
            std::swap(camera, other);
        }
        // Far walks would only measure rounding.
        const Real sizes[] = {Length(Of(camera.Eye()) - Of(camera.Target())), camera.Near(),
                              camera.WindowWidth(), camera.WindowHeight()};
        const auto isFar = [](Real size) { return size > 30 || size < 0.1L; };
        if (std::any_of(std::begin(sizes), std::end(sizes), isFar) ||
            camera.Far() < 1.5F * camera.Near() || Length(Of(camera.Target())) > 30 ||
            std::hypot(camera.ViewOffsetX(), camera.ViewOffsetY()) > 10) {
            camera = Camera();
        }
        const Camera copy = camera;
        SCOPED_TRACE("step " + std::to_string(i) + ", choice " + std::to_string(choice));
        const Vec p = AtTarget(copy, 0.4L * copy.WindowWidth(), 0.3L * copy.WindowHeight());
        ExpectNear(Projected(copy, p), Expected(copy, p), 1e-3);
        const Vec q = Of(copy.Eye()) + (p - Of(copy.Eye())) * 3;
        ExpectNear(Projected(copy, q), Expected(copy, q), 1e-3);
        ASSERT_FALSE(HasFailure()) << Text(copy);
    }
}

TEST(g3d_Camera, IsLeftAloneByNumbersThatAreNone) {
    Camera camera = Askew(true);
    for (std::size_t i = 0; i < 2 * kCount; ++i) {
        camera.SetLayerXForm(i >= kCount, nullptr);
        for (const float bad : {kInf, -kInf, kInf - kInf}) {
            Camera tried = camera;
            kGestures[i % kCount](tried, {bad, 0.5F, 0.5F});
            EXPECT_TRUE(tried.IsIdentical(camera)) << i << Text(tried);
        }
        Camera tried = camera;
        kGestures[i % kCount](tried, {kHuge, kHuge, kHuge});
        for (int j = 0; j < 16; ++j) {
            EXPECT_TRUE(std::isfinite(tried.ConstGetVOM().Data()[j])) << i;
            EXPECT_TRUE(std::isfinite(tried.ConstGetPM().Data()[j])) << i;
        }
    }
    g3d_XForm bad;
    bad.M(2, 1) = kInf;
    const Camera before = camera;
    camera.SetLayerXForm(true, &bad);
    camera.Fit(g3d_Sphere(g3d_Point(), -1));
    camera.CorrectAspect(0, 100, 1, 0, 1, 0, 1);
    EXPECT_TRUE(camera.IsIdentical(before));
}

TEST(g3d_Camera, CorrectsALocation) {
    const float tiny = 1e-44F;
    const g3d_Vector skew(-0.5F, 5.3F, -0.4F);
    const g3d_Point far(skew.x, skew.y, skew.z);
    const g3d_Point near(-5e-10F, 5.3e-9F, -4e-10F);
    const struct {
        g3d_Point eye, target;
        g3d_Vector up;
        g3d_Point correctedEye;
        g3d_Vector correctedUp;
    } cases[] = {
        {{1, 1, 1}, {1, 1, 1}, kY, {1, 1, 1.1F}, kY},
        {{0, 0, 9}, {}, {}, {0, 0, 9}, kY},
        {{0, 9, 0}, {}, {0, 2, 0}, {0, 9, 0}, {0, 0, 1}},
        {{0, 0, 9}, {}, {0, 0, 2}, {0, 0, 9}, kY},
        // These stay degenerate, or as good as that: the same direction but for rounding.
        {{1, 1, 0}, {1, 1, 0}, {1, 0, 0}, {1, 1, 0}, kY},
        {{0, 9, 0}, {}, {0, -2, 0}, {0, 9, 0}, kY},
        {{}, {}, {}, {}, {0, 0, 1}},
        {{0.3F, 0.7F, 0.2F}, {}, {0.9F, 2.1F, 0.6F}, {0.3F, 0.7F, 0.2F}, {0.9F, 2.1F, 0.6F}},
        {far, near, skew, far, skew},
        {{2e8F, 1e-7F, 0}, {}, {1, 0, 0}, {2e8F, 1e-7F, 0}, {1, 0, 0}},
        {{tiny, 0, 0}, {}, {tiny, tiny, 0}, {tiny, 0, 0}, {tiny, tiny, 0}},
    };
    for (const auto& c : cases) {
        const Camera camera = At(c.eye, c.target, c.up);
        SCOPED_TRACE(Text(camera));
        EXPECT_TRUE(camera.Eye() == c.correctedEye && camera.Up() == c.correctedUp);
        const g3d_XForm& m = camera.ConstGetVOM();
        const auto row = [&m](int i) { return Vec{m.M(i, 0), m.M(i, 1), m.M(i, 2)}; };
        ExpectNear(Cross(row(0), row(1)), row(2), 1e-6);
        ExpectNear({Length(row(0)), Length(row(1)), Length(row(2))}, {1, 1, 1}, 1e-6);
    }
    // The least that up has across the sight decides.
    EXPECT_EQ(At({1, 0, 0}, {}, {1, 0, 1e-20F}).ConstGetVOM().GetM(0, 1), 1);
    EXPECT_EQ(At({4, 0, 8, 2}, {2, 0, 0, 2}).ConstGetVOM(), At({2, 0, 4}, {1, 0, 0}).ConstGetVOM());
}

TEST(g3d_Camera, SetsAndLimitsWindowAndDistances) {
    constexpr float kLargest = 3.4028234671899496e31F;
    Camera c;
    EXPECT_FLOAT_EQ(c.GetFieldOfView(), 53.130102F);
    const auto expect = [&c](float width, float height, float nearDistance, float farDistance) {
        EXPECT_FLOAT_EQ(c.WindowWidth(), width);
        EXPECT_FLOAT_EQ(c.WindowHeight(), height);
        EXPECT_FLOAT_EQ(c.Near(), nearDistance);
        EXPECT_FLOAT_EQ(c.Far(), farDistance);
    };
    const float distances[][4] = {{0, 0, 1e-5F, 1.00001e-5F}, {-5, 3, 1e-5F, 3},
                                  {7, 7.0001F, 7, 7.0001F},   {kHuge, kHuge, 3.40278948e38F, kHuge},
                                  {2, 1, 2, 2.00002F},        {4, 100, 4, 100}};
    for (const auto& d : distances) {
        c.SetNearFar(d[0], d[1]);
        expect(1, 1, d[2], d[3]);
    }
    c.SetWindow(-1, kHuge);  // near is 4 and the target at 2: the smallest window is 0.0002
    expect(0.0002F, kLargest, 4, 100);
    c.SetWindow(0.0004F, 0.0012F);
    c.Zoom(75, false);  // keeps the ratio
    expect(0.0002F, 0.0006F, 4, 100);
    c.SetWindow(1e31F, 2e31F);
    c.Zoom(-50, false);
    expect(kLargest / 2, kLargest, 4, 100);
    c.SetWindow(kLargest, kLargest);
    c.Zoom(-50, false);
    expect(kLargest, kLargest, 4, 100);

    c.SetViewOffset(1, 2);
    c.SetWindow(4, 2);
    c.SetFieldOfView(90, true);
    expect(8, 4, 4, 100);
    EXPECT_FLOAT_EQ(c.ViewOffsetY(), 4);
    c.SetWindow(1, 4);  // a tall window comes out wide
    c.SetFieldOfView(90, true);
    expect(8, 2, 4, 100);
    EXPECT_FLOAT_EQ(c.ViewOffsetY(), 8);
    c.SetFieldOfView(60, false);
    expect(8, 2, 4 * std::sqrt(3.0F), 100);
    EXPECT_FLOAT_EQ(c.GetFieldOfView(), 60);
}

TEST(g3d_Camera, PansAndSwitchesTheProjectionInPlace) {
    for (const bool perspective : {true, false}) {
        Camera camera = Askew(perspective);
        const Vec point = AtTarget(camera, 0.25L, 0.125L);
        const g3d_Point eye = camera.Eye();
        camera.Pan(0.25F, 0.125F, 0, false);
        EXPECT_EQ(camera.Eye() == eye, perspective);
        const Real depth = Seen(camera, point).z;
        ExpectNear(Seen(camera, point), {0, 0, depth}, 1e-6);
        camera.Pan(0, 0, 0.5F, true);
        ExpectNear(Seen(camera, point).z - depth, perspective ? std::sqrt(14.0L) : 0.5L, 1e-5);
        EXPECT_FLOAT_EQ(camera.WindowWidth(), perspective ? 1.0F : 1.5F);

        camera.SetViewOffset(0.3F, -0.2F);
        for (int i = 0; i < 3; ++i) {
            const Vec aside = AtTarget(camera, 0.2L, 0.4L);
            const Vec before = Seen(camera, aside);
            const bool was = camera.IsPerspective();
            was ? camera.MakeParallel() : camera.MakePerspective();
            EXPECT_NE(camera.IsPerspective(), was);
            ExpectNear(Seen(camera, aside), before, 1e-5);
        }
    }
}

TEST(g3d_Camera, ZoomsByWindowOrByEye) {
    const float percents[] = {150, 99, 25, 0, -50, -100};
    const float factors[] = {0.01F, 0.01F, 0.75F, 1, 2, 100};
    for (int i = 0; i < 24; ++i) {
        const float factor = factors[i / 4];
        const bool keepOffset = i % 2 == 1;
        const bool keepFarPlane = i / 2 % 2 == 1;
        Camera camera = Askew(true);
        camera.SetNearFar(0.01F, 1000);
        camera.SetViewOffset(0.0005F, 0.001F);
        camera.SetDollyMode(keepOffset, keepFarPlane);
        Camera dolly = camera;
        camera.Zoom(percents[i / 4], false);
        EXPECT_FLOAT_EQ(camera.WindowWidth(), factor);

        const Vec centre = AtTarget(dolly, 0, 0);
        const Vec aside = AtTarget(dolly, 0.003L, -0.002L);
        const Vec seen = Seen(dolly, aside);
        const Vec z = LookAt(dolly).z;
        const Real depth = Dot(z, Of(dolly.Eye()));
        dolly.Zoom(percents[i / 4], true);
        EXPECT_EQ(dolly.WindowWidth(), 1);
        const Real distance = std::sqrt(56.0L) * factor;
        ExpectNear(Seen(dolly, centre), {0, 0, distance}, 1e-3);
        ExpectNear(Seen(dolly, aside), {seen.x / factor, seen.y / factor, distance}, 1e-3);
        ExpectNear(LookAt(dolly).z, z, 1e-5);
        EXPECT_FLOAT_EQ(dolly.ViewOffsetY(), keepOffset ? 0.001F : 0.001F * factor);
        ExpectNear(dolly.Far(), 1000 + (keepFarPlane ? Dot(z, Of(dolly.Eye())) - depth : 0), 1e-3);
    }
}

TEST(g3d_Camera, ZoomsAboutAPickedPosition) {
    for (int i = 0; i < 8; ++i) {
        const float percent = i / 4 == 0 ? 40.0F : -40.0F;
        Camera camera = Askew(i % 2 == 0);
        Camera toward = camera;
        const Vec pick = AtTarget(camera, 0.3L, -0.2L);
        const Vec seen = Seen(camera, pick);
        camera.ZoomTo(0.3F, -0.2F, percent, false, i / 2 % 2 == 1);
        ExpectNear(Seen(camera, pick), {seen.x, seen.y, Seen(camera, pick).z}, 1e-5);
        toward.ZoomTo(0.3F, -0.2F, percent, true, false);
        const Real in = percent > 0 ? 0.6L : 1;  // draws in by r = 0.6 once more
        ExpectNear(Seen(toward, pick), {seen.x * in, seen.y * in, seen.z}, 1e-5);
    }
}

/// Ends a child process with 0 if zooming out toward (0.5, 0) leaves the expected view offset.
[[noreturn]] void ZoomOutInChild(const char* variable, float offset) {
    setenv("TVX_ZOOM_TOWARD", variable, 1);
    Camera camera;
    camera.ZoomTo(0.5F, 0, -50, true, false);
    const float first = camera.ViewOffsetX();
    camera.ZoomTo(0.5F, 0, -50, true, false);  // says nothing again
    std::exit(std::abs(first - offset) < 1e-6F ? 0 : 1);
}

TEST(g3d_CameraDeathTest, ChoosesTheZoomOutOnce) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const std::string start = "^TVX_ZOOM_TOWARD: Zoom-out set to ";
    const auto expect = [&start](const char* variable, const char* text, float offset) {
        EXPECT_EXIT(ZoomOutInChild(variable, offset), testing::ExitedWithCode(0), start + text);
    };
    for (const char* const variable : {"0", "word"}) {
        expect(variable, "use start drag for zoom out origin.\n$", 0.5F - 2 * 0.5F);
    }
    expect(" +2x", "use center for zoom out origin.\n$", 0);
    for (const char* const variable : {"7", "99999999999999999999"}) {
        expect(variable, "transpose center toward start drag position.\n$", 0.5F - 3 * 0.5F);
    }
}

TEST(g3d_Camera, Rotates) {
    Camera start = At({2, 0, 0}, {});
    start.SetModelBoundingVolume(g3d_BoundingVolume(), 0);
    // Above 360 degrees 360 are taken off once: 800 leaves 440, which is 80.
    const float angles[][2] = {{90, 90}, {-90, -90}, {450, 90}, {800, 80}, {-450, -90}};
    for (const auto& [angle, turn] : angles) {
        Camera camera = start;
        camera.Rotate(angle, {0, 3, 0}, false);
        const Real radians = turn * std::acos(-1.0L) / 180;
        ExpectNear(Of(camera.Eye()), {2 * std::cos(radians), 0, -2 * std::sin(radians)}, 1e-6);
        ExpectNear(Of(camera.Up()), {0, 1, 0}, 1e-6);
    }
    for (const float angle : {0.0F, 1.1920929e-07F, -1e-07F, 1e-6F}) {
        Camera camera = start;
        camera.Rotate(angle, kY, g3d_Point(5, 5, 5));
        EXPECT_EQ(camera.IsIdentical(start) && camera.IsClippedToModel(), angle < 1e-6F);
    }
    Camera camera = start;
    camera.Rotate(90, {0, 0, 1}, true);
    EXPECT_EQ(camera.Eye(), start.Eye());
    ExpectNear(Of(camera.Target()), {2, -2, 0}, 1e-6);
    ExpectNear(Of(camera.Up()), {-1, 0, 0}, 1e-6);
    start.Rotate(180, kY, g3d_Point(2, 0, 2, 2));
    ExpectNear(Of(start.Eye()), {0, 0, 2}, 1e-6);
    ExpectNear(Of(start.Target()), {2, 0, 2}, 1e-6);
    // Points keep their weight, and of weight 0 they are directions; but a fit takes new ones.
    start = At({4, 0, 0, 2}, {1, 0, 0, 0});
    start.Rotate(180, kY, g3d_Point(1, 0, 1));
    ExpectNear(Of(start.Eye()), {0, 0, 2}, 1e-6);
    ExpectNear(Of(start.Target()), {-1, 0, 0}, 1e-6);
    EXPECT_TRUE(start.Eye().w == 2 && start.Target().w == 0);
    start.Fit(g3d_Sphere(g3d_Point(1, 2, 3), 2));
    EXPECT_TRUE(start.Target() == g3d_Point(1, 2, 3) && start.Eye().w == 1);
}

TEST(g3d_Camera, TurnsOneVectorOntoAnother) {
    const g3d_Vector vectors[] = {
        {1, 0, 0}, {-2, 0, 0},     kY,           {0, -1, 0},     {1, 1e-4F, 0},     {1, 2, 3},
        {0, 0, 1}, {-1e30F, 0, 0}, {-1, -2, -3}, {1e-30F, 0, 0}, {1, 2, 3.0000002F}};
    for (const g3d_Vector& from : vectors) {
        for (const g3d_Vector& to : vectors) {
            // Carried along: the eye's part along "from" must come out along "to".
            Camera camera = At({1, 2, 3}, {});
            const auto parts = [&camera](const g3d_Vector& v) {
                const Vec eye = Of(camera.Eye());
                return Vec{Dot(eye, Unit(Of(v))), Dot(Of(camera.Up()), Unit(Of(v))), Length(eye)};
            };
            const Vec before = parts(from);
            camera.Rotate(from, to, false);
            ExpectNear(parts(to), before, 2e-6);
        }
    }
    Camera camera = At({2, 0, 0}, {});
    camera.Rotate({1, 0, 0}, {-3, 0, 0}, false);
    EXPECT_EQ(camera.Up(), kY);  // opposite vectors turn about up where they can
    const Camera before = camera;
    camera.Rotate({0, 0, 0}, {-3, 0, 0}, false);
    camera.Rotate({1, 2, 3}, {2, 4, 6}, true);
    EXPECT_TRUE(camera.IsIdentical(before));
}

TEST(g3d_Camera, KeepsItsShapeThroughManySmallRotations) {
    for (const float angle : {0.001F, 0.37F, -2.0F}) {
        Camera orbiter = At({102, 50, 7}, {100, 50, 7});
        Camera walker = orbiter;
        for (int i = 0; i < 100000; ++i) {
            orbiter.Rotate(angle, {0, 0, 1}, false);
            walker.Rotate(angle, {0.3F, static_cast<float>(i % 7) - 3, 1}, i % 2 == 0);
        }
        for (const Camera& c : {orbiter, walker}) {
            const Vec sight = Of(c.Eye()) - Of(c.Target());
            ExpectNear({Length(sight), Length(Of(c.Up())), Dot(sight, Of(c.Up()))}, {2, 1, 0},
                       1e-4);
        }
        const Real total = 100000 * Real(angle) * std::acos(-1.0L) / 180;
        ExpectNear(orbiter.Eye().x, 100 + 2 * std::cos(total), 1e-4);
    }
}

TEST(g3d_Camera, FitsWhateverIsGiven) {
    const float far = 1e6F;  // where floats are 1/16 apart
    const std::vector<g3d_Point> volumes[] = {
        {{0, 0, 0}},
        {{far, -3 * far, 7}},
        {{1, 2, 3}, {1, 2, 3.00001F}},
        {{-1, -1, 0}, {1, -1, 0}, {1, 1, 0}, {-1, 1, 0}},
        {{0, 0, 0}, {100, 1, 0}, {50, 0, 1}},
        {{far, far, far}, {far + 8, far, far}, {far, far + 30, far + 90}},
        {{-1e20F, 0, 0}, {1e20F, 3e19F, 0}},
        {{1e-12F, 0, 0}, {0, 1e-13F, 0}},
        {{2, 4, 6, 2}, {5, 5, 5}},
    };
    const g3d_Point eyes[] = {{1, 0, 0}, {0, 1, 0.01F}, {-3, -4, -5}, {1e4F, 2, 3}};
    for (std::size_t i = 0; i < 8 * std::size(volumes); ++i) {
        const std::vector<g3d_Point>& points = volumes[i / 8];
        const g3d_BoundingVolume volume(points.data(), static_cast<unsigned>(points.size()));
        Camera camera = Askew(i % 2 == 0);
        camera.SetLocation(eyes[i / 2 % 4], {}, kY);
        camera.SetViewOffset(3, 4);
        camera.Fit(volume);
        const Camera fitted = camera;
        camera.SetModelBoundingVolume(volume, 0.01F);
        EXPECT_TRUE(camera.IsClippedToModel());
        for (const g3d_Point& vertex : points) {
            const Vec p = Of(vertex);
            ExpectNear(Seen(camera, p).x, Seen(fitted, p).x, 1e-5);
            for (const Camera& c : {fitted, camera}) {
                const Vec seen = Projected(c, p);
                EXPECT_LE(std::max({std::abs(seen.x), std::abs(seen.y), std::abs(seen.z)}), 1)
                    << i / 8 << Text(c);
            }
        }
    }
    Camera camera = At({0, 0, 5}, {});
    camera.Fit(g3d_Sphere(g3d_Point(1, 2, 3), 2));
    EXPECT_TRUE(camera.Eye() == g3d_Point(1, 2, 11) && camera.Near() == 4 && camera.Far() == 12);
    EXPECT_FLOAT_EQ(camera.WindowWidth(), 2.1F);
    camera.MakeParallel();
    camera.Fit(g3d_Point(0, 0, 0), g3d_Point(2, 4, 4));
    EXPECT_NEAR(camera.WindowWidth(), 6.3, 1e-4);
}

TEST(g3d_Camera, GoesToStandardAndSavedViews) {
    const g3d_Sphere sphere(g3d_Point(10, 20, 30), 2);
    const Vec toEye[] = {{0, 0, 1},  {0, 0, -1}, {0, 1, 0}, {0, -1, 0},
                         {-1, 0, 0}, {1, 0, 0},  {1, 1, 1}};
    const Vec right[] = {{1, 0, 0}, {-1, 0, 0}, {1, 0, 0}, {1, 0, 0},
                         {0, 0, 1}, {0, 0, -1}, {1, 0, -1}};
    Camera camera;
    for (int i = g3d_VIEW_FRONT; i <= g3d_VIEW_ISO; ++i) {
        EXPECT_FALSE(camera.SaveView(static_cast<g3d_SavedViewIdEnum>(i)));
        camera.Canned(sphere, static_cast<g3d_SavedViewIdEnum>(i));
        ExpectNear(Of(camera.Eye()), Vec{10, 20, 30} + Unit(toEye[i]) * 8, 1e-5);
        ExpectNear(LookAt(camera).x, Unit(right[i]), 1e-6);
        EXPECT_EQ(camera.Target(), sphere.Center());
    }
    const Camera iso = camera;
    camera.Canned(sphere, g3d_VIEW_USER4);  // not saved yet
    EXPECT_TRUE(camera.IsIdentical(iso));
    camera.SetLocation({1, 2, 3}, {}, {0, 0, 1});
    EXPECT_TRUE(camera.SaveView(g3d_VIEW_USER4));
    const Axes saved = LookAt(camera);
    camera.Canned(sphere, g3d_VIEW_TOP);
    Camera other;
    other = camera;
    other.Canned(sphere, g3d_VIEW_USER4);
    ExpectNear(LookAt(other).z, saved.z, 1e-6);
    ExpectNear(LookAt(other).x, saved.x, 1e-6);
}

TEST(g3d_Camera, RespectsThePicture) {
    const float pictures[][4] = {
        {640, 480, 1, 0}, {300, 900, 1, 0}, {500, 500, 2, 0}, {640, 480, 1, 0.25F}};
    for (std::size_t i = 0; i < 8; ++i) {
        const float* const p = pictures[i / 2];
        Camera c = Askew(i % 2 == 0);
        c.SetWindow(2, 1);
        const auto expectRound = [&] {
            const Vec o = Projected(c, AtTarget(c, 0, 0));
            const Vec x = Projected(c, AtTarget(c, 0.1L * c.WindowWidth(), 0)) - o;
            const Vec y = Projected(c, AtTarget(c, 0, 0.1L * c.WindowWidth())) - o;
            ExpectNear(x.x * p[0] * p[2] / (y.y * p[1]), 1, 1e-5);
        };
        const auto expectCentred = [&c](Vec point) {
            ExpectNear(Projected(c, point), {0, 0, Projected(c, point).z}, 2e-5);
        };
        // A rectangle becomes the window, where circles are round again when corrected.
        for (const bool dolly : {false, true}) {
            const Vec corner = AtTarget(c, -0.3L, -0.1L);
            const Vec opposite = AtTarget(c, 0.1L, 0.2L);
            c.Zoom(0.1F, -0.1F, -0.3F, 0.2F, dolly);
            ExpectNear(Seen(c, corner), {-1, -1, Seen(c, corner).z}, 2e-5);
            ExpectNear(Seen(c, opposite), {1, 1, Seen(c, opposite).z}, 2e-5);
            c.CorrectAspect(p[0], p[1], p[2], p[3], 1, 0, 1);
            expectRound();
        }
        const Camera once = c;
        c.CorrectAspect(p[0], p[1], p[2], p[3], 1, 0, 1);
        EXPECT_TRUE(c.IsIdentical(once));
        c.FitCenterVP(0.5F, 0.25F, -0.5F, false);
        expectCentred({0.5L, 0.25L, -0.5L});
        c.FitCenterVP(1, 2, -3, true);
        EXPECT_EQ(c.Target(), g3d_Point(1, 2, -3));
        const float height = c.WindowHeight() * (c.ViewportYMax() - c.ViewportYMin());
        c.FitVP(height / 1000, height / 2);
        expectCentred({1, 2, -3});
        EXPECT_FLOAT_EQ(c.WindowHeight() * (c.ViewportYMax() - c.ViewportYMin()), height / 2);
        expectRound();
    }
}

TEST(g3d_Camera, MovesTheMatrixInLayerMode) {
    Camera camera = At({3, 4, 5}, {1, 2, 3, 2});
    camera.SetWindow(4, 2);
    const Vec before = Seen(camera, {0, 0, 0});
    camera.SetLayerXForm(true, nullptr);
    EXPECT_TRUE(camera.IsLayerXForm() && !camera.IsPerspective());
    EXPECT_EQ(camera.Target(), g3d_Point(0.5F, 1, 1.5F));
    const float width = camera.WindowWidth();
    EXPECT_FLOAT_EQ(width, 4 * std::sqrt(2.5F * 2.5F + 9 + 3.5F * 3.5F));
    ExpectNear(Carried(camera.ConstGetVOM(), {0, 0, 0}).z, -before.z / width, 1e-6);

    g3d_XForm layer;
    layer.SetRotate(30, {1, 2, 3});
    layer.Translate(1, 2, 3);
    const Vec p = {4, 5, 6};
    const Vec here = Carried(layer, p);
    const Vec doubled = Carried(layer, p * 2 - Of(camera.Target()));
    const Vec turned = Carried(layer, {1 + 4, 1 - 3, 6});  // by -90: (x, y) becomes (y, -x)
    const auto expect = [&](Vec expected, const auto& change) {
        Camera moved = camera;
        moved.SetLayerXForm(true, &layer);
        change(moved);
        EXPECT_EQ(moved.Eye(), camera.Eye());
        ExpectNear(Carried(moved.ConstGetVOM(), p), expected, 1e-4);
    };
    const g3d_Point centre(1, 1, 1);
    expect(here - Vec{1, 2, 3}, [](Camera& c) { c.Pan(1, 2, 3, true); });
    expect(doubled, [](Camera& c) { c.Zoom(50, false); });
    expect(doubled, [](Camera& c) { c.ZoomTo(3, 1, 50, true, true); });
    expect(turned, [&](Camera& c) { c.Rotate(90, g3d_Vector(0, 0, 2), centre); });
    expect(turned, [&](Camera& c) { c.Rotate(g3d_Vector(1, 0, 0), kY, centre); });
    expect({0, 0, here.z}, [](Camera& c) { c.FitCenterVP(4, 5, 6, true); });
    expect({(here.x - width / 8) * 4, (here.y - width / 16) * 4, here.z},
           [&](Camera& c) { c.Zoom(0, 0, width / 4, width / 8, false); });

    camera.SetLayerXForm(true, &layer);
    camera.SetLocation({9, 9, 9}, {7, 7, 7}, {1, 0, 0});
    EXPECT_TRUE(camera.Target() == g3d_Point(7, 7, 7) && camera.Eye() == g3d_Point(3, 4, 5));
    camera.SetLayerXForm(true, &camera.ConstGetVOM());
    EXPECT_EQ(camera.ConstGetVOM(), layer);
    camera.SetWindow(0, 0);
    camera.SetLayerXForm(false, nullptr);
    EXPECT_EQ(camera.WindowWidth(), 0.0001F);
    camera.SetWindow(1, 2);
    ExpectNear(Projected(camera, p), Expected(camera, p), 1e-5);
}

TEST(g3d_Camera, IsAValue) {
    const Camera a = Askew(true);
    Camera b = a;
    EXPECT_TRUE(a == b && a.IsIdentical(b) && Text(a) == Text(b));
    b.CorrectAspect(2, 1, 1, 0, 1, 0, 1);
    EXPECT_TRUE(a == b);  // whatever another viewport shows of the view
    for (std::size_t i = 0; i < kCount; ++i) {
        Camera changed = a;
        kGestures[i](changed, {0.5F, 0.25F, 0.125F});
        EXPECT_FALSE(changed.IsIdentical(a) || Text(changed) == Text(a)) << i;
        Camera copy;
        copy = changed;
        EXPECT_TRUE(copy.IsIdentical(changed) && copy == changed);
    }
    b.SetDollyMode(true, false);
    EXPECT_FALSE(a == b);

    // A camera in layer-transform mode hands over its matrix, target and projection alone.
    g3d_XForm layer;
    layer.SetScale(2, 3, 4);
    b.SetLayerXForm(true, &layer);
    Camera c = a;
    EXPECT_EQ(c.ConstGetPM().M(3, 3), 0);
    c = b;
    EXPECT_EQ(c.ConstGetPM().M(3, 3), 1);  // the projection has become parallel
    EXPECT_EQ(c.ConstGetVOM(), layer);
    EXPECT_TRUE(c == b && c.Eye() == a.Eye() && c.WindowWidth() == a.WindowWidth());
    EXPECT_FALSE(a == b || b == a);
    EXPECT_NE(Text(c).find("layer transform on"), std::string::npos);
}

}  // namespace
