#pragma once

#include "host_Command.h"
#include "host_PyRef.h"
#include "omu_InterfaceHandle.h"

/// Commands as Python callables of type Command.

/// A callable for the command.
[[nodiscard]] host_PyRef host_CommandObject(host_Command declaration);
/// A callable for a method of an application object.
[[nodiscard]] host_PyRef host_MethodObject(const omu_InterfaceHandle& object,
                                           const cow_String& name);
/// Adds the type Command to the module.
void host_DefineCommands(PyObject* module);
