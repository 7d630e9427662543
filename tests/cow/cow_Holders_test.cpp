#include "cow_2DArray.h"
#include "cow_ArrayCOW.h"
#include "cow_ConstMapSortedIt.h"
#include "cow_Map.h"
#include "cow_MapUtils.h"
#include "cow_String.h"
#include "cow_Virtual.h"
#include "test_Faults.h"

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <stdexcept>
#include <string>

/// \file
/// The holders of one object, and the containers on one shared body.

namespace {

class Shape {
public:
    static inline int live = 0;

    Shape() { ++live; }
    Shape(const Shape& other) : sides(other.sides) {
        if (sides < 0) throw std::runtime_error("copy");
        ++live;
    }
    Shape& operator=(const Shape&) = delete;
    virtual ~Shape() { --live; }
    [[nodiscard]] virtual Shape* Copy() const { return new Shape(*this); }
    [[nodiscard]] virtual std::string Name() const { return "shape"; }
    friend bool operator==(const Shape& a, const Shape& b) { return a.sides == b.sides; }

    int sides = 0;
};

class Square : public Shape {
public:
    [[nodiscard]] Square* Copy() const override { return new Square(*this); }
    [[nodiscard]] std::string Name() const override { return "square"; }
};

using ShapeHolder = cow_ArrayCOW<Shape, cow_Virtual<Shape>>;
static_assert(sizeof(ShapeHolder) == sizeof(void*));

TEST(CowHolders, ReadingSharesAndWritingClonesTheObjectsOwnClass) {
    {
        auto* const object = new Square;
        const ShapeHolder holder(object);
        ShapeHolder copy = holder;
        EXPECT_EQ(&copy.ConstGet(), object);
        EXPECT_EQ(holder.Count(), 2);
        copy.Get().sides = 4;
        EXPECT_EQ(holder->sides, 0);
        EXPECT_EQ(copy.ConstGet().Name(), "square");
        EXPECT_EQ(holder.Count(), 1);
        EXPECT_FALSE(holder == copy);
        Shape* const own = &copy.Get();
        EXPECT_EQ(&copy.ConstGet(), own) << "alone, it writes in place";
        ShapeHolder moved = std::move(copy);
        EXPECT_TRUE(copy.IsNull());
        EXPECT_EQ(&moved.ConstGet(), own);
        EXPECT_FALSE(moved.DeepCopy().SharesWith(moved));
    }
    EXPECT_EQ(Shape::live, 0);
}

// Carries its own count: a holder then needs no body beside it.
class Counted : public cow_HolderCount, public Square {
public:
    [[nodiscard]] Counted* Copy() const override { return new Counted(*this); }
};

TEST(CowHolders, ObjectsThatCountThemselvesAreSharedLikeOthers) {
    {
        auto* const object = new Counted;
        const cow_ArrayCOW<Counted, cow_Virtual<Counted>> holder(object);
        auto copy = holder;
        EXPECT_EQ(object->HolderCount(), 2);
        copy.Get().sides = 4;
        EXPECT_EQ(object->HolderCount(), 1);
        EXPECT_EQ(copy.Count(), 1) << "a copy starts with a count of its own";
        EXPECT_EQ(holder->sides, 0);
    }
    EXPECT_EQ(Shape::live, 0);
}

TEST(CowHolders, NullHoldersRaiseAndFailedClonesChangeNothing) {
    ShapeHolder null;
    EXPECT_TRUE(null.IsNull() && null.Count() == 0 && null == ShapeHolder(nullptr));
    EXPECT_THROW((void)null.ConstGet(), std::out_of_range);
    EXPECT_THROW(null.Get(), std::out_of_range);
    {
        ShapeHolder holder(new Shape);
        holder.Get().sides = -1;
        const ShapeHolder copy = holder;
        EXPECT_THROW(holder.Get(), std::runtime_error);
        EXPECT_EQ(copy.Count(), 2);
        const test_Faults faults(0, 1);
        EXPECT_TRUE(test_Faults::Raises([] { ShapeHolder taken(new Shape); }));
    }
    EXPECT_EQ(Shape::live, 0);
}

TEST(CowHolders, DirectHoldersKeepTheObjectWithinTheCount) {
    using Text = cow_COW<std::string, cow_Direct<std::string>>;
    Text text = Text::Make("xxx");
    const Text copy = text;
    text.Get() += 'y';
    EXPECT_EQ(*copy, "xxx");
    EXPECT_EQ(*text, "xxxy");
    cow_COW<int, cow_Direct<int>> number(new int(7));
    EXPECT_EQ(number.ConstGet(), 7);
    number.Reset();
    EXPECT_TRUE(number.IsNull());
}

TEST(CowMap, DoesWhatAMapDoesWhileCopiesKeepTheirs) {
    std::mt19937 random(7);
    const auto below = [&](int n) { return std::uniform_int_distribution<>(0, n - 1)(random); };
    struct Pair {
        cow_Map<cow_String, int> actual;
        std::map<std::string, int> expected;
    };
    Pair pairs[3];
    for (int step = 0; step < 3000; ++step) {
        auto& [actual, expected] = pairs[below(3)];
        const std::string key = "key " + std::to_string(below(40));
        switch (below(6)) {
            case 0:
                ASSERT_EQ(actual.Remove(key), expected.erase(key) == 1);
                break;
            case 1:
                ASSERT_EQ(actual.InsertUnlessMember(key, step), expected.emplace(key, step).second);
                break;
            case 2:
                actual.Put(key, step);
                expected[key] = step;
                break;
            case 3:
                actual.Get(key) += step;
                expected[key] += step;
                break;
            case 4:
                ASSERT_EQ(actual.IsMember(key), expected.contains(key));
                break;
            default: {
                const Pair copy = pairs[below(3)];
                actual = copy.actual;
                expected = copy.expected;
            }
        }
        for (const Pair& pair : pairs) {
            auto at = pair.expected.begin();
            ASSERT_EQ(pair.actual.Length(), static_cast<int>(pair.expected.size())) << step;
            for (const auto& [name, value] : pair.actual) {
                ASSERT_EQ(name.Std(), at->first) << step;
                ASSERT_EQ(value, at->second) << step;
                ++at;
            }
        }
    }
}

TEST(CowMap, ListsKeysAscendingAndFindsWithoutDetaching) {
    cow_Map<cow_String, float> map{{"b", 2.0F}, {"a", 1.0F}, {"c", 3.0F}};
    const cow_Map<cow_String, float> copy = map;
    EXPECT_TRUE(cow_MapUtils::cow_Keys(map) == (cow_List<cow_String>{"a", "b", "c"}));
    EXPECT_TRUE(cow_MapUtils::cow_Values(map) == (cow_List<float>{1.0F, 2.0F, 3.0F}));
    EXPECT_FALSE(map.InsertUnlessMember("a", 9.0F));
    EXPECT_FALSE(map.Remove("d"));
    EXPECT_EQ(map["b"], 2.0F);
    EXPECT_THROW((void)map.ConstGet("d"), std::out_of_range);
    EXPECT_EQ(map.BodyCount(), 2);
    // A walk keeps the map as it was.
    for (cow_ConstMapSortedIt at(map); at; at.Next())
        map.Remove(at.Key());
    EXPECT_TRUE(map.IsEmpty());
    EXPECT_TRUE(copy == copy.DeepCopy());
    EXPECT_EQ(copy.BodyCount(), 1);
    const cow_Map<cow_String, float> moved = std::move(map);
    EXPECT_TRUE(map.IsEmpty() && !map.IsMember("a"));
}

TEST(Cow2DArray, KeepsWhatBothShapesHave) {
    cow_2DArray<double> array{{1, 2, 3}, {4}};
    EXPECT_EQ(array.Rows(), 2);
    EXPECT_EQ(array.Columns(), 3);
    const cow_2DArray<double> copy = array;
    array.Resize(3, 2);
    EXPECT_TRUE(array == (cow_2DArray<double>{{1, 2}, {4, 0}, {0, 0}}));
    EXPECT_TRUE(copy == (cow_2DArray<double>{{1, 2, 3}, {4, 0, 0}}));
    cow_2DArray<double> shared = copy;
    shared.Get(1, 2) = 6;
    EXPECT_EQ(copy.ConstGet(1, 2), 0);
    EXPECT_EQ(shared.Row(1)[2], 6);
    EXPECT_EQ(shared.BodyCount(), 1);
    EXPECT_THROW((void)copy.ConstGet(2, 0), std::out_of_range);
    EXPECT_THROW((void)copy.ConstGet(0, 3), std::out_of_range);
    EXPECT_THROW((void)copy.ConstGet(0, -1), std::out_of_range);
    EXPECT_THROW(cow_2DArray<double>(1 << 16, 1 << 16), std::out_of_range);
    EXPECT_THROW(cow_2DArray<double>(-1, 2), std::out_of_range);
    const cow_2DArray<double> moved = std::move(shared);
    EXPECT_TRUE(shared.IsEmpty() && shared.Rows() == 0 && shared.Columns() == 0);
    EXPECT_EQ((cow_2DArray<bool>{{true, false}}).ConstGet(0, 1), false);
}

}  // namespace
