#pragma once

#include "g3d_Point.h"
#include "g3d_Vector.h"

class g3d_Ray;

/// A point and a normal of any length; by default the plane z = 0.
class CAE_API g3d_Plane {
public:
    constexpr g3d_Plane() noexcept = default;
    constexpr g3d_Plane(const g3d_Point& point, const g3d_Vector& normal) noexcept
        : _point(point), _normal(normal) {}

    constexpr void Set(const g3d_Point& point, const g3d_Vector& normal) noexcept {
        _point = point;
        _normal = normal;
    }
    [[nodiscard]] constexpr const g3d_Point& GetPoint() const noexcept { return _point; }
    [[nodiscard]] constexpr const g3d_Vector& GetNormal() const noexcept { return _normal; }

    /// Where the line of \p ray meets the plane. (0, 0, 0, 1) when they are parallel, which takes
    /// a dot product of direction and normal of exactly zero. NaN and infinity carry through.
    [[nodiscard]] g3d_Point Project(const g3d_Ray& ray) const noexcept;

    /// Exact comparison of point and normal.
    friend constexpr bool operator==(const g3d_Plane&, const g3d_Plane&) noexcept = default;

private:
    g3d_Point _point;
    g3d_Vector _normal{0, 0, 1};
};
