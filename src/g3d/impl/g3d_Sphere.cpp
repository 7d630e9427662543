#include "g3d_Sphere.h"

#include "g3d_Triple.h"

bool g3d_Sphere::Contains(const g3d_Sphere& other) const noexcept {
    if (other.IsEmpty()) {
        return true;
    }
    const double distance = (g3d_Triple(other._center) - g3d_Triple(_center)).Length();
    return !IsEmpty() && distance + other._radius <= _radius;
}

g3d_Sphere operator+(const g3d_Sphere& a, const g3d_Sphere& b) noexcept {
    if (a.IsEmpty() || b.IsEmpty()) {
        return a.IsEmpty() ? b : a;
    }
    if (a.Contains(b) || b.Contains(a)) {
        return a.Contains(b) ? a : b;
    }
    const g3d_Triple from(a.Center());
    const g3d_Triple to(b.Center());
    const double distance = (to - from).Length();
    if (distance == 0) {  // with a radius that is NaN
        return a.Radius() >= b.Radius() ? a : b;
    }
    const g3d_Triple unit = (to - from) * (1 / distance);
    const double radiusA = a.Radius();
    const double radiusB = b.Radius();
    const g3d_Triple center = ((from - unit * radiusA) + (to + unit * radiusB)) * 0.5;
    return {center.ToPoint(), static_cast<float>((distance + radiusA + radiusB) * 0.5)};
}
