#include "omu_PrimTuple.h"

#include "UTI_CaeUtils.h"
#include "cls_MemoryStore.h"
#include "nex_TextException.h"
#include "omu_ErrorExceptions.h"
#include "omu_PrimBool.h"
#include "omu_PrimList.h"
#include "omu_StandardTraits.h"
#include "test_Raised.h"

#include <gtest/gtest.h>

#include <cstring>
#include <memory>

namespace {

constexpr char kCode = '(';

/// A tuple of the values given.
template <class... Values>
omu_PrimTuple Tuple(const Values&... values) {
    omu_PrimTuple tuple(sizeof...(values), kCode);
    (tuple.Put(values), ...);
    return tuple;
}

std::string Text(const omu_Primitive& value) { return value.AsRepr().Std(); }

std::string TextAndDelete(omu_PrimSequence* sequence) {
    const std::unique_ptr<omu_PrimSequence> owned(sequence);
    return sequence->TypeString().Std() + Text(*owned);
}

TEST(omu_PrimTuple, PrintsUpToTheCursor) {
    EXPECT_EQ(Text(Tuple()), "()");
    EXPECT_EQ(Text(Tuple(1)), "(1,)");
    EXPECT_EQ(Text(Tuple(1, 2.0, "a", true)), "(1, 2.0, 'a', True)");
    EXPECT_EQ(Text(Tuple(Tuple(1), omu_PrimBool<2>(true))), "((1,), ON)");

    omu_PrimTuple three(3, kCode);
    three.Put(1);
    three.Put("x");
    EXPECT_EQ(three.AsString(5), "(1, 'x')");
    const omu_PrimTuple copy = three;
    EXPECT_EQ(copy.Cursor(), 2);
    EXPECT_EQ(Text(copy), "(1, 'x')");

    // Getters may run past the end; printing then stops at the last slot.
    three.Begin();
    EXPECT_EQ(Text(three), "()");
    int target = 0;
    for (int i = 0; i < 5; ++i) {
        three.Get(target);
    }
    EXPECT_EQ(Text(three), "(1, 'x', None)");
}

TEST(omu_PrimTuple, SlicesRepeatsAndConcatenatesCopies) {
    const omu_PrimTuple five = Tuple(0, 1, 2, 3, 4);
    EXPECT_EQ(TextAndDelete(five.Slice(-2, 100)), "tuple(3, 4)");
    EXPECT_EQ(TextAndDelete(five.Slice(1, -1)), "tuple(1, 2, 3)");
    EXPECT_EQ(TextAndDelete(five.Slice(3, 1)), "tuple()");
    EXPECT_EQ(TextAndDelete(five.Repeat(0)), "tuple()");
    EXPECT_EQ(TextAndDelete(Tuple(7, "a").Repeat(2)), "tuple(7, 'a', 7, 'a')");
    omu_PrimTuple other = Tuple(9);
    EXPECT_EQ(TextAndDelete(Tuple(7).Concat(&other)), "tuple(7, 9)");

    omu_PrimList list(2, kCode);
    list.Put(1);
    list.Put(2);
    EXPECT_EQ(Text(list), "(1, 2)");
    EXPECT_EQ(TextAndDelete(list.Slice(0, 1)), "list(1,)");
    EXPECT_EQ(TextAndDelete(list.Repeat(2)), "list(1, 2, 1, 2)");
    EXPECT_EQ(TextAndDelete(list.Concat(&list)), "list(1, 2, 1, 2)");
    list.Append(new omu_PrimNone);
    EXPECT_EQ(Text(list), "(1, 2, None)");

    const omu_PrimTuple empty(2, kCode);
    const std::string source = "generated/omu/impl/omu_PrimTuple:";
    EXPECT_EQ(test_Raised<nex_TextException>([&] { TextAndDelete(empty.Slice(0, 1)); }),
              source + "950: Tuple Index returned NULL");
    EXPECT_EQ(test_Raised<nex_TextException>([&] { TextAndDelete(empty.Repeat(1)); }),
              source + "969: Tuple Index returned NULL");
    EXPECT_EQ(test_Message<nex_TextException>([&] { TextAndDelete(five.Slice(-9, 2)); }),
              "Tuple Index returned NULL");
}

/// Reads \p value alone into a T and tells the error of End(), or the text of what was read.
template <class T>
std::string ReadAs(const omu_PrimTuple& holder, T target = T()) {
    omu_PrimTuple tuple = holder;
    tuple.Begin();
    tuple.Get(target);
    const std::string message = test_Message<omu_ArgTypeErrorException>([&] { tuple.End(); });
    if (message != "nothing was raised") {
        return message;
    }
    const std::unique_ptr<omu_Primitive> back(omu_ValueTraits<T>::Make(target));
    return Text(*back);
}

TEST(omu_PrimTuple, GettersAcceptExactlyTheirKinds) {
    EXPECT_EQ(ReadAs<int>(Tuple(7)), "7");
    EXPECT_EQ(ReadAs<int>(Tuple(7.0)), "arg1; found float, expecting int");
    EXPECT_EQ(ReadAs<int>(Tuple(short{7})), "arg1; found int, expecting int");
    EXPECT_EQ(ReadAs<short>(Tuple(short{7})), "7");
    EXPECT_EQ(ReadAs<unsigned int>(Tuple(7)), "arg1; found int, expecting int");
    EXPECT_EQ(ReadAs<unsigned int>(Tuple(4294967295U)), "4294967295");
    EXPECT_EQ(ReadAs<double>(Tuple(7)), "7.0");
    EXPECT_EQ(ReadAs<double>(Tuple("7")), "arg1; found string, expecting float");
    EXPECT_EQ(ReadAs<int>(Tuple(omu_PrimBool<2>(true))), "arg1; found ON, expecting int");
    EXPECT_EQ(ReadAs<cow_String>(Tuple("x")), "'x'");
    EXPECT_EQ(ReadAs<cow_String>(Tuple(atr_String("x"))),
              "arg1; found tran_string, expecting string");
    EXPECT_EQ(ReadAs<atr_String>(Tuple("x")), "arg1; found string, expecting tran_string");
    EXPECT_EQ(ReadAs<omi_complex>(Tuple(omi_complex(1, 2))), "1+2j");
    EXPECT_EQ(ReadAs<omu_PrimNone>(Tuple(omu_PrimNone())), "None");
    EXPECT_EQ(ReadAs<omu_PrimPath>(Tuple(1)), "arg1; found int, expecting path");
    EXPECT_EQ(ReadAs<omu_PrimEnumBase>(Tuple(omu_PrimBool<2>(true))), "ON");

    EXPECT_EQ(ReadAs<bool>(Tuple(true)), "True");
    EXPECT_EQ(ReadAs<bool>(Tuple(0)), "False");
    EXPECT_EQ(ReadAs<bool>(Tuple(omu_PrimEnumBase("YES"))), "True");
    EXPECT_EQ(ReadAs<bool>(Tuple(2)), "arg1; found int, expecting Boolean");
    EXPECT_EQ(ReadAs<bool>(Tuple(omu_PrimEnumBase("MAYBE"))),
              "arg1; found MAYBE, expecting Boolean");
}

TEST(omu_PrimTuple, SequenceGettersHaveTheirOwnWords) {
    const omu_PrimTuple wrong = Tuple(Tuple(omu_PrimNone()));
    const std::vector<std::pair<std::string, std::string>> cases = {
        {ReadAs<cow_List<int>>(wrong), "sequence of Integers"},
        {ReadAs<cow_List<bool>>(wrong), "sequence of Bool"},
        {ReadAs<cow_List<float>>(wrong), "sequence of Floats"},
        {ReadAs<cow_1DArrayList<float>>(wrong), "sequence of Floats"},
        {ReadAs<cow_List<cow_String>>(wrong), "sequence of Strings"},
        {ReadAs<cow_1DArrayList<cow_String>>(wrong), "sequence of Strings"},
        {ReadAs<cow_List<atr_String>>(wrong), "sequence of translated Strings"},
        {ReadAs<cow_1DArrayList<double>>(wrong), "sequence of Doubles"},
        {ReadAs<cow_1DArrayList<int>>(wrong), "sequence of Ints"},
        {ReadAs<cow_1DArray<int>>(wrong), "sequence of Ints"},
        {ReadAs<cow_2DArray<double>>(wrong), "2D sequence of Doubles"},
        {ReadAs<cow_2DArray<cow_String>>(wrong), "2D sequence of Strings"},
        {ReadAs<cow_Map<cow_String, float>>(wrong), "Map of string to float"},
    };
    for (const auto& [message, words] : cases) {
        EXPECT_EQ(message, "arg1; found tuple, expecting " + words);
    }
    EXPECT_EQ(ReadAs<cow_1DArrayList<double>>(Tuple(Tuple(1, 2.5))), "(1.0, 2.5)");
    EXPECT_EQ(ReadAs<cow_List<bool>>(Tuple(Tuple(1, false))), "(True, False)");
    EXPECT_EQ(ReadAs<cow_2DArray<double>>(Tuple(Tuple(Tuple(1, 2), Tuple(3, 4)))),
              "((1.0, 2.0), (3.0, 4.0))");
    EXPECT_EQ(ReadAs<cow_2DArray<double>>(Tuple(Tuple(Tuple(1, 2), Tuple(3)))),
              "arg1; found tuple, expecting 2D sequence of Doubles");
    using Map = cow_Map<cow_String, float>;
    EXPECT_EQ(ReadAs<Map>(Tuple(Tuple(Tuple("b", 2), Tuple("a", 1.5)))),
              "(('a', 1.5), ('b', 2.0))");
    const omu_PrimArray array(std::vector<double>{1.5, 2.5});
    EXPECT_EQ(ReadAs<cow_1DArrayList<double>>(Tuple(array)), "(1.5, 2.5)");
    EXPECT_EQ(ReadAs<cow_1DArrayList<double>>(Tuple(Tuple())), "()");
}

TEST(omu_PrimTuple, TheFirstFailureWinsAndKeepsTheTarget) {
    omu_PrimTuple tuple = Tuple(1, "two", "three");
    tuple.Begin();
    int first = 0;
    int second = -2;
    cow_List<int> third{7};
    tuple.Get(first);
    tuple.Get(second);
    EXPECT_TRUE(tuple.Error());
    tuple.Get(third);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, -2);
    EXPECT_EQ(third, cow_List<int>{7});
    EXPECT_EQ(test_Raised<omu_ArgTypeErrorException>([&] { tuple.End("points"); }),
              "generated/omu/impl/omu_PrimTuple:1977: points[1]; found string, expecting int");
}

TEST(omu_PrimTuple, CountsRequiredAndOptionalValues) {
    const auto readThree = [](bool optional, int size) {
        omu_PrimTuple tuple(size, kCode);
        for (int i = 0; i < size; ++i) {
            tuple.Put(i);
        }
        tuple.Begin();
        int value = 0;
        tuple.Get(value);
        tuple.Get(value);
        if (optional) {
            tuple.Optional();
        }
        tuple.Get(value);
        return test_Raised<omu_ArgNumberErrorException>([&] { tuple.End(); });
    };
    const std::string source = "generated/omu/impl/omu_PrimTuple:1981: ";
    EXPECT_EQ(readThree(true, 2), "nothing was raised");
    EXPECT_EQ(readThree(false, 2),
              source + "not all required arguments specified; expected 3, got 2");
    // Too many values name the required count here, which an optional getter does not raise.
    EXPECT_EQ(readThree(true, 4), source + "too many arguments; expected 2, got 4");
}

TEST(omu_PrimTuple, AlternativeStepsBackOverAFailedGetterOnce) {
    omu_PrimTuple tuple = Tuple("x");
    tuple.Begin();
    int number = 0;
    cow_String text;
    EXPECT_FALSE(tuple.Alternative());
    tuple.Get(number);
    EXPECT_TRUE(tuple.Alternative());
    EXPECT_FALSE(tuple.Alternative());
    tuple.Get(text);
    EXPECT_EQ(text, "x");
    EXPECT_NO_THROW(tuple.End());
}

TEST(omu_PrimTuple, NestedTuplesKnowTheirPlace) {
    omu_PrimTuple outer = Tuple(1, Tuple(Tuple(1, "x")));
    outer.Begin();
    int one = 0;
    omu_PrimTuple middle(kCode);
    omu_PrimTuple inner(kCode);
    outer.Get(one);
    outer.Get(middle);
    middle.Begin();
    middle.Get(inner);
    inner.Begin();
    inner.Get(one);
    inner.Get(one);
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { inner.End(); }),
              "arg2[0][1]; found string, expecting int");
}

TEST(omu_PrimTuple, CopiesShareElementsUntilWritten) {
    omu_PrimTuple first = Tuple(1, 2);
    omu_PrimTuple second = first;
    EXPECT_EQ(first.Index(0), second.Index(0));
    second[0] = omu_PrimHolder(new omu_PrimNumber(9));
    EXPECT_EQ(Text(first), "(1, 2)");
    EXPECT_EQ(Text(second), "(9, 2)");
    EXPECT_NE(first, second);
    EXPECT_EQ(test_Message<nex_TextException>([&] { static_cast<void>(second[2]); }),
              "tuple index 2 is not in [0, 2)");
}

TEST(omu_PrimTuple, MayBeAssignedOneOfItsOwnElements) {
    omu_PrimTuple tuple = Tuple(Tuple(Tuple(1, 2), "inner"));
    tuple.Begin();
    tuple.Get(tuple);
    EXPECT_EQ(Text(tuple), "((1, 2), 'inner')");
    tuple = static_cast<const omu_PrimTuple&>(*tuple.Index(0));
    EXPECT_EQ(Text(tuple), "(1, 2)");

    omu_PrimList list(1, kCode);
    list.Put(omu_PrimList(0, kCode));
    list = static_cast<const omu_PrimList&>(*list.Index(0));
    EXPECT_EQ(list.Length(), 0);

    omu_PrimDictionary<cow_String> inner;
    inner.Put("x", 1);
    omu_PrimDictionary<cow_String> dictionary;
    dictionary.Put("k", inner);
    EXPECT_TRUE(dictionary.Get("k", dictionary));
    EXPECT_EQ(dictionary, inner);

    omu_PrimTuple moved = std::move(tuple);
    EXPECT_EQ(Text(moved), "(1, 2)");
    EXPECT_EQ(tuple.Length(), 0);  // NOLINT(bugprone-use-after-move): empty and usable
    EXPECT_EQ(Text(tuple), "()");
}

TEST(omu_PrimTuple, SurvivesTheStoreWithItsReadingState) {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    omu_PrimTuple tuple = Tuple(Tuple(1, "two"), 2.5);
    tuple.Begin();
    int number = 0;
    tuple.Get(number);
    cls_MemoryStore store;
    store.Write(tuple);
    omu_PrimTuple read{store.Reader()};
    EXPECT_EQ(read, tuple);
    EXPECT_EQ(read.Cursor(), 1);
    EXPECT_EQ(test_Message<omu_ArgTypeErrorException>([&] { read.End(); }),
              "arg1; found tuple, expecting int");
    UTI_CaeUtils_finalize(count);
}

/// The place of a virtual function in its class's table, by the common C++ ABI.
template <class Function>
std::size_t Slot(Function function) {
    std::uintptr_t place = 0;
    std::memcpy(&place, &function, sizeof place);
    return (place - 1) / sizeof(void*);
}

TEST(omu_PrimTuple, OperationsStandInTheirSlots) {
    using T = omu_PrimTuple;
    // Two slots for the destructor, then the order that binary interfaces rely on.
    EXPECT_EQ(Slot(&omu_Primitive::TypeString), 2U);
    EXPECT_EQ(Slot(&omu_Primitive::DBWrite), 9U);
    EXPECT_EQ(Slot(&omu_PrimSequence::Length), 10U);
    EXPECT_EQ(Slot(&omu_PrimSequence::Concat), 14U);
    EXPECT_EQ(Slot(static_cast<void (T::*)(const cow_Map<cow_String, float>&)>(&T::Put)), 15U);
    EXPECT_EQ(Slot(static_cast<void (T::*)(omu_Primitive*)>(&T::Put)), 15U + 20U);
    EXPECT_EQ(Slot(static_cast<void (T::*)(short)>(&T::Put)), 15U + 38U);
    EXPECT_EQ(Slot(static_cast<void (T::*)(bool&)>(&T::Get)), 15U + 39U);
    EXPECT_EQ(Slot(&omu_PrimEnumBase::SetValue), 10U);
    EXPECT_EQ(Slot(&omu_PrimEnumBase::PermissibleValues), 11U);
    EXPECT_EQ(Slot(&nex_CommandException::PythonType), 10U);
}

}  // namespace
