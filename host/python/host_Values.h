#pragma once

#include "host_PyRef.h"
#include "omu_Primitive.h"

#include <memory>

/// Python values to primitives and back.
///
///     bool, int (32 bits), float, complex, str, None    their primitives, and the same type back
///     tuple, list, dict with int or str keys            nested, each as what it was
///     NumPy scalars                                     as Python's bool, int, float or complex
///     buffers of int32, int64, float32, float64         omu_PrimArray, back as NumPy array
///     symbolic constants, interface objects             as such
///     anything else                                     wrapped; the same object comes back
///
/// An empty dict counts as one with str keys. int64 elements must fit 32 bits.

/// A new value for \p object. Raises host_PythonError: OverflowError for integers beyond 32 bits,
/// ValueError for text with lone surrogates, TypeError for keys and elements of other types,
/// RecursionError for nesting without end.
[[nodiscard]] std::unique_ptr<omu_Primitive> host_FromPython(PyObject* object);

/// A Python object for a value. An omu_PrimException raises what it carries.
[[nodiscard]] host_PyRef host_ToPython(const omu_Primitive& value);
/// The same, taking the value over: an array is not copied. Null gives None.
[[nodiscard]] host_PyRef host_ToPython(std::unique_ptr<omu_Primitive> value);

/// Adds the type Value, which stands for values that Python has no type for.
void host_DefineValues(PyObject* module);
