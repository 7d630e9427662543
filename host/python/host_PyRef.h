#pragma once

#include <Python.h>

#include <utility>

/// Owns one reference to a Python object, or none. For threads that hold the interpreter.
class host_PyRef {
public:
    host_PyRef() noexcept = default;
    host_PyRef(const host_PyRef& other) noexcept : _object(Py_XNewRef(other._object)) {}
    host_PyRef(host_PyRef&& other) noexcept : _object(std::exchange(other._object, nullptr)) {}
    host_PyRef& operator=(host_PyRef other) noexcept {
        std::swap(_object, other._object);
        return *this;
    }
    ~host_PyRef() { Py_XDECREF(_object); }

    /// Takes a reference over from the caller; null is none.
    [[nodiscard]] static host_PyRef Steal(PyObject* object) noexcept { return host_PyRef(object); }
    /// Takes a reference of its own.
    [[nodiscard]] static host_PyRef Share(PyObject* object) noexcept {
        return host_PyRef(Py_XNewRef(object));
    }

    [[nodiscard]] PyObject* Get() const noexcept { return _object; }
    /// Hands the reference to the caller.
    [[nodiscard]] PyObject* Release() noexcept { return std::exchange(_object, nullptr); }
    [[nodiscard]] explicit operator bool() const noexcept { return _object != nullptr; }

private:
    explicit host_PyRef(PyObject* object) noexcept : _object(object) {}

    PyObject* _object = nullptr;
};
