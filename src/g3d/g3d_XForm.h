#pragma once

#include "g3d_Point.h"

/// A 4x4 transform: sixteen contiguous floats, row by row, acting on column vectors.
///
/// A point p is carried to M p: the translation is column 3, the perspective row is row 3. Set
/// operations replace the whole matrix; Translate, Scale and Rotate multiply from the right, so
/// that the last one acts on a point first. Sums of products are carried out in double, from left
/// to right, and rounded to float once; the result is the same bits on every processor. No
/// operation raises.
class CAE_API g3d_XForm {
public:
    /// The identity.
    constexpr g3d_XForm() noexcept = default;
    explicit g3d_XForm(const float m[4][4]) noexcept { SetM(m); }
    /// Rounds the elements to float.
    explicit g3d_XForm(const double m[4][4]) noexcept { SetM(m); }

    /// Element in row \p i and column \p j, each in [0, 4), unchecked.
    [[nodiscard]] float& M(int i, int j) noexcept { return _m[i * 4 + j]; }
    [[nodiscard]] const float& M(int i, int j) const noexcept { return _m[i * 4 + j]; }
    [[nodiscard]] const float& GetM(int i, int j) const noexcept { return _m[i * 4 + j]; }
    /// The sixteen elements, row by row.
    [[nodiscard]] const float* Data() const noexcept { return _m; }

    void SetM(const float m[4][4]) noexcept;
    void SetM(const double m[4][4]) noexcept;
    void GetM(float m[4][4]) const noexcept;
    void GetM(double m[4][4]) const noexcept;

    void SetIdentity() noexcept { *this = g3d_XForm(); }
    /// Columns 0, 1, 2 of the upper 3x3 block; the rest as in the identity.
    void Set(const g3d_Vector& a, const g3d_Vector& b, const g3d_Vector& c) noexcept;
    void SetTranslate(const g3d_Vector& t) noexcept;
    /// By the Cartesian point that \p p stands for.
    void SetTranslate(const g3d_Point& p) noexcept;
    void Translate(double x, double y, double z) noexcept;
    void SetScale(double sx, double sy, double sz) noexcept;
    void Scale(double sx, double sy, double sz) noexcept;
    /// Right-handed rotation by \p angle [deg]; a zero angle or axis sets the identity.
    void SetRotate(double angle, const g3d_Vector& axis) noexcept;
    /// The same from the right; a zero angle or axis changes nothing.
    void Rotate(double angle, const g3d_Vector& axis) noexcept;
    /// From the quaternion (x, y, z, w), which is not normalised first.
    void SetRotate3d(const float q[4]) noexcept;
    /// From the quaternion (0, 0, q[0], q[1]): about z. Element (2, 2) becomes its squared length.
    void SetRotate2d(const float q[2]) noexcept;

    /// Frustum seen along -z, depth \p nearPlane to \p farPlane carried to -1 to 1. An empty one or
    /// nearPlane <= 0 sets the identity.
    void SetPerspectiveProjection(double left, double right, double top, double bottom,
                                  double nearPlane, double farPlane) noexcept;
    /// Box seen along -z; an empty one sets the identity.
    void SetOrthographicProjection(double left, double right, double top, double bottom,
                                   double nearPlane, double farPlane) noexcept;

    [[nodiscard]] double Determinant() const noexcept;
    void Transpose() noexcept;
    /// The transpose, row by row.
    void GetTranspose(double out[16]) const noexcept;
    /// Changes nothing where the determinant is exactly 0.
    void Invert() noexcept;

    /// Carries \p n points in place, all four components, without a division by w. Any alignment
    /// of a float; n <= 0 does nothing.
    void XForm(g3d_Point* pts, int n) const noexcept;
    /// Carries \p n vectors in place by the upper 3x3 block.
    void XForm(g3d_Vector* vs, int n) const noexcept;

    /// this x \p other, which may be this one.
    g3d_XForm& operator*=(const g3d_XForm& other) noexcept;

    /// Exact comparison; a transform equals itself whatever it holds.
    [[nodiscard]] bool operator==(const g3d_XForm& other) const noexcept;

private:
    float _m[16] = {1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1};
};

[[nodiscard]] CAE_API g3d_XForm operator*(const g3d_XForm& a, const g3d_XForm& b) noexcept;

/// Prints a newline, "{", the four rows on lines of their own, and "}".
CAE_API aio_ostream& operator<<(aio_ostream& stream, const g3d_XForm& xform);
