#include "host_Module.h"

#include "host_Array.h"
#include "host_ChangeBlock.h"
#include "host_CommandObject.h"
#include "host_Constant.h"
#include "host_InterfaceObject.h"
#include "host_Interpreter.h"
#include "host_Journal.h"
#include "host_Notes.h"
#include "host_PythonError.h"
#include "host_Track.h"
#include "host_Values.h"
#include "omi_Singleton.h"
#include "omu_SymbolicConstantTable.h"

#include <bit>
#include <cstdint>

namespace {

PyObject* moduleObject;  // borrowed: the interpreter keeps it

omu_SymbolicConstantTable& Constants() {
    return omi_Singleton<omu_SymbolicConstantTable>::Instance();
}

bool IsConstant(std::string_view name) {
    return name != omu_SymbolicConstantTable::kUnspecified && Constants().Has(name);
}

PyObject* OpenJournal(PyObject*, PyObject* path) {
    return host_AtBorder([&] {
        PyObject* encoded = nullptr;
        if (PyUnicode_FSConverter(path, &encoded) == 0) {
            throw host_PythonError();
        }
        const host_PyRef name = host_PyRef::Steal(encoded);
        host_Journal::Instance().Open(PyBytes_AS_STRING(encoded));
        return Py_NewRef(Py_None);
    });
}

PyObject* CloseJournal(PyObject*, PyObject*) {
    host_Journal::Instance().Close();
    Py_RETURN_NONE;
}

PyObject* NotRepeated(PyObject*, PyObject* arguments) {
    const char* command = nullptr;
    const char* reason = nullptr;
    if (PyArg_ParseTuple(arguments, "ss:not_repeated", &command, &reason) == 0 ||
        PyErr_WarnFormat(PyExc_RuntimeWarning, 1, "%s is not repeated: the journal cannot hold %s",
                         command, reason) != 0) {
        return nullptr;
    }
    Py_RETURN_NONE;
}

PyObject* FloatFromBits(PyObject*, PyObject* integer) {
    const unsigned long long bits = PyLong_AsUnsignedLongLong(integer);
    if (PyErr_Occurred() != nullptr) {
        return nullptr;
    }
    return PyFloat_FromDouble(std::bit_cast<double>(static_cast<std::uint64_t>(bits)));
}

PyObject* NumericArray(PyObject*, PyObject* arguments) {
    return host_AtBorder([&] {
        PyObject* data = nullptr;
        const char* dtype = nullptr;
        PyObject* shape = nullptr;
        if (PyArg_ParseTuple(arguments, "OsO:numeric_array", &data, &dtype, &shape) == 0) {
            throw host_PythonError();
        }
        return host_NumericArray(data, dtype, shape).Release();
    });
}

/// Commands and constants that were registered after the module was made.
PyObject* GetAttribute(PyObject*, PyObject* attribute) {
    return host_AtBorder([&] {
        const std::string name(host_Utf8(attribute));
        host_PyRef found;
        if (const host_Command* command = host_CommandTable::Instance().Find(name)) {
            found = host_CommandObject(*command);
        } else if (IsConstant(name)) {
            found = host_Constant(name);
        } else {
            PyErr_Format(PyExc_AttributeError, "module '%s' has no attribute '%U'", host_kName,
                         attribute);
            throw host_PythonError();
        }
        host_Checked(PyObject_SetAttr(moduleObject, attribute, found.Get()));
        return found.Release();
    });
}

/// The table holds functions of all kinds as if they were of the plainest.
PyCFunction WithKeywords(PyCFunctionWithKeywords function) noexcept {
    return reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(function));
}

void AddContents(PyObject* module) {
    host_DefineErrors(module);
    host_DefineValues(module);
    host_DefineArrays(module);
    host_DefineConstants(module);
    host_DefineInterfaceObjects(module);
    host_DefineCommands(module);
    host_DefineChangeBlocks(module);
    host_DefineTrack(module);
    host_InstallObjectHooks();
    for (const host_Command& command : host_CommandTable::Instance().All()) {
        host_Checked(
            PyModule_AddObjectRef(module, command.name.c_str(), host_CommandObject(command).Get()));
    }
    for (const std::string& name : host_CommandTable::Instance().Constants()) {
        Constants().AddOrFind(name);
        host_Checked(PyModule_AddObjectRef(module, name.c_str(), host_Constant(name).Get()));
    }
    host_Checked(PyModule_AddStringConstant(module, "__version__", CAEHOST_VERSION));
}

}  // namespace

PyObject* host_InitModule() {
    static PyMethodDef functions[] = {
        {"open_journal", &OpenJournal, METH_O,
         "open_journal(path)\n--\n\nRecords every command that succeeds from now on in a file."},
        {"close_journal", &CloseJournal, METH_NOARGS, "close_journal()\n--\n\nEnds the journal."},
        {"changes", WithKeywords(&host_ChangeBlock), METH_VARARGS | METH_KEYWORDS,
         host_kChangeBlockHelp},
        {"not_repeated", &NotRepeated, METH_VARARGS,
         "not_repeated(command, reason)\n--\n\nIn a journal: a command that it cannot repeat."},
        {"numeric_array", &NumericArray, METH_VARARGS,
         "numeric_array(data, dtype, shape)\n--\n\nIn a journal: an array of int32, float32 or "
         "float64\nfrom a sequence of numbers or the base64 text of the elements."},
        {"float_from_bits", &FloatFromBits, METH_O,
         "float_from_bits(bits)\n--\n\nIn a journal: a NaN by all its bits."},
        {"track", WithKeywords(&host_Track), METH_VARARGS | METH_KEYWORDS, host_kTrackHelp},
        {"_clear_progress", &host_ClearProgress, METH_NOARGS, nullptr},
        {"__getattr__", &GetAttribute, METH_O, nullptr},
        {}};
    static PyModuleDef definition{
        PyModuleDef_HEAD_INIT,
        host_kName,
        "The application's commands, its symbolic constants and its exceptions.",
        -1,
        functions,
        nullptr,
        nullptr,
        nullptr,
        nullptr};
    return host_AtBorder([] {
        host_PyRef module = host_Made(PyModule_Create(&definition));
        moduleObject = module.Get();
        AddContents(module.Get());
        return module.Release();
    });
}
