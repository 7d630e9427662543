#pragma once

#include "host_PyRef.h"
#include "omu_Arguments.h"

#include <memory>

/// Lets other Python threads run while a command works without touching Python objects.
class host_WithoutInterpreter {
public:
    host_WithoutInterpreter() noexcept : _state(PyEval_SaveThread()) {}
    ~host_WithoutInterpreter() { PyEval_RestoreThread(_state); }
    host_WithoutInterpreter(const host_WithoutInterpreter&) = delete;
    host_WithoutInterpreter& operator=(const host_WithoutInterpreter&) = delete;

private:
    PyThreadState* _state;
};

/// Lets a pending Ctrl-C end a long command: call it from time to time, with or without the
/// interpreter's lock. Raises host_PythonError. Does nothing outside the main thread.
void host_CheckInterrupt();

/// Calls a Python object from within a command and returns its result. Positional and keyword
/// values are passed on; what Python raises comes as host_PythonError, to be let through.
[[nodiscard]] std::unique_ptr<omu_Primitive> host_CallPython(const omu_PyObjectWrapper& callable,
                                                             const omu_Arguments& arguments);

/// Gives a reference back from any thread, with or without the interpreter's lock, and without
/// waiting for it; null is nothing. After the interpreter has ended the object is left alone.
void host_DropAnywhere(PyObject* object) noexcept;

/// Gives back what other threads have dropped. Every command does; the interpreter itself looks for
/// such work only now and then.
void host_GiveBackDropped();

/// Installs what the library needs to count, print and compare wrapped Python objects.
void host_InstallObjectHooks();
