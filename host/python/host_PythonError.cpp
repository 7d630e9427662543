#include "host_PythonError.h"

#include "cls_WriteVisitor.h"
#include "host_Interpreter.h"
#include "idb_FileErrorException.h"
#include "nex_AssertException.h"

#include <cctype>
#include <filesystem>
#include <new>

namespace {

/// The exception types of the command language. Those that are not Python's own are made when the
/// module is.
struct ErrorType {
    const char* name;
    PyObject** type;
    PyObject** base = nullptr;  // null: Python's own
};
PyObject* accessError;
PyObject* colorError;
PyObject* fontError;
PyObject* guiAccessError;
PyObject* rangeError;
PyObject* nameError;
const ErrorType kErrorTypes[] = {
    {"TypeError", &PyExc_TypeError},
    {"ValueError", &PyExc_ValueError},
    {"KeyError", &PyExc_KeyError},
    {"IndexError", &PyExc_IndexError},
    {"AttributeError", &PyExc_AttributeError},
    {"NameError", &PyExc_NameError},
    {"OverflowError", &PyExc_OverflowError},
    {"ZeroDivisionError", &PyExc_ZeroDivisionError},
    {"RangeError", &rangeError, &PyExc_ValueError},
    {"AccessError", &accessError, &PyExc_Exception},
    {"GuiAccessError", &guiAccessError, &PyExc_Exception},
    {"FontError", &fontError, &PyExc_ValueError},
    {"ColorError", &colorError, &PyExc_ValueError},
    {"TarvexNameError", &nameError, &PyExc_ValueError},
};

PyObject* TypeOf(const nex_CommandException& error) {
    const cow_String name = error.PythonType();
    for (const ErrorType& entry : kErrorTypes) {
        if (name == entry.name && *entry.type != nullptr) {
            return *entry.type;
        }
    }
    return PyExc_RuntimeError;
}

/// Sets the fields that a persistent error writes as attributes of a Python object.
class FieldsAsAttributes final : public cls_WriteVisitor {
public:
    explicit FieldsAsAttributes(PyObject* object) : _object(object) {}

    bool StartWrite(unsigned, const cls_Uid&) const override { return true; }
    std::unique_ptr<cls_WriteVisitor> Base(unsigned) const override {
        return std::make_unique<FieldsAsAttributes>(_object);
    }
    void Write(const char* name, char value) const override { Set(name, host_PyText({&value, 1})); }
    void Write(const char* name, bool value) const override {
        Set(name, Made(PyBool_FromLong(value)));
    }
    void Write(const char* name, int value) const override {
        Set(name, Made(PyLong_FromLong(value)));
    }
    void Write(const char* name, unsigned value) const override {
        Set(name, Made(PyLong_FromUnsignedLong(value)));
    }
    void Write(const char* name, float value) const override { Write(name, double{value}); }
    void Write(const char* name, double value) const override {
        Set(name, Made(PyFloat_FromDouble(value)));
    }
    void Write(const char* name, const cow_String& value) const override {
        Set(name, host_PyText(value));
    }
    void Write(const char* name, const atr_String& value) const override {
        Set(name, host_PyText(value.View()));
    }
    // No error has fields of these kinds.
    void Write(const char*, std::span<const int>) const override {}
    void Write(const char*, std::span<const float>) const override {}
    void Write(const char*, std::span<const double>) const override {}
    std::unique_ptr<cls_WriteVisitor> List(const char*, int) const override { return Base(0); }
    void WriteObject(const char*, const cls_ObjectRef&) const override {}

private:
    static host_PyRef Made(PyObject* made) { return host_Made(made); }
    void Set(std::string_view name, const host_PyRef& value) const {
        std::string attribute(name.substr(name.starts_with("m_") ? 2 : 0));
        attribute[0] = static_cast<char>(std::tolower(attribute[0]));
        host_Checked(PyObject_SetAttrString(_object, attribute.c_str(), value.Get()));
    }

    PyObject* _object;
};

void SetText(PyObject* type, std::string_view message) {
    PyErr_SetObject(type, host_PyText(message).Get());
}

/// OSError(errno, text, filename), of which the interpreter makes FileNotFoundError and its kin.
void SetFileError(const std::filesystem::filesystem_error& error) {
    const host_PyRef arguments = host_Made(Py_BuildValue(
        "iss", error.code().value(), error.code().message().c_str(), error.path1().c_str()));
    PyErr_SetObject(PyExc_OSError, arguments.Get());
}

/// The same of a file that the library could not save or load.
void SetFileError(const idb_FileErrorException& error) {
    const cow_String message(error.UserReport());
    const host_PyRef arguments =
        host_Made(error.Cause() != 0 ? Py_BuildValue("iss", error.Cause(), message.AsCharPtr(),
                                                     error.Path().c_str())
                                     : Py_BuildValue("(s)", message.AsCharPtr()));
    PyErr_SetObject(PyExc_OSError, arguments.Get());
}

void SetHandledError() {
    try {
        throw;
    } catch (const host_PythonError& error) {
        error.Restore();
    } catch (const nex_CommandException& error) {
        host_SetError(error);
    } catch (const nex_AssertException& error) {
        SetText(PyExc_AssertionError, error.DeveloperReport().View());
    } catch (const idb_FileErrorException& error) {
        SetFileError(error);
    } catch (const nex_Exception& error) {
        SetText(PyExc_RuntimeError, error.DeveloperReport().View());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    } catch (const std::filesystem::filesystem_error& error) {
        SetFileError(error);
    } catch (const std::exception& error) {
        SetText(PyExc_RuntimeError, error.what());
    } catch (...) {
        SetText(PyExc_RuntimeError, "an unknown exception of C++");
    }
}

/// Runs what may itself fail while an error is being reported; that failure is reported instead.
template <class Report>
void Reporting(Report report) noexcept {
    try {
        report();
    } catch (const host_PythonError& error) {
        error.Restore();
    } catch (...) {
        PyErr_NoMemory();
    }
}

}  // namespace

struct host_PythonError::Fetched {
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;

    Fetched() noexcept { PyErr_Fetch(&type, &value, &traceback); }
    Fetched(const Fetched&) = delete;
    Fetched& operator=(const Fetched&) = delete;
    ~Fetched() {
        for (PyObject* object : {type, value, traceback}) {
            host_DropAnywhere(object);
        }
    }
};

host_PythonError::host_PythonError() : _fetched(std::make_shared<Fetched>()) {}

void host_PythonError::Restore() const noexcept {
    PyErr_Restore(Py_XNewRef(_fetched->type), Py_XNewRef(_fetched->value),
                  Py_XNewRef(_fetched->traceback));
}

host_PyRef host_PyText(std::string_view text) {
    return host_Made(
        PyUnicode_DecodeUTF8(text.data(), static_cast<Py_ssize_t>(text.size()), "replace"));
}

std::string_view host_Utf8(PyObject* string) {
    Py_ssize_t size = 0;
    const char* text = PyUnicode_AsUTF8AndSize(string, &size);
    if (text == nullptr) {
        throw host_PythonError();
    }
    return {text, static_cast<std::size_t>(size)};
}

void host_AddNote(PyObject* error, std::string_view note) {
    static PyObject* const addNote = PyUnicode_InternFromString("add_note");
    static_cast<void>(
        host_Made(PyObject_CallMethodOneArg(error, addNote, host_PyText(note).Get())));
}

host_PyRef host_MakeError(const nex_CommandException& error) {
    const host_PyRef message = host_PyText(error.JournalMessage().View());
    host_PyRef made = host_Made(PyObject_CallOneArg(TypeOf(error), message.Get()));
    error.DBWrite(FieldsAsAttributes(made.Get()));
    return made;
}

void host_SetError(const nex_CommandException& error) noexcept {
    Reporting([&] {
        const host_PyRef made = host_MakeError(error);
        PyErr_SetObject(PyExceptionInstance_Class(made.Get()), made.Get());
    });
}

void host_SetHandledError() noexcept { Reporting(SetHandledError); }

void host_DefineErrors(PyObject* module) {
    for (const ErrorType& entry : kErrorTypes) {
        if (entry.base != nullptr) {
            const std::string name = std::string("caehost.") + entry.name;
            Py_XSETREF(*entry.type,
                       host_Made(PyErr_NewException(name.c_str(), *entry.base, nullptr)).Release());
            host_Checked(PyModule_AddObjectRef(module, entry.name, *entry.type));
        }
    }
}
