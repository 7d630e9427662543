#include "host_Interpreter.h"

#include "host_PythonError.h"
#include "host_Values.h"

#include <atomic>
#include <mutex>
#include <vector>

namespace {

/// References that threads without the interpreter's lock have given back. Waiting for the lock
/// there could wait forever: its holder may be waiting for just that thread.
class DroppedReferences {
public:
    void Add(PyObject* object) noexcept {
        try {
            const std::lock_guard lock(_mutex);
            _objects.push_back(object);
        } catch (...) {
            return;  // without memory to remember it, the object is not freed
        }
        if (!_waiting.exchange(true)) {
            Py_AddPendingCall(&Drain, this);
        }
    }
    /// Gives them back to the interpreter.
    void Drain() {
        if (!_waiting.load(std::memory_order_relaxed)) {
            return;
        }
        std::vector<PyObject*> objects;
        {
            const std::lock_guard lock(_mutex);
            objects.swap(_objects);
            _waiting = false;
        }
        for (PyObject* object : objects) {
            Py_DECREF(object);
        }
    }

private:
    static int Drain(void* self) {
        static_cast<DroppedReferences*>(self)->Drain();
        return 0;
    }

    std::mutex _mutex;
    std::vector<PyObject*> _objects;
    std::atomic<bool> _waiting{false};
};

DroppedReferences& Dropped() {
    static auto* const queue = new DroppedReferences;  // outlives every thread
    return *queue;
}

PyObject* AsObject(void* object) { return static_cast<PyObject*>(object); }

/// The text that \p describe makes of an object; where that fails, its type in angle brackets.
cow_String Describe(PyObject* (*describe)(PyObject*), void* object) {
    const host_PyRef text = host_PyRef::Steal(describe(AsObject(object)));
    if (text) {
        Py_ssize_t size = 0;
        if (const char* utf8 = PyUnicode_AsUTF8AndSize(text.Get(), &size)) {
            return std::string(utf8, static_cast<std::size_t>(size));
        }
    }
    PyErr_Clear();
    return std::string("<") + Py_TYPE(AsObject(object))->tp_name + ">";
}

}  // namespace

void host_CheckInterrupt() {
    const PyGILState_STATE state = PyGILState_Ensure();
    const bool interrupted = PyErr_CheckSignals() != 0;
    std::exception_ptr error;
    if (interrupted) {
        error = std::make_exception_ptr(host_PythonError());
    }
    PyGILState_Release(state);
    if (interrupted) {
        std::rethrow_exception(error);
    }
}

std::unique_ptr<omu_Primitive> host_CallPython(const omu_PyObjectWrapper& callable,
                                               const omu_Arguments& arguments) {
    const host_PyRef positional = host_ToPython(arguments);
    const host_PyRef keywords = host_ToPython(arguments.Keywords());
    return host_FromPython(
        host_Made(PyObject_Call(AsObject(callable.Object()), positional.Get(), keywords.Get()))
            .Get());
}

void host_DropAnywhere(PyObject* object) noexcept {
    if (object == nullptr || Py_IsInitialized() == 0) {
        return;
    }
    if (PyGILState_Check() != 0) {
        Py_DECREF(object);
    } else {
        Dropped().Add(object);
    }
}

void host_GiveBackDropped() { Dropped().Drain(); }

void host_InstallObjectHooks() {
    omu_PyObjectWrapper::SetHooks({
        .increment = [](void* object) { Py_INCREF(AsObject(object)); },
        .decrement = [](void* object) noexcept { host_DropAnywhere(AsObject(object)); },
        .text = [](void* object) { return Describe(&PyObject_Str, object); },
        .repr = [](void* object) { return Describe(&PyObject_Repr, object); },
        .typeName = [](void* object) -> cow_String { return Py_TYPE(AsObject(object))->tp_name; },
        .equal =
            [](void* left, void* right) {
                const int equal = PyObject_RichCompareBool(AsObject(left), AsObject(right), Py_EQ);
                if (equal < 0) {
                    PyErr_Clear();
                }
                return equal > 0;
            },
    });
}
