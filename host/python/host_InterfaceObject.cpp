#include "host_InterfaceObject.h"

#include "host_Changes.h"
#include "host_CommandObject.h"
#include "host_Journal.h"
#include "host_Notes.h"
#include "host_Object.h"
#include "host_Values.h"
#include "omu_ErrorExceptions.h"

#include <algorithm>

namespace {

/// Handle, and the address the object had, by which Python finds it in sets and dicts.
struct Handle {
    omu_InterfaceHandle handle;
    const void* address;

    friend bool operator==(const Handle& left, const Handle& right) {
        return left.handle == right.handle;
    }
};
using Interface = host_Object<Handle>;

std::vector<std::string> Names(const omu_InterfaceObj& object) {
    std::vector<std::string> names;
    for (const cow_List<cow_String>& list : {object.AttributeNames(), object.MethodNames()}) {
        for (const cow_String& name : list) {
            names.push_back(name.Std());
        }
    }
    return names;
}

/// Calls \p action; an attribute error leaves with a note of the nearest attribute or method.
template <class Action>
auto WithNearestName(const omu_InterfaceObj& object, std::string_view name, Action action) {
    try {
        return action();
    } catch (const omu_AttributeErrorException& error) {
        const host_PyRef made = host_MakeError(error);
        if (error.ErrorType() != omu_AttributeErrorEnm::ReadOnly) {
            host_AddNearestNote(made.Get(), name, Names(object));
        }
        PyErr_SetObject(PyExceptionInstance_Class(made.Get()), made.Get());
        throw host_PythonError();
    }
}

PyObject* GetAttribute(PyObject* self, PyObject* attribute) {
    return host_AtBorder([&]() -> PyObject* {
        const cow_String name(host_Utf8(attribute));
        if (name.StartsWith("__")) {  // Python's own names
            return PyObject_GenericGetAttr(self, attribute);
        }
        const omu_InterfaceHandle handle = Interface::Of(self).handle;
        const omu_InterfaceObj& object = handle.Require();
        if (object.MethodNames().IsMember(name)) {
            return host_MethodObject(handle, name).Release();
        }
        return WithNearestName(object, name, [&] {
            return host_ToPython(std::unique_ptr<omu_Primitive>(object.GetAttribute(name)))
                .Release();
        });
    });
}

int SetAttribute(PyObject* self, PyObject* attribute, PyObject* value) {
    return host_AtBorder([&] {
        if (value == nullptr) {
            PyErr_SetString(PyExc_AttributeError,
                            "attributes of the application cannot be deleted");
            throw host_PythonError();
        }
        const cow_String name(host_Utf8(attribute));
        const omu_InterfaceHandle handle = Interface::Of(self).handle;
        omu_InterfaceObj& object = handle.Require();
        const std::unique_ptr<omu_Primitive> given = host_FromPython(value);
        host_JournalEntry entry;
        host_Transaction step(std::string(object.ExposedTypeName()) + "." + name.Std());
        entry.BeginSetting(handle, name, *given);
        WithNearestName(object, name, [&] { object.SetAttribute(name, *given); });
        entry.Commit();
        step.Commit();
        return 0;
    });
}

/// What help() shows: the type's help, and a line for each attribute and method.
std::string HelpText(const omu_InterfaceObj& object) {
    const omu_InterfaceType& type = object.Type();
    std::string text = type.HelpText().empty() ? "An object of the application." : type.HelpText();
    std::string lines;
    std::size_t width = 0;
    const std::vector<std::string> names = Names(object);
    for (const std::string& name : names) {
        width = std::max(width, name.size());
    }
    for (const std::string& name : names) {
        const auto* attribute = type.FindAttribute(name);
        const auto* method = attribute == nullptr ? type.FindMethod(name) : nullptr;
        std::string help = attribute != nullptr ? attribute->help
                           : method != nullptr  ? method->help
                                                : std::string();
        if (attribute != nullptr && !attribute->set) {
            help += help.empty() ? "(read-only)" : " (read-only)";
        }
        (((lines += "\n    ") += name) += std::string(width + 2 - name.size(), ' ')) += help;
    }
    return text + (lines.empty() ? "" : "\n") + lines;
}

PyObject* Doc(PyObject* self, void*) {
    return host_AtBorder([&] {
        const omu_InterfaceObj* object = Interface::Of(self).handle.Get();
        return host_PyText(object != nullptr ? HelpText(*object) : "A deleted object.").Release();
    });
}

PyObject* Dir(PyObject* self, PyObject*) {
    return host_AtBorder([&] {
        const std::vector<std::string> names = Names(Interface::Of(self).handle.Require());
        host_PyRef list = host_Made(PyList_New(0));
        for (const std::string& name : names) {
            host_Checked(PyList_Append(list.Get(), host_PyText(name).Get()));
        }
        return list.Release();
    });
}

PyObject* Repr(PyObject* self) {
    return host_AtBorder([&] {
        const omu_InterfaceObj* object = Interface::Of(self).handle.Get();
        return host_PyText(object != nullptr ? object->AsString(0).View() : "<deleted object>")
            .Release();
    });
}

Py_hash_t Hash(PyObject* self) { return _Py_HashPointer(Interface::Of(self).address); }

}  // namespace

host_PyRef host_InterfaceObject(const omu_InterfaceHandle& handle) {
    return Interface::New({handle, handle.Get()});
}

const omu_InterfaceHandle* host_InterfaceHandle(PyObject* object) noexcept {
    return Interface::Is(object) ? &Interface::Of(object).handle : nullptr;
}

void host_DefineInterfaceObjects(PyObject* module) {
    static PyMethodDef methods[] = {{"__dir__", &Dir, METH_NOARGS, nullptr}, {}};
    static PyGetSetDef attributes[] = {{"__doc__", &Doc, nullptr, nullptr, nullptr}, {}};
    static PyType_Slot slots[] = {{Py_tp_getset, attributes},
                                  {Py_tp_dealloc, host_Slot(&Interface::Dealloc)},
                                  {Py_tp_getattro, host_Slot(&GetAttribute)},
                                  {Py_tp_setattro, host_Slot(&SetAttribute)},
                                  {Py_tp_repr, host_Slot(&Repr)},
                                  {Py_tp_richcompare, host_Slot(&Interface::Compare)},
                                  {Py_tp_hash, host_Slot(&Hash)},
                                  {Py_tp_methods, methods},
                                  {}};
    Interface::Define(module, "caehost.InterfaceObject", Py_TPFLAGS_DISALLOW_INSTANTIATION, slots);
}
