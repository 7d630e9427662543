#include "host_Framing.h"

#include "g3d_BoundingVolume.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A row of a camera's matrix times a point.
double Coordinate(const g3d_XForm& matrix, int row, const g3d_Point& p) {
    return double{matrix.GetM(row, 0)} * p.x + double{matrix.GetM(row, 1)} * p.y +
           double{matrix.GetM(row, 2)} * p.z + matrix.GetM(row, 3);
}

/// What points take up along one axis of the window.
struct Extent {
    double middle;  // sideways, from the eye
    double half;    // in the plane at unit distance from the eye; of a parallel view in any
};

/// Where the eye has to be along axis \p row for points to reach as far to one side as to the
/// other. In perspective the middle depends on how far the outermost points are, and which these
/// are on the middle: Newton's method on a function of straight pieces, which ends soon.
Extent ExtentOf(const g3d_Camera& camera, int row, const std::vector<g3d_Point>& points) {
    const g3d_XForm& toEye = camera.ConstGetVOM();
    const bool isPerspective = camera.IsPerspective();
    struct Outermost {
        double place = -kInfinity;
        double depth = 1;
    };
    constexpr int kMostSteps = 10;
    Extent extent{0, 0};
    for (int step = 1;; ++step) {
        Outermost low;  // reflected
        Outermost high;
        for (const g3d_Point& point : points) {
            const double depth = isPerspective ? -Coordinate(toEye, 2, point) : 1;
            const double place = (Coordinate(toEye, row, point) - extent.middle) / depth;
            if (place > high.place) {
                high = {place, depth};
            }
            if (-place > low.place) {
                low = {-place, depth};
            }
        }
        extent.half = std::max(low.place, high.place);
        const double shift = (high.place - low.place) / (1 / high.depth + 1 / low.depth);
        if (!std::isfinite(shift) || std::abs(high.place - low.place) <= 1e-6 * extent.half ||
            step == kMostSteps) {
            return extent;
        }
        extent.middle += shift;
    }
}

}  // namespace

g3d_Sphere host_SphereOf(const std::vector<g3d_Point>& points) {
    g3d_Sphere sphere;
    g3d_BoundingVolume(points.data(), static_cast<unsigned>(points.size())).GetExtent(sphere);
    if (!sphere.IsEmpty()) {
        const auto& [x, y, z, w] = sphere.Center();
        const float place = std::max({std::abs(x), std::abs(y), std::abs(z)});
        const float radius = std::max(sphere.Radius(), 2e-5F * place);
        sphere.Set(sphere.Center(), radius > 0 ? radius : 1.0F);
    }
    return sphere;
}

bool host_IsInReach(const g3d_Sphere& sphere) noexcept {
    const g3d_Point& centre = sphere.Center();
    return std::hypot(centre.x, centre.y, centre.z) + sphere.Radius() <= host_kFarthest;
}

void host_Frame(g3d_Camera& camera, const std::vector<g3d_Point>& points, const g3d_Sphere& sphere,
                std::optional<g3d_SavedViewIdEnum> side) {
    constexpr double kMargin = 0.05;
    constexpr double kLongest = 10;  // over the other side
    if (side) {
        camera.Canned(sphere, *side);
    } else {
        camera.Fit(sphere);
    }
    const Extent x = ExtentOf(camera, 0, points);
    const Extent y = ExtentOf(camera, 1, points);
    const double longer = std::max(x.half, y.half);
    if (!(longer > 0 && std::isfinite(x.half + y.half))) {
        return;  // no extent to be seen
    }
    // In perspective the window lies in the near plane.
    const g3d_Point& eye = camera.Eye();
    const g3d_Point& target = camera.Target();
    const bool isPerspective = camera.IsPerspective();
    const double scale =
        isPerspective
            ? double{camera.Near()} / std::hypot(double{eye.x} - target.x, double{eye.y} - target.y,
                                                 double{eye.z} - target.z)
            : 1;
    camera.Pan(static_cast<float>(x.middle * scale), static_cast<float>(y.middle * scale), 0, true);
    const double unit = isPerspective ? double{camera.Near()} : 1;
    const auto length = [&](double half) {
        return static_cast<float>(2 * std::max(half, longer / kLongest) * unit / (1 - 2 * kMargin));
    };
    camera.SetWindow(length(x.half), length(y.half));
}

void host_ShowBeside(g3d_Camera& camera, int width, int height, float column) {
    const double w = std::max(width, 1);
    const double h = std::max(height, 1);
    // The part of the window's width that is shown beside it: as little as leaves the column free,
    // be it that the window is as high as the picture, or else as wide as the rest of it.
    const double windowWidth = double{camera.WindowWidth()} / camera.WindowHeight() * h;
    double beside = std::max((2 * column - w) / windowWidth + 1, 0.0);
    if ((1 + beside) * windowWidth > w) {
        beside = column / std::max(w - column, 1.0);
    }
    camera.CorrectAspect(static_cast<float>(w), static_cast<float>(h), 1,
                         static_cast<float>(-beside), 1, 0, 1);
}

void host_BackOff(g3d_Camera& camera, const std::vector<g3d_Point>& points) {
    if (camera.IsPerspective()) {
        return;
    }
    double nearest = -kInfinity;
    double farthest = kInfinity;
    for (const g3d_Point& point : points) {
        const double depth = Coordinate(camera.ConstGetVOM(), 2, point);  // backward from the eye
        nearest = std::max(nearest, depth);
        farthest = std::min(farthest, depth);
    }
    const double room = std::max(0.1 * (nearest - farthest), 1e-3 * std::abs(nearest));
    if (nearest > -room) {
        camera.Pan(0, 0, static_cast<float>(nearest + room), false);
    }
}

std::optional<std::array<double, 2>> host_PixelOf(const g3d_Camera& camera, int width, int height,
                                                  const g3d_Point& point) {
    g3d_Point clip = point;
    camera.ConstGetVOM().XForm(&clip, 1);
    camera.ConstGetPM().XForm(&clip, 1);
    if (!(clip.w > 0)) {
        return {};
    }
    return std::array{(1 + double{clip.x} / clip.w) / 2 * width,
                      (1 - double{clip.y} / clip.w) / 2 * height};
}
