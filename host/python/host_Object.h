#pragma once

#include "host_PythonError.h"

#include <new>

/// A Python object that holds a C++ value of type T; at most one Python type for each T.
template <class T>
struct host_Object {
    PyObject ob_base;
    T value;

    /// The type, from Define on.
    static inline PyTypeObject* type = nullptr;

    /// Makes the type \p name ("caehost.Name") and adds it to the module.
    static void Define(PyObject* module, const char* name, unsigned flags, PyType_Slot* slots) {
        PyType_Spec spec{name, static_cast<int>(sizeof(host_Object)), 0,
                         static_cast<unsigned>(Py_TPFLAGS_DEFAULT) | flags, slots};
        host_PyRef made = host_Made(PyType_FromSpec(&spec));
        Py_XDECREF(reinterpret_cast<PyObject*>(type));
        type = reinterpret_cast<PyTypeObject*>(made.Release());
        host_Checked(PyModule_AddType(module, type));
    }
    /// A new object that takes \p held over.
    [[nodiscard]] static host_PyRef New(T held) {
        auto* self = PyObject_New(host_Object, type);
        host_PyRef made = host_Made(reinterpret_cast<PyObject*>(self));
        ::new (&self->value) T(std::move(held));
        return made;
    }
    [[nodiscard]] static bool Is(PyObject* object) noexcept { return Py_IS_TYPE(object, type); }
    [[nodiscard]] static T& Of(PyObject* object) noexcept {
        return reinterpret_cast<host_Object*>(object)->value;
    }
    /// The tp_dealloc of the type.
    static void Dealloc(PyObject* self) noexcept {
        PyTypeObject* const own = Py_TYPE(self);
        Of(self).~T();
        PyObject_Free(self);
        Py_DECREF(own);
    }
    /// The tp_richcompare of a type with == and != by the values.
    static PyObject* Compare(PyObject* left, PyObject* right, int operation) {
        if (!Is(right) || (operation != Py_EQ && operation != Py_NE)) {
            Py_RETURN_NOTIMPLEMENTED;
        }
        return PyBool_FromLong((Of(left) == Of(right)) == (operation == Py_EQ));
    }
};

/// A function as the entry of a slot table.
template <class Function>
void* host_Slot(Function* function) noexcept {
    return reinterpret_cast<void*>(function);
}

/// A text as the entry of a slot table, which does not change it.
inline void* host_Slot(const char* text) noexcept { return const_cast<char*>(text); }
