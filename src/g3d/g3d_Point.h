#pragma once

#include "g3d_Vector.h"

/// A homogeneous point: four floats, contiguous, (0, 0, 0, 1) by default.
///
/// A weight w other than 0 and 1 stands for the Cartesian point (x/w, y/w, z/w). A plain value
/// without virtual functions, so that an array of them goes to a renderer as it is.
class CAE_API g3d_Point : public mem_AllocationOperatorsTiny {
public:
    static constexpr cls_ClassInfo kClass{"g3d_Point", 0x240002, 1, 203};
    static constexpr unsigned TypeId() noexcept { return kClass.typeId; }

    float x = 0;
    float y = 0;
    float z = 0;
    float w = 1;

    constexpr g3d_Point() noexcept = default;
    constexpr g3d_Point(float xValue, float yValue, float zValue, float wValue = 1) noexcept
        : x(xValue), y(yValue), z(zValue), w(wValue) {}
    explicit g3d_Point(const cls_ReadVisitor& visitor);

    [[nodiscard]] unsigned DynTypeId() const noexcept { return TypeId(); }
    void DBWrite(const cls_WriteVisitor& visitor) const;
    /// Does nothing: a value is stored without an identity of its own.
    void NewUid() noexcept {}
    static void InitializeMetadata(cls_ClassRegistrar& registrar);

    /// The point of weight 1 that this one stands for; a weight of 0 is not divided by.
    [[nodiscard]] g3d_Point Cartesian() const noexcept;

    /// Exact comparison of all four: (2, 2, 2, 2) is not (1, 1, 1, 1).
    friend constexpr bool operator==(const g3d_Point& a, const g3d_Point& b) noexcept {
        return a.x == b.x && a.y == b.y && a.z == b.z && a.w == b.w;
    }

private:
    friend struct cls_Access;
    static constexpr auto Fields() {
        return std::tuple(cls_Field("x", &g3d_Point::x), cls_Field("y", &g3d_Point::y),
                          cls_Field("z", &g3d_Point::z), cls_Field("w", &g3d_Point::w));
    }
};

/// The vector from \p q to \p p, both taken as Cartesian points.
[[nodiscard]] CAE_API g3d_Vector operator-(const g3d_Point& p, const g3d_Point& q) noexcept;

/// Prints "(x, y, z, w)".
CAE_API aio_ostream& operator<<(aio_ostream& stream, const g3d_Point& point);
