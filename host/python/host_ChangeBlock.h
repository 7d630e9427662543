#pragma once

#include "host_PyRef.h"

/// changes(label='changes'): for `with`, a block whose commands become one step that can be undone,
/// or nothing when an exception leaves it. The function, for the module's table, and its help.
PyObject* host_ChangeBlock(PyObject* module, PyObject* arguments, PyObject* keywords);
extern const char* const host_kChangeBlockHelp;

/// Adds the type of its result to the module.
void host_DefineChangeBlocks(PyObject* module);
