#include "host_ChangeBlock.h"

#include "host_Changes.h"
#include "host_Object.h"

#include <vector>

const char* const host_kChangeBlockHelp =
    "changes(label='changes')\n--\n\n"
    "with changes('label'): makes the commands of the block one step for undo and redo.\n"
    "When an exception leaves the block, the model is as it was before.";

namespace {

struct Block {
    host_PyRef module;
    host_PyRef label;
    std::vector<std::size_t> opened = {};  // how many groups were open at each __enter__
};
using ChangeBlock = host_Object<Block>;

/// Calls a command of the module, so that it enters the journal.
template <class... Given>
PyObject* Command(PyObject* self, const char* command, Given... given) {
    return host_AtBorder([&] {
        const host_PyRef name = host_PyText(command);
        return host_Made(PyObject_CallMethodObjArgs(ChangeBlock::Of(self).module.Get(), name.Get(),
                                                    given..., nullptr))
            .Release();
    });
}

std::size_t OpenGroups() { return host_Changes::Instance().OpenGroups(); }

PyObject* Enter(PyObject* self, PyObject*) {
    Block& block = ChangeBlock::Of(self);
    const std::size_t opened = OpenGroups();
    PyObject* const result = Command(self, "beginChanges", block.label.Get());
    if (result != nullptr) {
        block.opened.push_back(opened);
    }
    return result;
}

PyObject* Exit(PyObject* self, PyObject* arguments) {
    PyObject* kind = nullptr;
    PyObject* error = nullptr;
    PyObject* traceback = nullptr;
    if (PyArg_ParseTuple(arguments, "OOO:__exit__", &kind, &error, &traceback) == 0) {
        return nullptr;
    }
    std::vector<std::size_t>& opened = ChangeBlock::Of(self).opened;
    if (opened.empty()) {
        PyErr_SetString(PyExc_RuntimeError, "this block of changes was not entered");
        return nullptr;
    }
    // Groups that the block opened by commands and left open end with it; where commands have
    // closed its own, there is nothing to do.
    const std::size_t before = opened.back();
    opened.pop_back();
    while (OpenGroups() > before) {
        const host_PyRef closed =
            host_PyRef::Steal(Command(self, kind == Py_None ? "keepChanges" : "dropChanges"));
        if (!closed) {
            return nullptr;
        }
    }
    Py_RETURN_NONE;
}

}  // namespace

PyObject* host_ChangeBlock(PyObject* module, PyObject* arguments, PyObject* keywords) {
    return host_AtBorder([&] {
        PyObject* label = nullptr;
        static char word[] = "label";
        static char* words[] = {word, nullptr};
        if (PyArg_ParseTupleAndKeywords(arguments, keywords, "|U:changes", words, &label) == 0) {
            throw host_PythonError();
        }
        return ChangeBlock::New({host_PyRef::Share(module), label != nullptr
                                                                ? host_PyRef::Share(label)
                                                                : host_PyText("changes")})
            .Release();
    });
}

void host_DefineChangeBlocks(PyObject* module) {
    static PyMethodDef methods[] = {{"__enter__", &Enter, METH_NOARGS, nullptr},
                                    {"__exit__", &Exit, METH_VARARGS, nullptr},
                                    {}};
    static PyType_Slot slots[] = {{Py_tp_doc, host_Slot("A block of changes; see changes().")},
                                  {Py_tp_dealloc, host_Slot(&ChangeBlock::Dealloc)},
                                  {Py_tp_methods, methods},
                                  {}};
    ChangeBlock::Define(module, "caehost.ChangeBlock", Py_TPFLAGS_DISALLOW_INSTANTIATION, slots);
}
