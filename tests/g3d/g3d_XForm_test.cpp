#include "g3d_XFormStack.h"
#include "mem_ExhaustedException.h"
#include "nex_AssertException.h"
#include "test_Faults.h"

// The loops themselves, private to the library, which chooses among them by the processor.
#include "../../src/g3d/impl/g3d_XFormKernels.cpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace {

constexpr float kEqualRows[4][4] = {{1, 2, 3, 4}, {5, 6, 7, 9}, {1, 2, 3, 4}, {2, 3, 5, 7}};
const g3d_Vector kX(1, 0, 0);
const g3d_Vector kZ(0, 0, 1);

g3d_XForm FromRows(std::initializer_list<float> elements) {
    g3d_XForm xform;
    std::copy(elements.begin(), elements.end(), &xform.M(0, 0));
    return xform;
}

/// Elements of ordinary size, with zeros of both signs, denormal and huge numbers among them.
class Numbers {
public:
    float Wild() {
        constexpr float kSpecial[] = {0.0F, -0.0F, 1.0F, 1e-41F, -3e38F, 1e38F};
        const unsigned kind = _random() % 32;
        return kind < std::size(kSpecial) ? kSpecial[kind] : Tame();
    }
    float Tame() { return std::uniform_real_distribution<float>(-4, 4)(_random); }
    g3d_XForm TameXForm() {
        g3d_XForm xform;
        std::generate_n(&xform.M(0, 0), 16, [&] { return Tame(); });
        return xform;
    }

private:
    std::mt19937 _random{11};
};

/// The sets of loops for processors that may have less than this one.
std::vector<const g3d_XFormKernels*> LesserSets() {
    std::vector<const g3d_XFormKernels*> sets{&g3d_XFormKernels::Baseline()};
#ifdef G3D_HAVE_AVX2
    if (__builtin_cpu_supports("avx2")) {
        sets.push_back(&avx2::kKernels);
    }
#endif
    return sets;
}

/// Rows of \p a times the column of \p terms numbers at b, b + step, ...: in double, rounded once.
float RowTimes(const float* a, const float* b, int step, int terms) {
    double sum = 1.0 * a[0] * b[0];
    for (int k = 1; k < terms; ++k) {
        sum += 1.0 * a[k] * b[k * step];
    }
    return static_cast<float>(sum);
}

void ExpectNear(const g3d_XForm& actual, const g3d_XForm& expected, double tolerance) {
    for (int i = 0; i < 16; ++i) {
        const double reference = expected.Data()[i];
        ASSERT_NEAR(actual.Data()[i], reference, tolerance * (1 + std::abs(reference))) << i;
    }
}

g3d_Point Carried(const g3d_XForm& xform, g3d_Point point) {
    xform.XForm(&point, 1);
    return point.Cartesian();
}

void ExpectNear(const g3d_Point& actual, const g3d_Point& expected, double tolerance = 1e-6) {
    EXPECT_NEAR(actual.x, expected.x, tolerance);
    EXPECT_NEAR(actual.y, expected.y, tolerance);
    EXPECT_NEAR(actual.z, expected.z, tolerance);
}

// The same bits from every set of loops as from plain ones, at any length and alignment, and not a
// byte changed before or behind.
TEST(XFormArrays, AreCarriedToTheBitAndNothingElseIsWritten) {
    Numbers numbers;
    for (int step = 0; step < 400; ++step) {
        const bool isPoint = step % 2 == 0;
        const int width = isPoint ? 4 : 3;
        const int n = step / 2 % 10 + (step % 7 == 0 ? 90 : 0);
        const int offset = step / 20 % 4;  // floats off a 16-byte boundary
        g3d_XForm xform;
        std::generate_n(&xform.M(0, 0), 16, [&] { return numbers.Wild(); });

        alignas(16) float before[440];
        std::generate_n(before, 440, [&] { return numbers.Wild(); });
        alignas(16) float expected[440];
        std::copy_n(before, 440, expected);
        const int first = 16 + offset;
        for (int i = 0; i < n * width; ++i) {
            const float* element = before + first + i / width * width;
            expected[first + i] = RowTimes(xform.Data() + i % width * 4, element, 1, width);
        }
        const auto check = [&](const char* which, auto carry) {
            alignas(16) float actual[440];
            std::copy_n(before, 440, actual);
            carry(actual + first);
            for (int i = 0; i < 440; ++i) {
                const bool bothNaN = std::isnan(actual[i]) && std::isnan(expected[i]);
                ASSERT_TRUE(bothNaN || std::memcmp(actual + i, expected + i, 4) == 0)
                    << which << ", step " << step << ", n " << n << ", float " << i - first << ": "
                    << actual[i] << " for " << expected[i];
            }
        };
        for (const auto* kernels : LesserSets()) {
            check("loops", [&](float* from) {
                (isPoint ? kernels->points : kernels->vectors)(xform.Data(), from, n);
            });
        }
        check("public", [&](float* from) {
            isPoint ? xform.XForm(reinterpret_cast<g3d_Point*>(from), n)
                    : xform.XForm(reinterpret_cast<g3d_Vector*>(from), n);
        });
    }
    g3d_XForm().XForm(static_cast<g3d_Point*>(nullptr), -1);
}

TEST(XForm, ProductsMayReadWhatTheyWrite) {
    Numbers numbers;
    for (int step = 0; step < 200; ++step) {
        const g3d_XForm a = numbers.TameXForm();
        const g3d_XForm b = step % 4 == 0 ? a : numbers.TameXForm();
        g3d_XForm expected;
        for (int i = 0; i < 16; ++i) {
            expected.M(i / 4, i % 4) = RowTimes(a.Data() + i / 4 * 4, b.Data() + i % 4, 4, 4);
        }
        g3d_XForm left = a;
        left *= a == b ? left : b;
        ASSERT_TRUE(a * b == expected && left == expected) << step;
        for (const auto* kernels : LesserSets()) {
            g3d_XForm right = b;
            kernels->multiply(a.Data(), right.Data(), &right.M(0, 0));
            ASSERT_TRUE(right == expected) << step;
        }
    }
}

/// The sum over all permutations.
long double Leibniz(const g3d_XForm& m) {
    int p[] = {0, 1, 2, 3};
    long double sum = 0;
    do {
        long double term = 1;
        for (int i = 0; i < 4; ++i) {
            term *= m.M(i, p[i]);
            for (int j = 0; j < i; ++j) {
                term = p[j] > p[i] ? -term : term;
            }
        }
        sum += term;
    } while (std::next_permutation(p, p + 4));
    return sum;
}

TEST(XForm, InvertsByTheDeterminant) {
    Numbers numbers;
    for (int step = 0; step < 300; ++step) {
        const g3d_XForm xform = numbers.TameXForm();
        const auto determinant = static_cast<double>(Leibniz(xform));
        ASSERT_NEAR(xform.Determinant(), determinant, 1e-10);
        g3d_XForm inverse = xform;
        inverse.Invert();
        ExpectNear(xform * inverse, g3d_XForm(), 2e-5 / std::min(1.0, std::abs(determinant)));
        for (const auto* kernels : LesserSets()) {
            g3d_XForm other;
            ASSERT_TRUE(kernels->invert(xform.Data(), &other.M(0, 0)) && other == inverse);
            ASSERT_EQ(kernels->determinant(xform.Data()), xform.Determinant());
        }
    }
}

TEST(XForm, SingularOnesStayAsTheyAre) {
    Numbers numbers;
    for (int row = 0; row < 5; ++row) {
        g3d_XForm singular = row < 4 ? numbers.TameXForm() : g3d_XForm(kEqualRows);
        std::fill_n(&singular.M(row % 4, 0), row < 4 ? 4 : 0, 0.0F);
        const g3d_XForm before = singular;
        EXPECT_EQ(singular.Determinant(), 0) << row;
        singular.Invert();
        EXPECT_TRUE(singular == before) << row;
    }
}

TEST(XForm, VerbsMultiplyFromTheRightInAllFourRows) {
    Numbers numbers;
    for (int step = 0; step < 50; ++step) {
        const g3d_XForm base = numbers.TameXForm();
        const g3d_Vector v(numbers.Tame(), numbers.Tame(), numbers.Tame());
        g3d_XForm factors[3];
        factors[0].SetTranslate(v);
        factors[1].SetScale(v.x, v.y, v.z);
        factors[2].SetRotate(v.x * 100, v);
        g3d_XForm verbs[3] = {base, base, base};
        verbs[0].Translate(v.x, v.y, v.z);
        verbs[1].Scale(v.x, v.y, v.z);
        verbs[2].Rotate(v.x * 100, v);
        for (int i = 0; i < 3; ++i) {
            ExpectNear(verbs[i], base * factors[i], 1e-6);
        }
    }
}

TEST(XForm, RotatesRightHandedByDegreesOrQuaternions) {
    const struct {
        double angle;
        g3d_Vector axis;
        g3d_Point from, to;
    } cases[] = {
        {90, kZ, {1, 0, 0}, {0, 1, 0}},
        {90, kX * 5, {0, 1, 0}, {0, 0, 1}},
        {-90, {0, 2, 0}, {0, 0, 1}, {-1, 0, 0}},
        {120, {3, 3, 3}, {1, 2, 3}, {3, 1, 2}},
        {450, kZ * 1e-42, {1, 0, 0}, {0, 1, 0}},  // a denormal axis has a direction
        {30, kZ * -3e38, {2, 0, 0}, {1.7320508F, -1, 0}},
    };
    for (const auto& [angle, axis, from, to] : cases) {
        g3d_XForm rotation;
        rotation.SetRotate(angle, axis);
        ExpectNear(Carried(rotation, from), to);

        const double half = angle * std::acos(-1.0) / 360;
        g3d_Vector unit = axis * (1e-30 / axis.Length());
        const g3d_Vector part = unit.Normalize() * std::sin(half);
        const float q[4] = {part.x, part.y, part.z, static_cast<float>(std::cos(half))};
        rotation.SetRotate3d(q);
        ExpectNear(Carried(rotation, from), to);
    }
    g3d_XForm rotation;
    const float twice[2] = {1, 2};
    rotation.SetRotate2d(twice);  // not a unit quaternion: everything is five times as large
    EXPECT_TRUE(rotation == FromRows({3, -4, 0, 0, 4, 3, 0, 0, 0, 0, 5, 0, 0, 0, 0, 1}));

    const g3d_XForm base = Numbers().TameXForm();
    for (const auto& [angle, axis] : {std::pair(0.0, kX), std::pair(45.0, g3d_Vector())}) {
        rotation = base;
        rotation.Rotate(angle, axis);
        EXPECT_TRUE(rotation == base);
        rotation.SetRotate(angle, axis);
        EXPECT_TRUE(rotation == g3d_XForm());
    }
}

TEST(XForm, ProjectionsCarryTheirCornersToTheUnitCube) {
    for (int corner = 0; corner < 8; ++corner) {
        const bool right = corner & 1;
        const bool top = corner & 2;
        const bool far = corner & 4;
        const g3d_Point cube(right ? 1 : -1, top ? 1 : -1, far ? 1 : -1);
        const g3d_Point box(right ? 3 : -2, top ? 4 : -1, far ? -10 : -2);
        const float spread = box.z / -2;  // a frustum widens with the depth
        g3d_XForm xform;
        xform.SetOrthographicProjection(-2, 3, 4, -1, 2, 10);
        ExpectNear(Carried(xform, box), cube);
        xform.SetPerspectiveProjection(-2, 3, 4, -1, 2, 10);
        ExpectNear(Carried(xform, {box.x * spread, box.y * spread, box.z}), cube);
    }
    const struct {
        double left, top, near, far;
        bool isBox;  // an orthographic projection is none
    } empty[] = {{1, 1, 1, 2, false}, {0, -1, 1, 2, false}, {0, 1, 2, 2, false},
                 {0, 1, 3, 2, false}, {0, 1, 0, 2, true},   {0, 1, -1, 2, true}};
    for (const auto& [left, top, near, far, isBox] : empty) {
        g3d_XForm xform = FromRows({7});
        xform.SetPerspectiveProjection(left, 1, top, -1, near, far);
        EXPECT_TRUE(xform == g3d_XForm());
        xform.SetOrthographicProjection(left, 1, top, -1, near, far);
        EXPECT_EQ(xform == g3d_XForm(), !isBox);
    }
}

TEST(XForm, ElementsLieRowByRow) {
    const g3d_XForm xform = FromRows({0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15});
    float single[4][4];
    double wide[4][4];
    double transposed[16];
    xform.GetM(single);
    xform.GetM(wide);
    xform.GetTranspose(transposed);
    EXPECT_EQ(xform.GetM(2, 3), 11);
    EXPECT_TRUE(g3d_XForm(single) == xform && g3d_XForm(wide) == xform);
    g3d_XForm other = xform;
    other.Transpose();
    EXPECT_TRUE(std::equal(transposed, transposed + 16, other.Data()) && other.M(3, 2) == 11);
    other.Set({1, 2, 3}, {4, 5, 6}, {7, 8, 9});
    EXPECT_TRUE(other == FromRows({1, 4, 7, 0, 2, 5, 8, 0, 3, 6, 9, 0, 0, 0, 0, 1}));

    other.SetTranslate(g3d_Point(2, 4, 6, 2));
    EXPECT_EQ(Carried(other, g3d_Point()), g3d_Point(1, 2, 3));
    other.SetTranslate(g3d_Point(2, 4, 6, 0));
    EXPECT_EQ(Carried(other, g3d_Point()), g3d_Point(2, 4, 6));
    std::string text;
    const auto append = [](void* to, const char* part, std::size_t length) {
        static_cast<std::string*>(to)->append(part, length);
    };
    aio_ostream stream(append, &text);
    stream << other;
    EXPECT_EQ(text, "\n{\n  1 0 0 2\n  0 1 0 4\n  0 0 1 6\n  0 0 0 1\n}\n");

    other.M(3, 3) = std::numeric_limits<float>::quiet_NaN();
    EXPECT_TRUE(other == other && other != g3d_XForm(other));
}

TEST(XFormStack, TopIsTheProductOfAllPushedWithinTheCapacity) {
    Numbers numbers;
    const g3d_XForm a = numbers.TameXForm();
    const g3d_XForm b = numbers.TameXForm();
    g3d_XFormStack stack(4);
    EXPECT_TRUE(stack.Top() == g3d_XForm());
    stack.Push(a);
    stack.Push(b);
    EXPECT_TRUE(stack.Top() == a * b);
    stack.Push(stack.Top());

    g3d_XFormStack copy(stack);
    g3d_XFormStack assigned(1);
    assigned = stack;
    stack.Reset(b);
    stack.Push(b);
    EXPECT_TRUE(stack.Top() == b * b);
    for (g3d_XFormStack* other : {&copy, &assigned}) {
        EXPECT_THROW(other->Push(a), nex_AssertException);
        EXPECT_TRUE(other->Top() == a * b * (a * b));
        *other = static_cast<const g3d_XFormStack&>(*other);
        other->Reset(a);
        EXPECT_TRUE(other->Top() == a);
    }
    EXPECT_THROW(g3d_XFormStack(0), nex_AssertException);
    const test_Faults fault(0, 1);
    EXPECT_THROW(g3d_XFormStack(4), mem_ExhaustedException);
}

}  // namespace
