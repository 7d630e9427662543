#include "host_Constant.h"

#include "host_Object.h"
#include "omi_Singleton.h"
#include "omu_SymbolicConstantTable.h"

#include <structmember.h>

namespace {

using Constant = host_Object<host_PyRef>;  // the name

PyObject* byName;  // dict: the one object of each name

host_PyRef Find(const host_PyRef& name) {
    if (PyObject* found = PyDict_GetItemWithError(byName, name.Get())) {
        return host_PyRef::Share(found);
    }
    if (PyErr_Occurred() != nullptr) {
        throw host_PythonError();
    }
    host_PyRef made = Constant::New(name);
    host_Checked(PyDict_SetItem(byName, name.Get(), made.Get()));
    return made;
}

PyObject* NewConstant(PyTypeObject*, PyObject* arguments, PyObject* keywords) {
    return host_AtBorder([&] {
        PyObject* name = nullptr;
        static char keyword[] = "name";
        static char* names[] = {keyword, nullptr};
        if (PyArg_ParseTupleAndKeywords(arguments, keywords, "U:SymbolicConstant", names, &name) ==
            0) {
            throw host_PythonError();
        }
        const std::string_view text = host_Utf8(name);
        if (text.empty() || text.find('\0') != std::string_view::npos) {
            PyErr_SetString(PyExc_ValueError,
                            "the name of a constant is empty or has null characters");
            throw host_PythonError();
        }
        omi_Singleton<omu_SymbolicConstantTable>::Instance().AddOrFind(text);
        return Find(host_PyText(text)).Release();
    });
}

PyObject* Name(PyObject* self, void* = nullptr) { return Py_NewRef(Constant::Of(self).Get()); }

PyObject* Repr(PyObject* self) { return Name(self); }

PyObject* Reduce(PyObject* self, PyObject*) {
    return Py_BuildValue("O(O)", Py_TYPE(self), Constant::Of(self).Get());
}

}  // namespace

host_PyRef host_Constant(std::string_view name) { return Find(host_PyText(name)); }

PyObject* host_ConstantName(PyObject* object) noexcept {
    return Constant::Is(object) ? Constant::Of(object).Get() : nullptr;
}

void host_DefineConstants(PyObject* module) {
    static PyMethodDef methods[] = {{"__reduce__", &Reduce, METH_NOARGS, nullptr}, {}};
    static PyGetSetDef attributes[] = {{"name", &Name, nullptr, "The name.", nullptr}, {}};
    static PyType_Slot slots[] = {
        {Py_tp_doc, host_Slot("SymbolicConstant(name): the symbolic constant of that name.")},
        {Py_tp_new, host_Slot(&NewConstant)},
        {Py_tp_dealloc, host_Slot(&Constant::Dealloc)},
        {Py_tp_repr, host_Slot(&Repr)},
        {Py_tp_methods, methods},
        {Py_tp_getset, attributes},
        {}};
    Constant::Define(module, "caehost.SymbolicConstant", 0, slots);
    Py_XSETREF(byName, host_Made(PyDict_New()).Release());
}
