#pragma once

#include "g3d_Point.h"
#include "g3d_Vector.h"

#include <concepts>

/// A centre and a radius; a negative radius marks an empty sphere, which is the default.
class CAE_API g3d_Sphere {
public:
    constexpr g3d_Sphere() noexcept = default;
    constexpr g3d_Sphere(const g3d_Point& center, float radius) noexcept
        : _center(center), _radius(radius) {}
    /// A template, so that a braced list is a point.
    template <std::same_as<g3d_Vector> Vector>
    constexpr g3d_Sphere(const Vector& center, float radius) noexcept
        : _center(center.x, center.y, center.z), _radius(radius) {}

    constexpr void Set(const g3d_Point& center, float radius) noexcept {
        _center = center;
        _radius = radius;
    }
    [[nodiscard]] constexpr const g3d_Point& Center() const noexcept { return _center; }
    [[nodiscard]] constexpr float Radius() const noexcept { return _radius; }
    [[nodiscard]] constexpr bool IsEmpty() const noexcept { return _radius < 0; }

    /// Whether no point of \p other lies outside this sphere; touching from inside is allowed. An
    /// empty sphere is in every sphere and contains none but empty ones; NaN gives false.
    [[nodiscard]] bool Contains(const g3d_Sphere& other) const noexcept;

    /// Exact comparison of centre and radius.
    friend constexpr bool operator==(const g3d_Sphere&, const g3d_Sphere&) noexcept = default;

private:
    g3d_Point _center;
    float _radius = -1;
};

/// The smallest sphere around both, up to rounding. An empty one adds nothing (two empty ones give
/// \p b); one that contains the other is the result itself.
[[nodiscard]] CAE_API g3d_Sphere operator+(const g3d_Sphere& a, const g3d_Sphere& b) noexcept;
