#include "omu_Get.h"

#include "omu_ErrorExceptions.h"
#include "omu_PrimList.h"
#include "utl_Catenator.h"

#include <algorithm>
#include <memory>
#include <type_traits>
#include <vector>

namespace {

template <class T>
omu_Primitive* MakeElement(const T& value) {
    if constexpr (std::is_same_v<T, unsigned int>) {
        // The language's arrays know signed integers only.
        return omu_ValueTraits<int>::Make(static_cast<int>(value));
    } else {
        return omu_ValueTraits<T>::Make(value);
    }
}

template <class Container>
omu_Primitive* ReturnList(const Container& values) {
    auto list = std::make_unique<omu_PrimList>(values.Length(), omu_PrimSequence::kCode);
    for (const auto& value : values) {
        list->Put(MakeElement(value));
    }
    return list.release();
}

/// Reads all elements of \p row, raising at the row's own End.
template <class T, class Store>
void ReadRow(omu_PrimTuple& row, Store store) {
    row.Begin();
    for (int i = 0; i < row.Length(); ++i) {
        T value{};
        row.Get(value);
        store(i, value);
    }
    row.End();
}

template <class T, class Container>
void GetSequence(omu_PrimTuple& tuple, Container& values) {
    omu_PrimTuple inner(omu_PrimSequence::kCode);
    tuple.Get(inner);
    values.Clear();
    if (inner.Length() == 0) {
        return;
    }
    values.Grow(inner.Length());
    ReadRow<T>(inner, [&](int i, T& value) { values.Get(i) = std::move(value); });
}

template <class T>
void GetRows(omu_PrimTuple& tuple, cow_2DArray<T>& values, bool regular) {
    omu_PrimTuple outer(omu_PrimSequence::kCode);
    tuple.Get(outer);
    values.Clear();
    if (outer.Length() == 0) {
        return;
    }
    // All rows first: their lengths decide the array's.
    std::vector<omu_PrimTuple> rows;
    int columns = 0;
    outer.Begin();
    for (int i = 0; i < outer.Length(); ++i) {
        omu_PrimTuple row(omu_PrimSequence::kCode);
        outer.Get(row);
        columns = std::max(columns, row.Length());
        rows.push_back(std::move(row));
    }
    outer.End();
    const int first = rows.front().Length();
    for (int i = 0; regular && i < outer.Length(); ++i) {
        const int length = rows[static_cast<std::size_t>(i)].Length();
        if (length != first) {
            utl_Catenator expected;
            expected << "sequence of length " << first;
            utl_Catenator found;
            found << "sequence of length " << length;
            omu_ArgTypeErrorException(i + 1, expected.AsString(), found.AsString(),
                                      outer.ConstGetNestedErrorStr())
                .Throw("generated/omu/impl/omu_Get", __LINE__);
        }
    }
    values.Resize(outer.Length(), columns);
    for (int i = 0; i < outer.Length(); ++i) {
        ReadRow<T>(rows[static_cast<std::size_t>(i)],
                   [&](int j, T& value) { values.Get(i, j) = std::move(value); });
    }
}

/// Reads the parameter as a tuple and applies \p get to a one-slot argument list holding it, so
/// that its errors read as those of a list of one argument.
template <class Get>
void GetByKeyword(omu_Arguments& arguments, const cow_String& keyword, Get get) {
    omu_PrimTuple inner(omu_PrimSequence::kCode);
    arguments.Get(inner, keyword);
    if (arguments.ErrorOnPrevious()) {
        return;
    }
    omu_Arguments single(1);
    single.Put(inner);
    single.Begin();
    get(static_cast<omu_PrimTuple&>(single));
    single.End();
}

}  // namespace

template <class T>
omu_Primitive* omu_ReturnPrim(const cow_1DArray<T>& values) {
    return ReturnList(values);
}

template <class T>
omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<T>& values) {
    return ReturnList(values);
}

template <class T>
omu_Primitive* omu_ReturnPrim(const cow_2DArray<T>& values) {
    return omu_ValueTraits<cow_2DArray<T>>::Make(values);
}

template <class T>
void omu_Get(omu_PrimTuple& tuple, cow_1DArray<T>& values) {
    GetSequence<T>(tuple, values);
}

template <class T>
void omu_Get(omu_PrimTuple& tuple, cow_1DArrayList<T>& values) {
    GetSequence<T>(tuple, values);
}

template <class T>
void omu_Get(omu_PrimTuple& tuple, cow_2DArray<T>& values) {
    GetRows(tuple, values, true);
}

template <class T>
void omu_GetIrregular(omu_PrimTuple& tuple, cow_2DArray<T>& values) {
    GetRows(tuple, values, false);
}

template <class T>
void omu_Get(omu_Arguments& arguments, cow_1DArray<T>& values, const cow_String& keyword) {
    GetByKeyword(arguments, keyword, [&](omu_PrimTuple& single) { omu_Get(single, values); });
}

template <class T>
void omu_Get(omu_Arguments& arguments, cow_1DArrayList<T>& values, const cow_String& keyword) {
    GetByKeyword(arguments, keyword, [&](omu_PrimTuple& single) { omu_Get(single, values); });
}

template <class T>
void omu_Get(omu_Arguments& arguments, cow_2DArray<T>& values, const cow_String& keyword) {
    GetByKeyword(arguments, keyword, [&](omu_PrimTuple& single) { omu_Get(single, values); });
}

template <class T>
void omu_GetIrregular(omu_Arguments& arguments, cow_2DArray<T>& values, const cow_String& keyword) {
    GetByKeyword(arguments, keyword,
                 [&](omu_PrimTuple& single) { omu_GetIrregular(single, values); });
}

// clang-format off
template omu_Primitive* omu_ReturnPrim(const cow_1DArray<int>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArray<double>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArray<cow_String>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<int>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<unsigned int>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<float>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<double>&);
template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<cow_String>&);
template omu_Primitive* omu_ReturnPrim(const cow_2DArray<double>&);
template omu_Primitive* omu_ReturnPrim(const cow_2DArray<cow_String>&);
template void omu_Get(omu_PrimTuple&, cow_1DArray<int>&);
template void omu_Get(omu_PrimTuple&, cow_1DArray<double>&);
template void omu_Get(omu_PrimTuple&, cow_1DArray<cow_String>&);
template void omu_Get(omu_PrimTuple&, cow_1DArrayList<int>&);
template void omu_Get(omu_PrimTuple&, cow_1DArrayList<unsigned int>&);
template void omu_Get(omu_PrimTuple&, cow_1DArrayList<double>&);
template void omu_Get(omu_PrimTuple&, cow_1DArrayList<cow_String>&);
template void omu_Get(omu_PrimTuple&, cow_2DArray<double>&);
template void omu_Get(omu_PrimTuple&, cow_2DArray<cow_String>&);
template void omu_Get(omu_Arguments&, cow_1DArray<int>&, const cow_String&);
template void omu_Get(omu_Arguments&, cow_1DArray<double>&, const cow_String&);
template void omu_Get(omu_Arguments&, cow_1DArray<cow_String>&, const cow_String&);
template void omu_Get(omu_Arguments&, cow_1DArrayList<int>&, const cow_String&);
template void omu_Get(omu_Arguments&, cow_1DArrayList<double>&, const cow_String&);
template void omu_Get(omu_Arguments&, cow_2DArray<double>&, const cow_String&);
template void omu_GetIrregular(omu_PrimTuple&, cow_2DArray<double>&);
template void omu_GetIrregular(omu_Arguments&, cow_2DArray<double>&, const cow_String&);
// clang-format on
