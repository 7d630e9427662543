#pragma once

#include "host_PythonError.h"

/// Symbolic constants as Python objects: one object for each name, which prints as that name.

/// The constant \p name.
[[nodiscard]] host_PyRef host_Constant(std::string_view name);
/// The name of a constant, as a Python string it owns; null when \p object is none.
[[nodiscard]] PyObject* host_ConstantName(PyObject* object) noexcept;
/// Adds the type SymbolicConstant to the module.
void host_DefineConstants(PyObject* module);
