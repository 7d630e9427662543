#include "g3d_Vector.h"

#include "g3d_Triple.h"
#include "uti_DirectClass.h"

#include <cmath>
#include <limits>
#include <type_traits>

// Arrays of vectors go to a renderer and to the array transforms as they are.
static_assert(sizeof(g3d_Vector) == 12 && std::is_trivially_copyable_v<g3d_Vector>);
static_assert(std::is_standard_layout_v<g3d_Vector>);

namespace {

double Dot(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    return g3d_Triple(a).Dot(g3d_Triple(b));
}

double LengthOf(const g3d_Vector& v) noexcept { return g3d_Triple(v).Length(); }

g3d_Triple Cross(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    return g3d_Triple(a).Cross(g3d_Triple(b));
}

double TripleProduct(const g3d_Vector& a, const g3d_Vector& b, const g3d_Vector& c) noexcept {
    return Cross(a, b).Dot(g3d_Triple(c));
}

}  // namespace

g3d_Vector::g3d_Vector(const cls_ReadVisitor& visitor) { cls_ReadFields(*this, visitor); }

void g3d_Vector::DBWrite(const cls_WriteVisitor& visitor) const {
    cls_WriteLevel(*this, cls_Uid(), visitor);
}

void g3d_Vector::InitializeMetadata(cls_ClassRegistrar& registrar) {
    uti_RegisterDirect<g3d_Vector>(registrar);
}

float g3d_Vector::Length() const noexcept { return static_cast<float>(LengthOf(*this)); }

g3d_Vector& g3d_Vector::Normalize() noexcept {
    const double length = LengthOf(*this);
    if (length < std::numeric_limits<float>::min()) {
        *this = {};
    } else if (length != 1) {
        *this = *this * (1 / length);
    }
    return *this;
}

float g3d_Vector::AngleWith(const g3d_Vector& other, bool normalized) const noexcept {
    constexpr double kParallel = 0.99999;
    constexpr float kPi = 3.1415927F;

    double cosine = Dot(*this, other);
    if (!normalized) {
        const double length = LengthOf(*this);
        const double otherLength = LengthOf(other);
        cosine = length > 0 ? cosine / length : 0;
        cosine = otherLength > 0 ? cosine / otherLength : 0;
    }
    if (cosine >= kParallel) {
        return 0;
    }
    if (cosine <= -kParallel) {
        return kPi;
    }
    return static_cast<float>(std::acos(cosine));
}

float g3d_Vector::AngleWith(const g3d_Vector& other, bool normalized,
                            const g3d_Vector& reference) const noexcept {
    constexpr double kTwoPi = 6.283185307179586;
    const float angle = AngleWith(other, normalized);
    return TripleProduct(*this, other, reference) < 0 ? static_cast<float>(kTwoPi - angle) : angle;
}

float g3d_Dot(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    return static_cast<float>(Dot(a, b));
}

g3d_Vector g3d_Cross(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    const g3d_Triple cross = Cross(a, b);
    return {static_cast<float>(cross.x), static_cast<float>(cross.y), static_cast<float>(cross.z)};
}

float g3d_TripleProduct(const g3d_Vector& a, const g3d_Vector& b, const g3d_Vector& c) noexcept {
    return static_cast<float>(TripleProduct(a, b, c));
}

g3d_Vector operator/(const g3d_Vector& v, double s) noexcept { return s == 1 ? v : v * (1 / s); }

aio_ostream& operator<<(aio_ostream& stream, const g3d_Vector& vector) {
    return stream << '(' << double{vector.x} << ", " << double{vector.y} << ", " << double{vector.z}
                  << ')';
}
