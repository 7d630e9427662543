#pragma once

#include <Python.h>

/// The name of the module and of the program.
inline constexpr const char* host_kName = "caehost";

/// Makes the module `caehost`: commands, symbolic constants, exceptions, the journal. For
/// PyImport_AppendInittab.
PyObject* host_InitModule();
