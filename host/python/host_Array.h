#pragma once

#include "host_PyRef.h"
#include "omu_PrimArray.h"

#include <memory>

/// Numeric arrays between Python's buffers and omu_PrimArray: blocks are copied, never elements one
/// by one.

/// The array in a buffer of int32, int64, float32 or float64 elements, of any shape and
/// stride; of a buffer without dimensions (a NumPy scalar) the number. Null for bytes, bytearray
/// and other objects that do not present numbers. Raises host_PythonError: TypeError for other
/// elements, OverflowError for an int64 beyond 32 bits.
[[nodiscard]] std::unique_ptr<omu_Primitive> host_FromBuffer(PyObject* object);

/// A NumPy array of the elements, or a memoryview where there is no NumPy. The elements are not
/// copied when \p array alone holds them.
[[nodiscard]] host_PyRef host_FromArray(omu_PrimArray array);

/// numeric_array(data, dtype, shape): the array of a sequence of numbers, or of the base64 text of
/// little-endian elements, as the journal writes it.
[[nodiscard]] host_PyRef host_NumericArray(PyObject* data, const char* dtype, PyObject* shape);

/// Adds the type ArrayBuffer, through which Python sees the elements.
void host_DefineArrays(PyObject* module);
