#pragma once

#include "g3d_Point.h"

#include <cmath>
#include <limits>

/// \file
/// Sides of lines in the x-y plane; NaN when a coordinate is not finite. J. R. Shewchuk, Adaptive
/// Precision Floating-Point Arithmetic and Fast Robust Geometric Predicates, Discrete &
/// Computational Geometry 18, 1997. Products of the coordinates, floats, are exact in double;
/// nothing overflows or underflows.

/// Twice the signed area of the triangle a, b, c: positive when it turns left, 0 exactly when the
/// points are in line. To about the last place, however small.
[[nodiscard]] double g3d_ExactOrientation2D(const g3d_Point& a, const g3d_Point& b,
                                            const g3d_Point& c) noexcept;

/// The same with the exact sign, but another value where it is tiny; fast.
[[nodiscard]] inline double g3d_Orientation2D(const g3d_Point& a, const g3d_Point& b,
                                              const g3d_Point& c) noexcept {
    // The bound of the first stage of his figure 21.
    constexpr double kUnit = std::numeric_limits<double>::epsilon() / 2;
    constexpr double kBound = (3 + 16 * kUnit) * kUnit;
    const double cx = c.x, cy = c.y;
    const double left = (a.x - cx) * (b.y - cy);
    const double right = (a.y - cy) * (b.x - cx);
    const double area = left - right;
    const bool isSure = std::abs(area) > kBound * (std::abs(left) + std::abs(right));
    return isSure ? area : g3d_ExactOrientation2D(a, b, c);
}
