#include "g3d_Point.h"

#include "g3d_Triple.h"
#include "uti_DirectClass.h"

#include <type_traits>

// Arrays of points go to a renderer and to the array transforms as they are.
static_assert(sizeof(g3d_Point) == 16 && std::is_trivially_copyable_v<g3d_Point>);
static_assert(std::is_standard_layout_v<g3d_Point>);

g3d_Point::g3d_Point(const cls_ReadVisitor& visitor) { cls_ReadFields(*this, visitor); }

void g3d_Point::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, cls_Uid(), visitor);
}

void g3d_Point::InitializeMetadata(cls_ClassRegistrar& registrar) {
    uti_RegisterDirect<g3d_Point>(registrar);
}

g3d_Point g3d_Point::Cartesian() const noexcept { return g3d_Triple(*this).ToPoint(); }

g3d_Vector operator-(const g3d_Point& p, const g3d_Point& q) noexcept {
    const g3d_Triple difference = g3d_Triple(p) - g3d_Triple(q);
    return {static_cast<float>(difference.x), static_cast<float>(difference.y),
            static_cast<float>(difference.z)};
}

aio_ostream& operator<<(aio_ostream& stream, const g3d_Point& point) {
    return stream << '(' << double{point.x} << ", " << double{point.y} << ", " << double{point.z}
                  << ", " << double{point.w} << ')';
}
