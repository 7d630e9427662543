#pragma once

// What the camera's sources share: tests of numbers, and the view's axes in double.

#include "g3d_Camera.h"
#include "g3d_Triple.h"

#include <cmath>

namespace g3d_camera {

inline constexpr double kDegrees = 57.29577951308232;  // in a radian
inline constexpr double kRadians = 0.017453292519943295;
inline constexpr double kLargestWindow = 3.4028234671899496e31;

template <class... Numbers>
[[nodiscard]] bool AllFinite(Numbers... numbers) noexcept {
    return (std::isfinite(numbers) && ...);
}

[[nodiscard]] inline bool IsFinite(const g3d_Point& p) noexcept {
    return AllFinite(p.x, p.y, p.z, p.w);
}

[[nodiscard]] inline bool IsFinite(const g3d_Vector& v) noexcept {
    return AllFinite(v.x, v.y, v.z);
}

[[nodiscard]] inline bool IsFinite(const g3d_XForm& xform) noexcept {
    for (int i = 0; i < 16; ++i) {
        if (!std::isfinite(xform.Data()[i])) {
            return false;
        }
    }
    return true;
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

// Here for all sources of the camera to inline.
inline g3d_Camera::Frame g3d_Camera::State::ViewFrame() const noexcept {
    g3d_Triple sight = g3d_Triple(eye) - g3d_Triple(target);
    const double distance = sight.Length();
    double length = distance;
    if (distance == 0) {
        sight = g3d_Triple(0, 0, 1);
        length = 1;
    }
    const g3d_Triple upward(up);
    g3d_Triple across = upward.Cross(sight);
    // Both lengths from unnormalised vectors: the processor overlaps their roots.
    const double area = across.Length();
    const g3d_Triple z = sight * (1 / length);
    const double product = upward.Squared() * (length * length);
    if (across.Squared() > 1e-12 * product) {
        const g3d_Triple x = across * (1 / area);
        return {x, z.Cross(x), z, distance};
    }

    // Up is within a millionth of the line of sight: rounding would tilt x out of square, and up
    // may say nothing at all.
    if (!(across.Squared() > 1e-28 * product)) {
        across = (std::abs(z.y) < 0.9 ? g3d_Triple(0, 1, 0) : g3d_Triple(0, 0, 1)).Cross(z);
    }
    across = g3d_camera::Across(across * (1 / across.Length()), z);
    const g3d_Triple x = across * (1 / across.Length());
    return {x, z.Cross(x), z, distance};
}
