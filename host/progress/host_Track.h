#pragma once

#include "host_PyRef.h"

/// track(iterable, name='Working', total=None): an iterator that shows the progress of a loop of a
/// script. The function, for the module's table, and its help.
PyObject* host_Track(PyObject* module, PyObject* arguments, PyObject* keywords);
extern const char* const host_kTrackHelp;

/// Adds the type Track to the module.
void host_DefineTrack(PyObject* module);
/// Wipes a progress bar of the calling thread, so that Python can print; for the module's table.
PyObject* host_ClearProgress(PyObject* module, PyObject* unused);
