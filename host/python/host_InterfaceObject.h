#pragma once

#include "host_PyRef.h"
#include "omu_InterfaceObj.h"

/// The application's objects as Python objects of type InterfaceObject: attributes, methods, dir();
/// AccessError once the application has deleted the object.

/// A Python object for the object that \p handle refers to, or did.
[[nodiscard]] host_PyRef host_InterfaceObject(const omu_InterfaceHandle& handle);
/// The handle in an InterfaceObject; null when \p object is something else.
[[nodiscard]] const omu_InterfaceHandle* host_InterfaceHandle(PyObject* object) noexcept;
/// Adds the type InterfaceObject to the module.
void host_DefineInterfaceObjects(PyObject* module);
