#include "g3d_Plane.h"

#include "g3d_Ray.h"
#include "g3d_Triple.h"

g3d_Point g3d_Plane::Project(const g3d_Ray& ray) const noexcept {
    const g3d_Triple origin(ray.Origin());
    const g3d_Triple direction(ray.Direction());
    const g3d_Triple normal(_normal);
    const double denominator = direction.Dot(normal);
    if (denominator == 0) {
        return {};
    }
    const double parameter = (g3d_Triple(_point) - origin).Dot(normal) / denominator;
    return (origin + direction * parameter).ToPoint();
}
