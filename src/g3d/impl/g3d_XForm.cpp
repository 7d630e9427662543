#include "g3d_XForm.h"

#include "g3d_Triple.h"
#include "g3d_XFormKernels.h"

#include <algorithm>
#include <cmath>
#include <type_traits>
#include <utility>

// Stacks of transforms go to a renderer as they are.
static_assert(sizeof(g3d_XForm) == 64 && std::is_trivially_copyable_v<g3d_XForm>);

namespace {

template <class Number>
void CopyIn(const Number m[4][4], float* to) noexcept {
    for (int i = 0; i < 4; ++i) {
        std::transform(m[i], m[i] + 4, to + i * 4,
                       [](Number element) { return static_cast<float>(element); });
    }
}

template <class Number>
void CopyOut(const float* from, Number m[4][4]) noexcept {
    for (int i = 0; i < 4; ++i) {
        std::copy_n(from + i * 4, 4, m[i]);
    }
}

/// The transform with \p block as its upper 3x3 block and the rest of the identity.
g3d_XForm WithBlock(const double (&block)[3][3]) noexcept {
    g3d_XForm xform;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            xform.M(i, j) = static_cast<float>(block[i][j]);
        }
    }
    return xform;
}

/// An interval that a projection carries to -1 to 1.
struct Range {
    double sum;
    double size;

    Range(double low, double high) noexcept : sum(high + low), size(high - low) {}
    [[nodiscard]] float Offset() const noexcept { return static_cast<float>(sum / size); }
    /// \p factor times 2 over the size.
    [[nodiscard]] float Scale(double factor = 1) const noexcept {
        return static_cast<float>(2 * factor / size);
    }
};

}  // namespace

void g3d_XForm::SetM(const float m[4][4]) noexcept { CopyIn(m, _m); }

void g3d_XForm::SetM(const double m[4][4]) noexcept { CopyIn(m, _m); }

void g3d_XForm::GetM(float m[4][4]) const noexcept { CopyOut(_m, m); }

void g3d_XForm::GetM(double m[4][4]) const noexcept { CopyOut(_m, m); }

void g3d_XForm::Set(const g3d_Vector& a, const g3d_Vector& b, const g3d_Vector& c) noexcept {
    *this = WithBlock({{a.x, b.x, c.x}, {a.y, b.y, c.y}, {a.z, b.z, c.z}});
}

void g3d_XForm::SetTranslate(const g3d_Vector& t) noexcept {
    SetIdentity();
    M(0, 3) = t.x;
    M(1, 3) = t.y;
    M(2, 3) = t.z;
}

void g3d_XForm::SetTranslate(const g3d_Point& p) noexcept {
    const g3d_Point place = p.Cartesian();
    SetTranslate(g3d_Vector(place.x, place.y, place.z));
}

void g3d_XForm::Translate(double x, double y, double z) noexcept {
    for (int i = 0; i < 4; ++i) {
        M(i, 3) = static_cast<float>(M(i, 3) + (M(i, 0) * x + M(i, 1) * y + M(i, 2) * z));
    }
}

void g3d_XForm::SetScale(double sx, double sy, double sz) noexcept {
    *this = WithBlock({{sx, 0, 0}, {0, sy, 0}, {0, 0, sz}});
}

void g3d_XForm::Scale(double sx, double sy, double sz) noexcept {
    for (int i = 0; i < 4; ++i) {
        M(i, 0) = static_cast<float>(M(i, 0) * sx);
        M(i, 1) = static_cast<float>(M(i, 1) * sy);
        M(i, 2) = static_cast<float>(M(i, 2) * sz);
    }
}

void g3d_XForm::SetRotate(double angle, const g3d_Vector& axis) noexcept {
    constexpr double kRadians = 0.017453292519943295;
    const double length = g3d_Triple(axis).Length();
    if (angle == 0 || length == 0) {
        SetIdentity();
        return;
    }
    // Unlike Normalize, this gives an axis of denormal numbers its direction, too.
    const double x = axis.x / length;
    const double y = axis.y / length;
    const double z = axis.z / length;
    const double c = std::cos(angle * kRadians);
    const double s = std::sin(angle * kRadians);
    const double u = 1 - c;
    *this = WithBlock({{x * x + (1 - x * x) * c, x * y * u - z * s, x * z * u + y * s},
                       {x * y * u + z * s, y * y + (1 - y * y) * c, y * z * u - x * s},
                       {x * z * u - y * s, y * z * u + x * s, z * z + (1 - z * z) * c}});
}

void g3d_XForm::Rotate(double angle, const g3d_Vector& axis) noexcept {
    if (angle == 0 || g3d_Triple(axis).Squared() == 0) {
        return;  // not even the sign of a zero changes
    }
    g3d_XForm rotation;
    rotation.SetRotate(angle, axis);
    *this *= rotation;
}

void g3d_XForm::SetRotate3d(const float q[4]) noexcept {
    const double x = q[0];
    const double y = q[1];
    const double z = q[2];
    const double w = q[3];
    const double xx = x * x;
    const double yy = y * y;
    const double zz = z * z;
    const double ww = w * w;
    *this = WithBlock({{xx + ww - yy - zz, 2 * x * y - 2 * z * w, 2 * x * z + 2 * y * w},
                       {2 * x * y + 2 * z * w, yy + ww - zz - xx, 2 * y * z - 2 * x * w},
                       {2 * x * z - 2 * y * w, 2 * y * z + 2 * x * w, zz + ww - xx - yy}});
}

void g3d_XForm::SetRotate2d(const float q[2]) noexcept {
    const float quaternion[4] = {0, 0, q[0], q[1]};
    SetRotate3d(quaternion);
}

void g3d_XForm::SetPerspectiveProjection(double left, double right, double top, double bottom,
                                         double nearPlane, double farPlane) noexcept {
    SetIdentity();
    if (left == right || top == bottom || farPlane <= nearPlane || nearPlane <= 0) {
        return;
    }
    const Range x(left, right);
    const Range y(bottom, top);
    const Range z(nearPlane, farPlane);
    M(0, 0) = x.Scale(nearPlane);
    M(0, 2) = x.Offset();
    M(1, 1) = y.Scale(nearPlane);
    M(1, 2) = y.Offset();
    M(2, 2) = -z.Offset();
    M(2, 3) = -z.Scale(farPlane * nearPlane);
    M(3, 2) = -1;
    M(3, 3) = 0;
}

void g3d_XForm::SetOrthographicProjection(double left, double right, double top, double bottom,
                                          double nearPlane, double farPlane) noexcept {
    SetIdentity();
    if (left == right || top == bottom || farPlane <= nearPlane) {
        return;
    }
    const Range x(left, right);
    const Range y(bottom, top);
    const Range z(nearPlane, farPlane);
    M(0, 0) = x.Scale();
    M(0, 3) = -x.Offset();
    M(1, 1) = y.Scale();
    M(1, 3) = -y.Offset();
    M(2, 2) = -z.Scale();
    M(2, 3) = -z.Offset();
}

double g3d_XForm::Determinant() const noexcept { return g3d_XFormKernels::Best().determinant(_m); }

void g3d_XForm::Transpose() noexcept {
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < i; ++j) {
            std::swap(M(i, j), M(j, i));
        }
    }
}

void g3d_XForm::GetTranspose(double out[16]) const noexcept {
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            out[i * 4 + j] = M(j, i);
        }
    }
}

void g3d_XForm::Invert() noexcept { static_cast<void>(g3d_XFormKernels::Best().invert(_m, _m)); }

void g3d_XForm::XForm(g3d_Point* pts, int n) const noexcept {
    if (n > 0) {
        g3d_XFormKernels::Best().points(_m, &pts->x, n);
    }
}

void g3d_XForm::XForm(g3d_Vector* vs, int n) const noexcept {
    if (n > 0) {
        g3d_XFormKernels::Best().vectors(_m, &vs->x, n);
    }
}

g3d_XForm& g3d_XForm::operator*=(const g3d_XForm& other) noexcept {
    g3d_XFormKernels::Best().multiply(_m, other._m, _m);
    return *this;
}

bool g3d_XForm::operator==(const g3d_XForm& other) const noexcept {
    return this == &other || std::equal(_m, _m + 16, other._m);
}

g3d_XForm operator*(const g3d_XForm& a, const g3d_XForm& b) noexcept {
    g3d_XForm product;
    g3d_XFormKernels::Best().multiply(a.Data(), b.Data(), &product.M(0, 0));
    return product;
}

aio_ostream& operator<<(aio_ostream& stream, const g3d_XForm& xform) {
    stream << "\n{\n";
    for (int i = 0; i < 4; ++i) {
        stream << "  " << double{xform.M(i, 0)};
        for (int j = 1; j < 4; ++j) {
            stream << ' ' << double{xform.M(i, j)};
        }
        stream << '\n';
    }
    return stream << "}\n";
}
