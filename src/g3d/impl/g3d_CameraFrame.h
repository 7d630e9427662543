#pragma once

// What the camera's sources share: tests of numbers, and the view's axes in double.

#include "g3d_Camera.h"
#include "g3d_Triple.h"

#include <cmath>
#include <concepts>
#include <numeric>

namespace g3d_camera {

inline constexpr double kDegrees = 57.29577951308232;  // in a radian
inline constexpr double kRadians = 0.017453292519943295;
inline constexpr double kSmallestSquaredSine = 1e-12;  // of up against the sight, unless degenerate
inline constexpr double kLargestWindow = 3.4028234671899496e31;

/// In one test: sums of floats never overflow a double, and an infinity or a NaN never leaves them.
template <std::same_as<float>... Floats>
[[nodiscard]] bool AllFinite(Floats... numbers) noexcept {
    return std::isfinite((static_cast<double>(numbers) + ...));
}

[[nodiscard]] inline bool IsFinite(const g3d_Point& p) noexcept {
    return AllFinite(p.x, p.y, p.z, p.w);
}

[[nodiscard]] inline bool IsFinite(const g3d_Vector& v) noexcept {
    return AllFinite(v.x, v.y, v.z);
}

[[nodiscard]] inline bool IsFinite(const g3d_XForm& xform) noexcept {
    const float* const m = xform.Data();
    return std::isfinite(std::accumulate(m, m + 16, 0.0));
}

[[nodiscard]] inline g3d_Vector Rounded(const g3d_Triple& v) noexcept {
    return {static_cast<float>(v.x), static_cast<float>(v.y), static_cast<float>(v.z)};
}

/// The part of \p v across the unit vector \p unit.
[[nodiscard]] inline g3d_Triple Across(const g3d_Triple& v, const g3d_Triple& unit) noexcept {
    return v - unit * v.Dot(unit);
}

}  // namespace g3d_camera

/// The view's axes in world coordinates, right-handed and of unit length, z toward the viewer; and
/// the distance from the eye to the target.
struct g3d_Camera::Frame {
    g3d_Triple x;
    g3d_Triple y;
    g3d_Triple z;
    double distance;

    [[nodiscard]] g3d_Triple ToWorld(double dx, double dy, double dz) const noexcept {
        return x * dx + y * dy + z * dz;
    }
};

// Here for all sources of the camera to inline. Both lengths come from unnormalised vectors: the
// processor overlaps their roots.
inline g3d_Camera::Frame g3d_Camera::State::ViewFrame() const noexcept {
    const g3d_Triple sight = g3d_Triple(eye) - g3d_Triple(target);
    const g3d_Triple upward(up);
    const g3d_Triple across = upward.Cross(sight);
    const double area = across.Squared();
    const double squared = sight.Squared();
    if (!(area > g3d_camera::kSmallestSquaredSine * (upward.Squared() * squared))) {
        return DegenerateFrame();
    }
    const double distance = std::sqrt(squared);
    const double toUnitX = 1 / std::sqrt(area);
    const double toUnitZ = 1 / distance;
    return {across * toUnitX, (sight * toUnitZ).Cross(across * toUnitX), sight * toUnitZ, distance};
}
