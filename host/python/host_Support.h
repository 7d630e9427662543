#pragma once

#include "host_PyRef.h"

/// The part of the bridge that is written in Python: what runs seldom and needs Python's own
/// library (signatures, the prompt with completion and history).

/// Calls the function \p name of it with one argument.
[[nodiscard]] host_PyRef host_CallSupport(const char* name, PyObject* argument);
/// The function itself.
[[nodiscard]] host_PyRef host_SupportFunction(const char* name);
