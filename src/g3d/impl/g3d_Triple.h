#pragma once

#include "g3d_Point.h"

#include <cmath>
#include <limits>

/// Three doubles: a Cartesian place or a displacement, unrounded.
///
/// Differences and products of floats keep their sign in it: nothing overflows or underflows, up
/// to products of six.
struct g3d_Triple {
    double x = 0;
    double y = 0;
    double z = 0;

    constexpr g3d_Triple() noexcept = default;
    constexpr g3d_Triple(double xValue, double yValue, double zValue) noexcept
        : x(xValue), y(yValue), z(zValue) {}
    constexpr explicit g3d_Triple(const g3d_Vector& v) noexcept : x(v.x), y(v.y), z(v.z) {}
    /// The place that the point stands for.
    constexpr explicit g3d_Triple(const g3d_Point& p) noexcept : x(p.x), y(p.y), z(p.z) {
        if (p.w != 1 && p.w != 0) {
            x /= p.w;
            y /= p.w;
            z /= p.w;
        }
    }

    [[nodiscard]] g3d_Point ToPoint() const noexcept {
        return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
    }
    /// Whether all three are finite as floats.
    [[nodiscard]] bool IsFinite() const noexcept {
        constexpr double kLimit = std::numeric_limits<float>::max();
        return std::abs(x) <= kLimit && std::abs(y) <= kLimit && std::abs(z) <= kLimit;
    }
    [[nodiscard]] constexpr double Dot(const g3d_Triple& v) const noexcept {
        return x * v.x + y * v.y + z * v.z;
    }
    [[nodiscard]] constexpr g3d_Triple Cross(const g3d_Triple& v) const noexcept {
        return {y * v.z - z * v.y, z * v.x - x * v.z, x * v.y - y * v.x};
    }
    [[nodiscard]] constexpr double Squared() const noexcept { return Dot(*this); }
    [[nodiscard]] double Length() const noexcept { return std::sqrt(Squared()); }

    friend constexpr g3d_Triple operator+(const g3d_Triple& a, const g3d_Triple& b) noexcept {
        return {a.x + b.x, a.y + b.y, a.z + b.z};
    }
    friend constexpr g3d_Triple operator-(const g3d_Triple& a, const g3d_Triple& b) noexcept {
        return {a.x - b.x, a.y - b.y, a.z - b.z};
    }
    friend constexpr g3d_Triple operator*(const g3d_Triple& v, double s) noexcept {
        return {v.x * s, v.y * s, v.z * s};
    }
};
