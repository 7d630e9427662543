#pragma once

#include "CaeUtilsExport.h"
#include "aio_ostream.h"
#include "cls_Fields.h"
#include "mem_AllocationOperatorsTiny.h"

/// A direction or displacement: three floats, contiguous, zero by default.
///
/// A plain value without virtual functions, so that an array of them goes to a renderer as it is.
/// Products and sums are carried out in double and stored as float; no operation raises.
class CAE_API g3d_Vector : public mem_AllocationOperatorsTiny {
public:
    static constexpr cls_ClassInfo kClass{"g3d_Vector", 0x240001, 1, 203};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    float x = 0;
    float y = 0;
    float z = 0;

    constexpr g3d_Vector() noexcept = default;
    constexpr g3d_Vector(float xValue, float yValue, float zValue) noexcept
        : x(xValue), y(yValue), z(zValue) {}
    explicit g3d_Vector(const cls_ReadVisitor& visitor);

    [[nodiscard]] unsigned DynTypeId() const noexcept { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Does nothing: a value is stored without an identity of its own.
    void NewUid() noexcept {}
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    /// Square root of the sum of squares; infinite only where it exceeds the largest float.
    [[nodiscard]] float Length() const noexcept;
    /// Scales to unit length; a vector shorter than the smallest normal float becomes zero.
    g3d_Vector& Normalize() noexcept;
    /// Unsigned angle to \p other [rad], 0 to pi; \p normalized says that both have unit length.
    /// Within about 0.0045 of parallel or opposite it is exactly 0 or pi. A zero vector is at pi/2
    /// to everything, unless \p normalized.
    [[nodiscard]] float AngleWith(const g3d_Vector& other, bool normalized) const noexcept;
    /// Signed angle to \p other about \p reference [rad], 0 to 2 pi, both included: a snapped 0 on
    /// the negative side is 2 pi.
    [[nodiscard]] float AngleWith(const g3d_Vector& other, bool normalized,
                                  const g3d_Vector& reference) const noexcept;

    /// Exact comparison of the components.
    friend constexpr bool operator==(const g3d_Vector& a, const g3d_Vector& b) noexcept {
        return a.x == b.x && a.y == b.y && a.z == b.z;
    }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("x", &g3d_Vector::x), cls_Field("y", &g3d_Vector::y),
                          cls_Field("z", &g3d_Vector::z));
    }
};

[[nodiscard]] CAE_API float g3d_Dot(const g3d_Vector& a, const g3d_Vector& b) noexcept;
/// The right-handed product a x b.
[[nodiscard]] CAE_API g3d_Vector g3d_Cross(const g3d_Vector& a, const g3d_Vector& b) noexcept;
/// (a x b) . c, without rounding the cross product to float.
[[nodiscard]] CAE_API float g3d_TripleProduct(const g3d_Vector& a, const g3d_Vector& b,
                                              const g3d_Vector& c) noexcept;

[[nodiscard]] constexpr g3d_Vector operator+(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    return {a.x + b.x, a.y + b.y, a.z + b.z};
}
[[nodiscard]] constexpr g3d_Vector operator-(const g3d_Vector& a, const g3d_Vector& b) noexcept {
    return {a.x - b.x, a.y - b.y, a.z - b.z};
}
[[nodiscard]] constexpr g3d_Vector operator*(const g3d_Vector& v, double s) noexcept {
    return {static_cast<float>(v.x * s), static_cast<float>(v.y * s), static_cast<float>(v.z * s)};
}
[[nodiscard]] constexpr g3d_Vector operator*(double s, const g3d_Vector& v) noexcept {
    return v * s;
}
/// \p v times 1/s; by exactly 1 \p v itself. By 0 the components are not finite.
[[nodiscard]] CAE_API g3d_Vector operator/(const g3d_Vector& v, double s) noexcept;

/// Prints "(x, y, z)".
CAE_API aio_ostream& operator<<(aio_ostream& stream, const g3d_Vector& vector);
