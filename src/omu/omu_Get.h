#pragma once

#include "cow_1DArray.h"
#include "cow_1DArrayList.h"
#include "cow_2DArray.h"
#include "omu_Arguments.h"

/// \file
/// Containers in and out of the command language: omu_ReturnPrim makes the result of a command,
/// omu_Get and omu_GetIrregular read a container from a tuple or an argument list.
///
/// A missing or non-sequence argument is recorded by the outer tuple or list and raised at its
/// End(). An element of the wrong type raises omu_ArgTypeErrorException at once, with its 1-based
/// position; the container is then partly filled. Every function is instantiated for the element
/// types listed at the end of this header.

/// A new list of the elements in order, owned by the caller; an unsigned is taken as an int.
template <class T>
[[nodiscard]] CAE_API omu_Primitive* omu_ReturnPrim(const cow_1DArray<T>& values);
template <class T>
[[nodiscard]] CAE_API omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<T>& values);
/// A new tuple of row tuples, owned by the caller.
template <class T>
[[nodiscard]] CAE_API omu_Primitive* omu_ReturnPrim(const cow_2DArray<T>& values);

/// Fills \p values from the tuple's next element, a sequence; empties it where there is none.
template <class T>
CAE_API void omu_Get(omu_PrimTuple& tuple, cow_1DArray<T>& values);
template <class T>
CAE_API void omu_Get(omu_PrimTuple& tuple, cow_1DArrayList<T>& values);
/// A sequence of rows of equal length. A row of another length raises omu_ArgTypeErrorException on
/// its position, expecting "sequence of length n".
template <class T>
CAE_API void omu_Get(omu_PrimTuple& tuple, cow_2DArray<T>& values);

/// Fills \p values from the parameter \p keyword, given by position or keyword.
template <class T>
CAE_API void omu_Get(omu_Arguments& arguments, cow_1DArray<T>& values, const cow_String& keyword);
template <class T>
CAE_API void omu_Get(omu_Arguments& arguments, cow_1DArrayList<T>& values,
                     const cow_String& keyword);
template <class T>
CAE_API void omu_Get(omu_Arguments& arguments, cow_2DArray<T>& values, const cow_String& keyword);

/// As omu_Get, for rows of any lengths: the array gets the columns of the longest row, and the
/// cells that a shorter row lacks are zero.
template <class T>
CAE_API void omu_GetIrregular(omu_PrimTuple& tuple, cow_2DArray<T>& values);
template <class T>
CAE_API void omu_GetIrregular(omu_Arguments& arguments, cow_2DArray<T>& values,
                              const cow_String& keyword);

// clang-format off
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArray<int>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArray<double>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArray<cow_String>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<int>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<unsigned int>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<float>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<double>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_1DArrayList<cow_String>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_2DArray<double>&);
extern template omu_Primitive* omu_ReturnPrim(const cow_2DArray<cow_String>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArray<int>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArray<double>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArray<cow_String>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArrayList<int>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArrayList<unsigned int>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArrayList<double>&);
extern template void omu_Get(omu_PrimTuple&, cow_1DArrayList<cow_String>&);
extern template void omu_Get(omu_PrimTuple&, cow_2DArray<double>&);
extern template void omu_Get(omu_PrimTuple&, cow_2DArray<cow_String>&);
extern template void omu_Get(omu_Arguments&, cow_1DArray<int>&, const cow_String&);
extern template void omu_Get(omu_Arguments&, cow_1DArray<double>&, const cow_String&);
extern template void omu_Get(omu_Arguments&, cow_1DArray<cow_String>&, const cow_String&);
extern template void omu_Get(omu_Arguments&, cow_1DArrayList<int>&, const cow_String&);
extern template void omu_Get(omu_Arguments&, cow_1DArrayList<double>&, const cow_String&);
extern template void omu_Get(omu_Arguments&, cow_2DArray<double>&, const cow_String&);
extern template void omu_GetIrregular(omu_PrimTuple&, cow_2DArray<double>&);
extern template void omu_GetIrregular(omu_Arguments&, cow_2DArray<double>&, const cow_String&);
// clang-format on
