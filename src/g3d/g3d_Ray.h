#pragma once

#include "g3d_Point.h"
#include "g3d_Vector.h"

/// An origin and a direction of any length; by default from (0, 0, 0) along z.
///
/// Tests that speak of a line take the ray's whole line, behind the origin too.
class CAE_API g3d_Ray {
public:
    constexpr g3d_Ray() noexcept = default;
    constexpr g3d_Ray(const g3d_Point& origin, const g3d_Vector& direction) noexcept
        : _origin(origin), _direction(direction) {}

    constexpr void Set(const g3d_Point& origin, const g3d_Vector& direction) noexcept {
        _origin = origin;
        _direction = direction;
    }
    [[nodiscard]] constexpr const g3d_Point& Origin() const noexcept { return _origin; }
    [[nodiscard]] constexpr const g3d_Vector& Direction() const noexcept { return _direction; }

    /// Exact comparison of origin and direction.
    friend constexpr bool operator==(const g3d_Ray&, const g3d_Ray&) noexcept = default;

private:
    g3d_Point _origin;
    g3d_Vector _direction{0, 0, 1};
};
