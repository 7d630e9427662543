#include "omu_PrimArray.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "nex_TextException.h"
#include "omu_PrimList.h"
#include "omu_TextRepr.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

namespace {

using Doubles = std::vector<double>;
using Ints = std::vector<int>;

std::string Text(const omu_Primitive& value) { return value.AsString(0).Std(); }

std::string OwnedText(omu_Primitive* owned) { return Text(*std::unique_ptr<omu_Primitive>(owned)); }

template <class Action>
std::string Message(Action action) {
    return test_Message<nex_TextException>(action);
}

const omu_PrimArray k2x3(Ints{1, 2, 3, 4, 5, 6}, {2, 3});

TEST(omu_PrimArray, ShowsShapesInNestedBrackets) {
    const struct {
        omu_PrimArray array;
        std::string text;
        std::string type;
    } cases[] = {
        {omu_PrimArray(), "[]", "array of double"},
        {omu_PrimArray(Doubles{1.0, 0.1, 1e20}), "[1.0, 0.1, 1e+20]", "array of double"},
        {omu_PrimArray(std::vector<float>{0.5F, 0.1F}), "[0.5, 0.100000001490116]",
         "array of float"},
        {k2x3, "[[1, 2, 3], [4, 5, 6]]", "array of int"},
        {omu_PrimArray(Ints{7}, {1, 1, 1}), "[[[7]]]", "array of int"},
        {omu_PrimArray(Ints{1, 2, 3, 4}, {2, 1, 2}), "[[[1, 2]], [[3, 4]]]", "array of int"},
        {omu_PrimArray(Ints{}, {2, 0}), "[[], []]", "array of int"},
        {omu_PrimArray(Ints{}, {0, 1000000, 1000000, 1000000, 1000000}), "[]", "array of int"},
    };
    for (const auto& [array, text, type] : cases) {
        EXPECT_EQ(Text(array), text);
        EXPECT_EQ(array.TypeString(), type.c_str());
    }
}

TEST(omu_PrimArray, ShowsOnlySoManyElementsOfEachRow) {
    omu_TextRepr& settings = omi_Singleton<omu_TextRepr>::Instance();
    const omu_PrimArray deep(Ints{1, 2, 3, 4, 5, 6, 7, 8}, {2, 2, 2});
    const omu_PrimArray tall(Ints{1, 2, 3, 4, 5, 6}, {3, 2});
    settings.SetMaxElementsInSequence(2);
    EXPECT_EQ(Text(k2x3), "[[1, 2, ...], [4, 5, ...]]");
    EXPECT_EQ(Text(tall), "[[1, 2], [3, 4], ...]");
    settings.SetMaxElementsInSequence(1);
    EXPECT_EQ(Text(deep), "[[[1, ...], ...], ...]");
    settings.SetMaxElementsInSequence(0);
    EXPECT_EQ(Text(k2x3), "[...]");
    omi_Singleton<omu_TextRepr>::Finalize();
    EXPECT_EQ(Text(deep), "[[[1, 2], [3, 4]], [[5, 6], [7, 8]]]");
}

TEST(omu_PrimArray, RefusesShapesThatDoNotFit) {
    EXPECT_EQ(Message([] {
                  omu_PrimArray(Ints{1, 2, 3}, {2, 2});
              }),
              "PrimArray of 3 elements cannot have the shape 2 x 2");
    EXPECT_EQ(Message([] {
                  omu_PrimArray(Ints{1}, {-1, -1});
              }),
              "PrimArray cannot have the shape -1 x -1");
    EXPECT_EQ(Message([] { omu_PrimArray(Ints{1}, Ints{}); }),
              "PrimArray needs at least one dimension");
    // 2^66 elements: the product wraps to 0 in 64 bits.
    EXPECT_EQ(Message([] {
                  omu_PrimArray(Ints{}, {1 << 22, 1 << 22, 1 << 22});
              }),
              "PrimArray of 0 elements cannot have the shape 4194304 x 4194304 x 4194304");
    EXPECT_EQ(Message([] { omu_PrimArray(Ints{1}, {0}); }),
              "PrimArray of 1 elements cannot have the shape 0");
}

TEST(omu_PrimArray, CopiesShareUntilOneIsWritten) {
    omu_PrimArray array(Doubles{1, 2, 3, 4}, {2, 2});
    const std::unique_ptr<omu_Primitive> copied(array.Copy());
    const auto& copy = *omu_PrimCast<omu_PrimArray>(*copied);
    EXPECT_EQ(copy.Doubles().data(), array.Doubles().data());

    const auto detaches = cow_detachCount;
    EXPECT_TRUE(array.EditInts().empty());  // of another type: nothing to write
    EXPECT_EQ(cow_detachCount, detaches);
    array.EditDoubles()[3] = 9;
    EXPECT_EQ(cow_detachCount, detaches + 1);
    EXPECT_EQ(Text(array), "[[1.0, 2.0], [3.0, 9.0]]");
    EXPECT_EQ(Text(copy), "[[1.0, 2.0], [3.0, 4.0]]");

    const omu_PrimArray deep = copy.DeepCopy();
    EXPECT_TRUE(deep == copy);
    EXPECT_NE(deep.Doubles().data(), copy.Doubles().data());
}

TEST(omu_PrimArray, TakesAVectorOverWithoutCopyingIt) {
    Doubles values(1000, 0.5);
    const double* data = values.data();
    const omu_PrimArray array(std::move(values), {10, 100});
    EXPECT_EQ(array.Doubles().data(), data);
}

TEST(omu_PrimArray, EqualsArraysOfTheSameShapeAndNumbers) {
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_TRUE(omu_PrimArray(Ints{1, 2}) == omu_PrimArray(Doubles{1, 2}));
    EXPECT_TRUE(omu_PrimArray(std::vector<float>{0.5F}) == omu_PrimArray(Doubles{0.5}));
    EXPECT_FALSE(omu_PrimArray(std::vector<float>{0.1F}) == omu_PrimArray(Doubles{0.1}));
    EXPECT_FALSE(k2x3 == omu_PrimArray(Ints{1, 2, 3, 4, 5, 6}, {3, 2}));
    EXPECT_FALSE(omu_PrimArray(Ints{1, 2}) == omu_PrimArray(Ints{1, 3}));
    const omu_PrimArray withNan(Doubles{nan});
    EXPECT_FALSE(withNan == withNan);
    // A tuple has the same kind code.
    EXPECT_FALSE(omu_PrimArray(Ints{}) == omu_PrimTuple(0, omu_PrimSequence::kCode));
}

TEST(omu_PrimArray, IndexGivesNumbersOrRows) {
    const omu_PrimArray floats(std::vector<float>{1.5F, 2.0F});
    const omu_Primitive* element = floats.Index(1);
    EXPECT_EQ(Text(*element), "2.0");
    EXPECT_TRUE(element->IsType('f'));
    EXPECT_EQ(Text(*omu_PrimArray(Ints{7}).Index(0)), "7");

    EXPECT_EQ(Text(*k2x3.Index(0)), "[1, 2, 3]");
    EXPECT_EQ(Text(*k2x3.Index(1)), "[4, 5, 6]");
    EXPECT_EQ(Text(*k2x3.Row(1).Index(2)), "6");
    for (const int index : {-1, 2}) {
        EXPECT_EQ(Message([&] { static_cast<void>(k2x3.Index(index)); }),
                  "PrimArray index out of bounds");
        EXPECT_EQ(Message([&] { static_cast<void>(k2x3.Row(index)); }),
                  "PrimArray index out of bounds");
    }
    EXPECT_EQ(Message([&] { static_cast<void>(floats.Row(0)); }),
              "PrimArray of one dimension has no rows");

    // What Index shows belongs to the array it was asked of, through copies and other shapes.
    omu_PrimArray array = k2x3;
    static_cast<void>(array.Index(0));
    omu_PrimArray copy(array);
    array = floats;
    EXPECT_EQ(Text(*array.Index(0)), "1.5");
    EXPECT_EQ(Text(*copy.Index(1)), "[4, 5, 6]");
}

TEST(omu_PrimArray, SlicesByTheRulesOfTuples) {
    const omu_PrimArray five(Ints{0, 1, 2, 3, 4});
    const struct {
        int begin;
        int end;
        const char* text;
    } cases[] = {
        {-2, 100, "[3, 4]"}, {1, 3, "[1, 2]"}, {0, -1, "[0, 1, 2, 3]"}, {3, 2, "[]"}, {5, 5, "[]"}};
    for (const auto& [begin, end, text] : cases) {
        EXPECT_EQ(OwnedText(five.Slice(begin, end)), text);
    }
    EXPECT_EQ(OwnedText(k2x3.Slice(-1, 2)), "[[4, 5, 6]]");
    for (const int end : {2, -3}) {
        EXPECT_EQ(Message([&] { static_cast<void>(five.Slice(-9, end)); }),
                  "PrimArray index out of bounds");
    }
}

TEST(omu_PrimArray, RepeatsAndJoinsRows) {
    EXPECT_EQ(OwnedText(omu_PrimArray(Ints{1, 2}).Repeat(2)), "[1, 2, 1, 2]");
    EXPECT_EQ(OwnedText(k2x3.Repeat(0)), "[]");
    EXPECT_EQ(Message([] { static_cast<void>(k2x3.Repeat(2000000000)); }),
              "PrimArray would be too long");

    omu_PrimArray row(Doubles{7.5, 8, 9}, {1, 3});
    EXPECT_EQ(OwnedText(k2x3.Concat(&row)), "[[1.0, 2.0, 3.0], [4.0, 5.0, 6.0], [7.5, 8.0, 9.0]]");
    omu_PrimArray flat(Ints{1});
    EXPECT_EQ(OwnedText(flat.Concat(&flat)), "[1, 1]");
    EXPECT_EQ(Message([&] { static_cast<void>(k2x3.Concat(&flat)); }),
              "PrimArray of the shape 2 x 3 cannot be joined with one of the shape 1");

    omu_PrimList list(0, omu_PrimSequence::kCode);
    list.Append(new omu_PrimNumber(2));
    EXPECT_EQ(OwnedText(flat.Concat(&list)), "[1, 2]");
    list.Append(new omu_PrimNumber(3000000000U));
    EXPECT_EQ(OwnedText(flat.Concat(&list)), "[1.0, 2.0, 3000000000.0]");
    list.Append(nullptr);
    EXPECT_EQ(Message([&] { static_cast<void>(flat.Concat(&list)); }),
              "PrimArray cannot be joined with a list that holds other things than numbers");
    EXPECT_EQ(Message([&] { static_cast<void>(flat.Concat(nullptr)); }),
              "PrimArray cannot be joined with nothing");
}

class omu_PrimArrayStore : public testing::Test {
protected:
    void SetUp() override { UTI_CaeUtils_initialize(_count); }
    void TearDown() override { UTI_CaeUtils_finalize(_count); }
    int _count = 0;
};

TEST_F(omu_PrimArrayStore, KeepsShapeAndElementType) {
    const omu_PrimArray arrays[] = {k2x3, omu_PrimArray(),
                                    omu_PrimArray(std::vector<float>{0.1F, 3e38F}),
                                    omu_PrimArray(Doubles{0.1, -0.0, 5e-324}, {3, 1})};
    for (const omu_PrimArray& array : arrays) {
        cls_MemoryStore store;
        store.Write(array);
        const std::unique_ptr<omu_Primitive> read(static_cast<omu_Primitive*>(store.Construct()));
        ASSERT_NE(omu_PrimCast<omu_PrimArray>(*read), nullptr);
        EXPECT_EQ(read->TypeString(), array.TypeString());
        EXPECT_TRUE(*read == array) << store.Text();
    }
}

TEST_F(omu_PrimArrayStore, RefusesAlteredData) {
    const struct {
        const char* field;
        cls_MemoryNode::Value value;
        const char* message;
    } cases[] = {
        {"dims", Ints{2, 4}, "PrimArray of 6 elements cannot have the shape 2 x 4"},
        {"dims", Ints{}, "PrimArray needs at least one dimension"},
        {"typeCode", 'd', "PrimArray of 0 elements cannot have the shape 2 x 3"},
        {"typeCode", 'z', "PrimArray stored with an unknown type code"},
    };
    for (const auto& [field, value, message] : cases) {
        cls_MemoryStore store;
        store.Write(k2x3);
        for (auto& [name, stored] : store.Root().fields) {
            if (name == field) {
                stored = value;
            }
        }
        EXPECT_EQ(Message([&] { omu_PrimArray{store.Reader()}; }), message);
    }
}

}  // namespace
