#include "omu_Get.h"

#include "omu_ErrorExceptions.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <memory>

namespace {

std::string Returned(omu_Primitive* value) {
    const std::unique_ptr<omu_Primitive> owned(value);
    return owned->TypeString().Std() + owned->AsRepr().Std();
}

TEST(omu_ReturnPrim, MakesListsOfOneAndTuplesOfTwoDimensions) {
    EXPECT_EQ(Returned(omu_ReturnPrim(cow_1DArrayList<double>())), "list()");
    EXPECT_EQ(Returned(omu_ReturnPrim(cow_1DArray<cow_String>{"a", "b"})), "list('a', 'b')");
    EXPECT_EQ(Returned(omu_ReturnPrim(cow_1DArrayList<unsigned int>{4294967295U})), "list(-1,)");
    EXPECT_EQ(Returned(omu_ReturnPrim(cow_1DArrayList<float>{0.5F, 3.0F})), "list(0.5, 3.0)");
    EXPECT_EQ(Returned(omu_ReturnPrim(cow_2DArray<double>{{1, 2}, {3, 4}})),
              "tuple((1.0, 2.0), (3.0, 4.0))");
}

/// A tuple of one element: the tuple of \p values.
template <class... Values>
omu_PrimTuple Nested(const Values&... values) {
    omu_PrimTuple inner(sizeof...(values), '(');
    (inner.Put(values), ...);
    omu_PrimTuple outer(1, '(');
    outer.Put(inner);
    outer.Begin();
    return outer;
}

/// A row of a nested tuple.
template <class... Values>
omu_PrimTuple Row(const Values&... values) {
    omu_PrimTuple row(sizeof...(values), '(');
    (row.Put(values), ...);
    return row;
}

TEST(omu_Get, RaisesElementErrorsAtOnceAndLeavesTheRestToTheOuterEnd) {
    cow_1DArray<int> ints{5, 5, 5};
    omu_PrimTuple good = Nested(1, 2);
    omu_Get(good, ints);
    EXPECT_EQ(ints, (cow_1DArray<int>{1, 2}));
    EXPECT_NO_THROW(good.End());

    omu_PrimTuple bad = Nested(1, 2.5);
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { omu_Get(bad, ints); }),
              "arg1[1]; found float, expecting int");

    omu_PrimTuple empty = Nested();
    omu_Get(empty, ints);
    EXPECT_EQ(ints.Length(), 0);
    EXPECT_NO_THROW(empty.End());

    omu_PrimTuple text = Row("text");
    text.Begin();
    cow_1DArrayList<cow_String> strings{"old"};
    EXPECT_NO_THROW(omu_Get(text, strings));
    EXPECT_EQ(strings.Length(), 0);
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { text.End(); }),
              "arg1; found string, expecting tuple");
}

TEST(omu_Get, ReadsRowsOfEqualOrOfAnyLength) {
    cow_2DArray<double> array;
    omu_PrimTuple square = Nested(Row(1, 2), Row(3, 4.5));
    omu_Get(square, array);
    EXPECT_EQ(array, (cow_2DArray<double>{{1, 2}, {3, 4.5}}));

    omu_PrimTuple ragged = Nested(Row(1), Row(2, 3, 4), Row());
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { omu_Get(ragged, array); }),
              "arg1[1]; found sequence of length 3, expecting sequence of length 1");
    ragged.Begin();
    omu_GetIrregular(ragged, array);
    EXPECT_EQ(array, (cow_2DArray<double>{{1, 0, 0}, {2, 3, 4}, {0, 0, 0}}));

    omu_PrimTuple wrong = Nested(Row(1, 2), Row(3, "x"));
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { omu_Get(wrong, array); }),
              "arg1[1][1]; found string, expecting float");
}

TEST(omu_Get, ReadsAParameterOfAnArgumentList) {
    omu_Arguments arguments;
    arguments.Put(cow_1DArrayList<double>{1, 2}, "points");
    arguments.Put("text", "values");
    arguments.Begin();
    cow_1DArrayList<double> points;
    omu_Get(arguments, points, "points");
    EXPECT_EQ(points, (cow_1DArrayList<double>{1, 2}));
    arguments.Optional();
    cow_1DArray<double> kept{7};
    omu_Get(arguments, kept, "absent");
    EXPECT_EQ(kept, cow_1DArray<double>{7});
    omu_Get(arguments, kept, "values");
    EXPECT_EQ(test_Message<omu_KeywordTypeErrorException>([&] { arguments.End(); }),
              "values; found string, expecting tuple");

    omu_Arguments bad;
    bad.Put(cow_1DArrayList<double>{1, 2.5}, "ids");
    bad.Begin();
    cow_1DArrayList<int> ids;
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { omu_Get(bad, ids, "ids"); }),
              "arg1[0]; found float, expecting int");
    EXPECT_NO_THROW(bad.End());  // nothing is recorded outside
}

}  // namespace
