#include "omu_Arguments.h"

#include "omi_Singleton.h"
#include "omu_BackwardCompat.h"
#include "omu_ErrorExceptions.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimBool.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <functional>

namespace {

/// Arguments of a call: positional values from 1 on, and keyword values.
omu_Arguments Call(int positional,
                   std::initializer_list<std::pair<const char*, int>> keywords = {}) {
    omu_Arguments call;
    for (int i = 0; i < positional; ++i) {
        call.Put(i + 1);
    }
    for (const auto& [keyword, value] : keywords) {
        call.Put(value, keyword);
    }
    call.Begin();
    return call;
}

/// What End raises after f(a, b, c=, d=): class name's first letters and message.
std::string Outcome(omu_Arguments call, std::string* values = nullptr) {
    int target[4] = {-1, -1, -1, -1};
    call.Get(target[0], "a");
    call.Get(target[1], "b");
    call.Optional();
    call.Get(target[2], "c");
    call.Get(target[3], "d");
    if (values != nullptr) {
        for (const int value : target) {
            *values += std::to_string(value) + " ";
        }
    }
    const bool error = call.Error();
    const std::string message = test_Message<omu_TypeErrorException>([&] { call.End(); });
    EXPECT_EQ(error, message != "nothing was raised");
    return message;
}

TEST(omu_Arguments, MatchesValuesByPositionAndKeyword) {
    const auto values = [](const omu_Arguments& call) {
        std::string text;
        EXPECT_EQ(Outcome(call, &text), "nothing was raised");
        return text;
    };
    EXPECT_EQ(values(Call(2)), "1 2 -1 -1 ");
    EXPECT_EQ(values(Call(4)), "1 2 3 4 ");
    EXPECT_EQ(values(Call(1, {{"d", 9}, {"b", 8}})), "1 8 -1 9 ");
    EXPECT_EQ(values(Call(0, {{"b", 8}, {"a", 7}, {"c", 6}})), "7 8 6 -1 ");
}

TEST(omu_Arguments, RaisesOneErrorByPrecedence) {
    EXPECT_EQ(Outcome(Call(1)), "not all required arguments specified; expected 2, got 1");
    EXPECT_EQ(Outcome(Call(0, {{"b", 1}, {"d", 2}})),
              "not all required arguments specified; expected 2, got 1");
    EXPECT_EQ(Outcome(Call(5)), "too many arguments; expected 4, got 5");
    EXPECT_EQ(Outcome(Call(2, {{"z", 1}})), "keyword error on z");
    EXPECT_EQ(Outcome(Call(2, {{"a", 1}})), "keyword error on a");  // already given by position
    EXPECT_EQ(Outcome(Call(0, {{"z", 1}})), "keyword error on z");  // beats the count

    omu_Arguments positional;
    positional.Put("x");
    positional.Put(2);
    positional.Put("y", "c");
    positional.Begin();
    EXPECT_EQ(Outcome(positional), "arg1; found string, expecting int");

    omu_Arguments keyword = Call(2);
    keyword.Put(omu_PrimBool<2>(true), "d");  // wrong, though optional
    keyword.Begin();
    EXPECT_EQ(Outcome(keyword), "d; found ON, expecting int");
    keyword.Put(1, "e");
    keyword.Begin();
    EXPECT_EQ(Outcome(keyword), "keyword error on e");
    keyword.SetNestedErrorStr("arg1");
    EXPECT_EQ(Outcome(keyword), "arg1keyword error on e");

    // A positional failure is told as one, whatever optional keyword was missed before.
    omu_Arguments mixed;
    mixed.Put("x");
    mixed.Begin();
    mixed.Optional();
    EXPECT_EQ(mixed.Get(cow_String("callback"), nullptr), nullptr);
    int number = 0;
    mixed.Get(number);
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { mixed.End(); }),
              "arg1; found string, expecting int");

    omu_Arguments nested = Call(2);
    nested.Put(2.5, "d");
    nested.SetNestedErrorStr("options");
    nested.Begin();
    EXPECT_EQ(Outcome(nested), "options['d']; found float, expecting int");
}

TEST(omu_Arguments, KeywordGettersHaveTheirOwnWords) {
    const auto words = [](auto target) {
        omu_Arguments call;
        call.Put(omu_PrimExpr("x"), "k");
        call.Begin();
        call.Get(target, "k");
        const std::string message =
            test_Message<omu_KeywordTypeErrorException>([&] { call.End(); });
        const std::string start = "k; found expression, expecting ";
        return message.starts_with(start) ? message.substr(start.size()) : message;
    };
    EXPECT_EQ(words(true), "False, True, 0 or 1");
    EXPECT_EQ(words(1), "int");
    EXPECT_EQ(words(1.0), "float");
    EXPECT_EQ(words(cow_String()), "string");
    EXPECT_EQ(words(utl_FilePath()), "string");
    EXPECT_EQ(words(omi_complex()), "complex");
    EXPECT_EQ(words(omu_PrimTuple('(')), "tuple");
    EXPECT_EQ(words(omu_PrimBool<2>(true)), "OFF or ON");
    EXPECT_EQ(words(omu_PrimDictionary<int>()), "dictionary with integer keys");
    EXPECT_EQ(words(cow_List<int>()), "sequence of Integers");
    EXPECT_EQ(words(cow_1DArrayList<int>()), "sequence of Integers");
    EXPECT_EQ(words(cow_1DArray<int>()), "sequence of Integers");
    EXPECT_EQ(words(cow_1DArrayList<double>()), "sequence of Floats");
    EXPECT_EQ(words(cow_List<atr_String>()), "sequence of Translated Strings");
    EXPECT_EQ(words(cow_2DArray<double>()), "2D sequence of Floats");
    EXPECT_EQ(words(cow_Map<cow_String, float>()), "Map of string to float");

    // The same parameter by position.
    omu_Arguments call;
    call.Put(omu_PrimTuple('('));
    call.Begin();
    bool flag = false;
    call.Get(flag, "k");
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { call.End(); }),
              "arg1; found tuple, expecting Boolean");

    testing::internal::CaptureStderr();
    EXPECT_EQ(words(atr_String()), "tran_string");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "error getting k\n");
}

TEST(omu_Arguments, NestedTuplesAreNamedByKeywordOrPosition) {
    const auto message = [](bool byKeyword, const char* nesting) {
        omu_PrimTuple bad(1, '(');
        bad.Put("x");
        omu_Arguments call;
        if (byKeyword) {
            call.Put(bad, "points");
        } else {
            call.Put(bad);
        }
        call.SetNestedErrorStr(nesting);
        call.Begin();
        omu_PrimTuple inner('(');
        call.Get(inner, "points");
        inner.Begin();
        int value = 0;
        inner.Get(value);
        return test_Message<omu_ArgTypeErrorException>([&] { inner.End(); });
    };
    EXPECT_EQ(message(true, ""), "points[0]; found string, expecting int");
    EXPECT_EQ(message(true, "arg2"), "arg2['points'][0]; found string, expecting int");
    EXPECT_EQ(message(false, ""), "arg1(points)[0]; found string, expecting int");
    EXPECT_EQ(message(false, "arg2"), "arg2[0][0]; found string, expecting int");
}

TEST(omu_Arguments, AlternativeTriesAnotherFormOfTheSameParameter) {
    omu_Arguments call;
    call.Put("text", "size");
    call.Begin();
    int number = 0;
    cow_String text;
    EXPECT_FALSE(call.ErrorOnPrevious());
    EXPECT_FALSE(call.Alternative());
    call.Get(number, "size");
    EXPECT_TRUE(call.ErrorOnPrevious());
    EXPECT_TRUE(call.Alternative());
    EXPECT_FALSE(call.Alternative());
    call.Get(text, "size");
    EXPECT_EQ(text, "text");
    EXPECT_NO_THROW(call.End());

    // A keyword that was not given: the other name of the parameter.
    omu_Arguments other = Call(0, {{"new", 5}});
    other.Get(number, "old");
    EXPECT_TRUE(other.Alternative());
    other.Get(number, "new");
    EXPECT_EQ(number, 5);
    EXPECT_NO_THROW(other.End());

    // Optional mode leaves the required counts as they are.
    omu_Arguments optional = Call(1, {{"new", 6}});
    optional.Get(number, "a");
    optional.Optional();
    optional.Get(number, "old");
    EXPECT_TRUE(optional.Alternative());
    optional.Get(number, "new");
    EXPECT_EQ(number, 6);
    EXPECT_NO_THROW(optional.End());

    // An earlier failure cannot be undone.
    omu_Arguments late = Call(0);
    late.Get(number, "a");
    late.Get(number, "b");
    EXPECT_FALSE(late.Alternative());

    omu_Arguments positional;
    positional.Put("text");
    positional.Begin();
    positional.Get(number, "a");
    EXPECT_TRUE(positional.ErrorOnPrevious());
    EXPECT_TRUE(positional.Alternative());
    positional.Get(text, "a");
    EXPECT_NO_THROW(positional.End());
}

TEST(omu_Arguments, DeprecatedNamesFollowTheSwitch) {
    omu_BackwardCompat& compat = omi_Singleton<omu_BackwardCompat>::Instance();
    const auto read = [&](bool accept) {
        compat.SetAcceptDeprecated(accept);
        omu_Arguments call = Call(0, {{"thick", 3}});
        int value = 0;
        call.Get(value, "thickness");
        call.DeprecatedGet(value, "thick", "renamed");
        EXPECT_EQ(call.DeprecatedKeywords().Length(), accept ? 1 : 0);
        const std::string message = test_Message<omu_TypeErrorException>([&] { call.End(); });
        return std::to_string(value) + ": " + message;
    };
    const bool before = compat.AcceptDeprecated();
    EXPECT_EQ(read(true), "3: nothing was raised");
    EXPECT_EQ(read(false), "0: keyword error on thick");
    compat.SetAcceptDeprecated(before);
}

TEST(omu_Arguments, PrintsTheCall) {
    omu_Arguments call(1);
    EXPECT_EQ(call.AsRepr(), "(None)");
    call.Put("a");
    EXPECT_EQ(call.AsRepr(), "('a')");  // unlike a tuple of one
    call.Put(2.0);
    call.Put(1, "z");
    call.Put(omu_PrimBool<2>(false), "b");
    EXPECT_EQ(call.AsString(0), "('a', 2.0, b=OFF, z=1)");
    EXPECT_EQ(call.KeywordOrder(), (std::vector<cow_String>{"z", "b"}));
    call.Begin();
    EXPECT_EQ(call.AsRepr(), "('a', 2.0, b=OFF, z=1)");
    const std::unique_ptr<omu_Primitive> copy(call.Copy());
    EXPECT_EQ(copy->AsRepr(), call.AsRepr());
}

TEST(omu_Arguments, NamesAreCheckedAsTheyAreRead) {
    omu_Arguments call;
    call.Put(omu_TarvexName(cow_String("Part-1"), GENERAL_NAME));
    call.Put("1abc", "b");
    call.Begin();
    omu_TarvexName name;
    call.Get(name, "a");
    EXPECT_EQ(name.AsString(), "Part-1");
    EXPECT_EQ(test_Message<omu_TvxNameErrorException>([&] { call.Get(name, "b"); }),
              "invalid name");
}

TEST(omu_Arguments, TracesWrappedObjectsPutByPosition) {
    omu_PyObjectWrapper wrapper(nullptr);
    omu_Arguments call;
    testing::internal::CaptureStdout();
    call.Put(&wrapper);
    call.Put(&wrapper, "w");
    std::fflush(stdout);
    char expected[80];
    std::snprintf(expected, sizeof expected, "Put omu_PyObjectWrapper val:%p \n",
                  static_cast<void*>(&wrapper));
    EXPECT_EQ(testing::internal::GetCapturedStdout(), expected);

    // Wrapped objects are read by keyword only.
    call.Begin();
    EXPECT_NE(call.Get(cow_String("w"), nullptr), nullptr);
    EXPECT_EQ(call.Cursor(), 0);
}

}  // namespace
