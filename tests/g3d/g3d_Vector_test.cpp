#include "cls_MemoryStore.h"
#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "g3d_Point.h"
#include "g3d_initialize.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

constexpr float kHuge = 3e38F;
constexpr float kTiny = 1e-40F;  // below the smallest normal float
const g3d_Vector kX(1, 0, 0);
const g3d_Vector kY(0, 1, 0);
const g3d_Vector kZ(0, 0, 1);

template <class Value>
std::string Printed(const Value& value) {
    std::string text;
    aio_ostream stream(
        [](void* to, const char* part, std::size_t length) {
            static_cast<std::string*>(to)->append(part, length);
        },
        &text);
    stream << value;
    return text;
}

TEST(Vector, NormalizesToUnitLengthOrZero) {
    const struct {
        g3d_Vector vector, unit;
    } cases[] = {
        {{0, 0, 0}, {0, 0, 0}},
        {{1, 0, 0}, {1, 0, 0}},
        {{3, 4, 0}, {0.6F, 0.8F, 0}},
        {{0, -kHuge, 0}, {0, -1, 0}},
        {{kTiny, 0, 0}, {0, 0, 0}},
        {{0, 1.1754944e-38F, 0}, {0, 1, 0}},
        {{kHuge, kHuge, 0}, {0.70710678F, 0.70710678F, 0}},
    };
    for (auto [vector, unit] : cases) {
        EXPECT_EQ(vector.Normalize(), unit) << Printed(vector);
    }
}

TEST(Vector, AnglesAreSnappedAndSigned) {
    constexpr float kPi = 3.1415927F;
    const g3d_Vector zero;
    const g3d_Vector nearX(1, -0.001F, 0);
    const struct {
        g3d_Vector from, to;
        bool normalized;
        float angle, signedAboutZ;
    } cases[] = {
        {kX, kY, true, kPi / 2, kPi / 2},
        {kY, kX, true, kPi / 2, 4.712389F},
        {{2, 0, 0}, {5, 0, 0}, false, 0, 0},
        {{2, 0, 0}, {-5, 0, 0}, false, kPi, kPi},
        {kX, nearX, false, 0, 6.2831855F},  // a snapped angle on the negative side: 2 pi
        {nearX * -1, kX, false, kPi, 3.1415925F},
        {kX, zero, false, kPi / 2, kPi / 2},
        {zero, zero, false, kPi / 2, kPi / 2},
        {{kHuge, 0, 0}, {kHuge, kHuge, 0}, false, kPi / 4, kPi / 4},
    };
    for (const auto& [from, to, normalized, angle, signedAboutZ] : cases) {
        const std::string which = Printed(from) + " to " + Printed(to);
        EXPECT_FLOAT_EQ(from.AngleWith(to, normalized), angle) << which;
        EXPECT_FLOAT_EQ(from.AngleWith(to, normalized, kZ), signedAboutZ) << which;
    }
}

TEST(Vector, ProductsAreRightHandedAndRoundedOnce) {
    EXPECT_EQ(g3d_Cross(kX, kY), kZ);
    EXPECT_EQ(g3d_TripleProduct(kX, kY, kZ), 1);
    const g3d_Vector a(4097, 4096, 0);  // 4097 squared is no float
    const g3d_Vector b(4098, 4097, 0);
    EXPECT_EQ(g3d_Cross(a, b), kZ);
    EXPECT_EQ(g3d_TripleProduct(a, b, kZ * 7), 7);
    EXPECT_EQ(g3d_Dot(a, g3d_Vector(4097, -4098, 0)), 1);
    EXPECT_EQ(g3d_Vector(kHuge, 0, 0).Length(), kHuge);
    EXPECT_EQ(a / 1, a);
    EXPECT_EQ(a / 2, 0.5 * a);
    EXPECT_TRUE(std::isinf((kX / 0).x) && std::isnan((kX / 0).y));
}

TEST(Point, IsDividedByItsWeightOnlyInArithmetic) {
    const g3d_Point origin(1, 1, 1, 1);
    const std::pair<g3d_Point, g3d_Point> cases[] = {{{2, 4, 6, 2}, {1, 2, 3}},
                                                     {{2, 4, 6, 0}, {2, 4, 6}},
                                                     {{2, 4, 6, 1}, {2, 4, 6}},
                                                     {{2, 4, 6, -0.5F}, {-4, -8, -12}}};
    for (const auto& [point, cartesian] : cases) {
        EXPECT_EQ(point.Cartesian(), cartesian);
        EXPECT_EQ(point - origin, g3d_Vector(cartesian.x - 1, cartesian.y - 1, cartesian.z - 1));
        EXPECT_EQ(origin - point, (point - origin) * -1);
    }
    EXPECT_FALSE(g3d_Point(2, 2, 2, 2) == g3d_Point(1, 1, 1, 1));
    EXPECT_EQ(g3d_Point(), g3d_Point(0, 0, 0, 1));
    EXPECT_EQ(Printed(g3d_Vector(1, -2.5F, 0.1F)), "(1, -2.5, 0.100000001490116)");
    EXPECT_EQ(Printed(g3d_Point(1, 0, -0.125F)), "(1, 0, -0.125, 1)");
}

/// Both classes, as elements and as persistent objects.
template <class Value>
class Stored : public testing::Test {
protected:
    void SetUp() override { g3d_initialize(_count); }
    void TearDown() override { g3d_finalize(_count); }
    static Value Sample();
    static Value SampleOfOld();  ///< without the last field
    static std::string SampleText();

private:
    int _count = 0;
};
// clang-format off
template <> g3d_Vector Stored<g3d_Vector>::Sample() { return {1, -2.5F, kTiny}; }
template <> g3d_Point Stored<g3d_Point>::Sample() { return {1, -2.5F, 0, 4}; }
template <> g3d_Vector Stored<g3d_Vector>::SampleOfOld() { return {1, -2.5F, 0}; }
template <> g3d_Point Stored<g3d_Point>::SampleOfOld() { return {1, -2.5F, 0, 1}; }
template <> std::string Stored<g3d_Vector>::SampleText() {
    return "36.1{x=1 y=-2.5 z=9.9999461011147596e-41}";
}
template <> std::string Stored<g3d_Point>::SampleText() { return "36.2{x=1 y=-2.5 z=0 w=4}"; }
// clang-format on
using Values = testing::Types<g3d_Vector, g3d_Point>;
TYPED_TEST_SUITE(Stored, Values, );

TYPED_TEST(Stored, ReadsBackWhatItWrote) {
    const TypeParam sample = this->Sample();
    cls_MemoryStore store;
    store.Write(sample);
    EXPECT_EQ(store.Text(), this->SampleText());
    EXPECT_TRUE(store.Root().uid.IsNone());

    const std::unique_ptr<TypeParam> read(static_cast<TypeParam*>(store.Construct()));
    EXPECT_EQ(*read, sample);
    EXPECT_EQ(read->DynTypeId(), TypeParam::TypeId());

    store.Root().fields.pop_back();
    EXPECT_EQ(TypeParam(store.Reader()), this->SampleOfOld());
}

TYPED_TEST(Stored, IsAnElementOfTheSharedArrays) {
    const TypeParam sample = this->Sample();
    cow_1DArray<TypeParam> array(2);
    cow_1DArrayList<TypeParam> list(2);
    for (int i = 0; i < 20; ++i) {
        array.Append(sample);
        list.Append(sample);
    }
    const cow_1DArrayList<TypeParam> copy = list;
    list.Get(20) = TypeParam();
    EXPECT_EQ(array.ConstGet(1), TypeParam());
    EXPECT_EQ(array.ConstGet(21), sample);
    EXPECT_EQ(list.ConstGet(20), TypeParam());
    EXPECT_EQ(copy.ConstGet(20), sample);
}

}  // namespace
