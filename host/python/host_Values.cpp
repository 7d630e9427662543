#include "host_Values.h"

#include "host_Array.h"
#include "host_Constant.h"
#include "host_InterfaceObject.h"
#include "host_Object.h"
#include "host_Progress.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimException.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimTranslatedString.h"
#include "omu_PrimWrapper.h"
#include "omu_PyObjectWrapper.h"

#include <algorithm>
#include <climits>

namespace {

using Owned = std::unique_ptr<omu_Primitive>;

/// A value that Python has no type for, handed through as it is.
using Value = host_Object<Owned>;

/// Deeper nesting is taken for a list that contains itself.
constexpr int kMaxDepth = 500;

// From Python.

/// Where a conversion is, and what lets an interrupt end a long one.
struct Nest {
    host_Progress& progress;
    int depth = 0;

    [[nodiscard]] Nest Inner() const { return {progress, depth + 1}; }
};

Owned Convert(PyObject* object, const Nest& nest);

template <class... Args>
[[noreturn]] void Raise(PyObject* type, const char* format, Args... args) {
    PyErr_Format(type, format, args...);
    throw host_PythonError();
}

/// "4294967296"; for what is too long to print, its number of bits.
host_PyRef IntegerText(PyObject* integer) {
    host_PyRef text = host_PyRef::Steal(PyObject_Str(integer));
    if (!text) {
        PyErr_Clear();
        const host_PyRef bits = host_Made(PyObject_CallMethod(integer, "bit_length", nullptr));
        text = host_Made(PyUnicode_FromFormat("of %S bits", bits.Get()));
    }
    return text;
}

Owned FromInteger(PyObject* object) {
    int overflow = 0;
    const long long value = PyLong_AsLongLongAndOverflow(object, &overflow);
    if (overflow == 0 && value >= INT_MIN && value <= INT_MAX) {
        return std::make_unique<omu_PrimNumber>(static_cast<int>(value));
    }
    if (overflow == 0 && value >= 0 && value <= UINT_MAX) {
        return std::make_unique<omu_PrimNumber>(static_cast<unsigned>(value));
    }
    Raise(PyExc_OverflowError,
          "integer %U is outside the range %d to %u; larger numbers are floats, as 5e9 is",
          IntegerText(object).Get(), INT_MIN, UINT_MAX);
}

Owned FromComplex(PyObject* object) {
    const Py_complex value = PyComplex_AsCComplex(object);
    if (PyErr_Occurred() != nullptr) {
        throw host_PythonError();
    }
    return std::make_unique<omu_PrimComplex>(omi_complex(value.real, value.imag));
}

Owned FromTuple(PyObject* object, const Nest& nest) {
    const Py_ssize_t size = PyTuple_GET_SIZE(object);
    auto tuple = std::make_unique<omu_PrimTuple>(static_cast<int>(size), omu_PrimSequence::kCode);
    for (Py_ssize_t i = 0; i < size; ++i) {
        tuple->Put(Convert(PyTuple_GET_ITEM(object, i), nest).release());
        nest.progress.Count();
    }
    return tuple;
}

/// The handler of a signal is Python code, which may change what is being read.
void CheckUnchanged(Py_ssize_t size, Py_ssize_t sizeNow) {
    if (size != sizeNow) {
        Raise(PyExc_RuntimeError, "a sequence or dictionary changed while it was read");
    }
}

Owned FromList(PyObject* object, const Nest& nest) {
    const Py_ssize_t size = PyList_GET_SIZE(object);
    auto list = std::make_unique<omu_PrimList>(static_cast<int>(size), omu_PrimSequence::kCode);
    for (Py_ssize_t i = 0; i < size; ++i) {
        list->Put(Convert(PyList_GET_ITEM(object, i), nest).release());
        nest.progress.Count();
        CheckUnchanged(size, PyList_GET_SIZE(object));
    }
    return list;
}

bool IsIntegerKey(PyObject* key) { return PyLong_Check(key) != 0 && PyBool_Check(key) == 0; }

int IntegerKey(PyObject* key) {
    int overflow = 0;
    const long value = PyLong_AsLongAndOverflow(key, &overflow);
    if (overflow != 0 || value < INT_MIN || value > INT_MAX) {
        Raise(PyExc_OverflowError, "dictionary key %U is outside the range %d to %d",
              IntegerText(key).Get(), INT_MIN, INT_MAX);
    }
    return static_cast<int>(value);
}

[[noreturn]] void RaiseKeys(PyObject* key) {
    Raise(PyExc_TypeError, "the keys of a dictionary are either all int or all str; found %s %R",
          Py_TYPE(key)->tp_name, key);
}

Owned FromIntegerDict(PyObject* object, const Nest& nest) {
    auto dictionary = std::make_unique<omu_PrimDictionary<int>>();
    const Py_ssize_t size = PyDict_Size(object);
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    int low = INT_MAX;
    int high = INT_MIN;
    for (Py_ssize_t at = 0; PyDict_Next(object, &at, &key, &value) != 0;) {
        if (!IsIntegerKey(key)) {
            RaiseKeys(key);
        }
        const host_PyRef keep = host_PyRef::Share(key);
        const int number = IntegerKey(key);
        low = std::min(low, number);
        high = std::max(high, number);
        dictionary->Put(number, Convert(value, nest).release());
        nest.progress.Count();
        CheckUnchanged(size, PyDict_Size(object));
    }
    if (static_cast<long long>(high) - low > INT_MAX) {
        // Such keys have no order in the library's trees: one could hide another.
        Raise(PyExc_OverflowError, "dictionary keys %d and %d are 2**31 or more apart", low, high);
    }
    return dictionary;
}

Owned FromStringDict(PyObject* object, const Nest& nest) {
    auto dictionary = std::make_unique<omu_PrimDictionary<cow_String>>();
    const Py_ssize_t size = PyDict_Size(object);
    PyObject* key = nullptr;
    PyObject* value = nullptr;
    for (Py_ssize_t at = 0; PyDict_Next(object, &at, &key, &value) != 0;) {
        if (PyUnicode_Check(key) == 0) {
            RaiseKeys(key);
        }
        const host_PyRef keep = host_PyRef::Share(key);
        dictionary->Put(host_Utf8(key), Convert(value, nest).release());
        nest.progress.Count();
        CheckUnchanged(size, PyDict_Size(object));
    }
    return dictionary;
}

Owned FromDict(PyObject* object, const Nest& nest) {
    PyObject* key = nullptr;
    Py_ssize_t at = 0;
    return PyDict_Next(object, &at, &key, nullptr) != 0 && IsIntegerKey(key)
               ? FromIntegerDict(object, nest)
               : FromStringDict(object, nest);
}

Owned FromOther(PyObject* object) {
    if (PyObject* name = host_ConstantName(object)) {
        return std::make_unique<omu_PrimEnumBase>(cow_String(host_Utf8(name)));
    }
    if (const omu_InterfaceHandle* handle = host_InterfaceHandle(object)) {
        return std::make_unique<omu_PrimWrapper>(&handle->Require());
    }
    if (Value::Is(object)) {
        return Owned(Value::Of(object)->Copy());
    }
    if (PyFloat_Check(object) != 0) {
        return std::make_unique<omu_PrimNumber>(PyFloat_AS_DOUBLE(object));
    }
    if (PyComplex_Check(object) != 0) {
        return FromComplex(object);
    }
    if (PyObject_CheckBuffer(object) != 0) {
        if (Owned converted = host_FromBuffer(object)) {
            return converted;
        }
    }
    return std::make_unique<omu_PyObjectWrapper>(object);
}

Owned Convert(PyObject* object, const Nest& nest) {
    // Subclasses count as what they derive from. The tests by a flag of the type come first, those
    // that walk through base classes last.
    if (PyFloat_CheckExact(object)) {
        return std::make_unique<omu_PrimNumber>(PyFloat_AS_DOUBLE(object));
    }
    if (PyLong_Check(object) != 0) {
        return PyBool_Check(object) ? std::make_unique<omu_PrimBoolean>(object == Py_True)
                                    : FromInteger(object);
    }
    if (PyUnicode_Check(object) != 0) {
        return std::make_unique<omu_PrimString>(cow_String(host_Utf8(object)));
    }
    if (object == Py_None) {
        return std::make_unique<omu_PrimNone>();
    }
    const bool isTuple = PyTuple_Check(object) != 0;
    const bool isList = PyList_Check(object) != 0;
    if (isTuple || isList || PyDict_Check(object) != 0) {
        if (nest.depth == kMaxDepth) {
            Raise(PyExc_RecursionError, "values are nested more than %d deep", kMaxDepth);
        }
        const host_PyRef keep = host_PyRef::Share(object);  // for a list may be emptied meanwhile
        return isTuple  ? FromTuple(object, nest.Inner())
               : isList ? FromList(object, nest.Inner())
                        : FromDict(object, nest.Inner());
    }
    return FromOther(object);
}

// To Python.

class ToPython final : public omu_PrimVisitor {
public:
    host_PyRef Convert(const omu_Primitive& value) {
        value.Accept(this);
        return std::move(_made);
    }

    using omu_PrimVisitor::Visit;
    void Visit(const omu_PrimNone&) override { _made = host_PyRef::Share(Py_None); }
    void Visit(const omu_PrimBoolean& value) override { Keep(PyBool_FromLong(value.Value())); }
    void Visit(const omu_PrimNumber& value) override {
        Keep(value.IsType('f')                          ? PyFloat_FromDouble(value.Value())
             : value.DataType() == omu_PrimNumber::UINT ? PyLong_FromUnsignedLong(value.UValue())
                                                        : PyLong_FromLong(value.AsInt()));
    }
    void Visit(const omu_PrimComplex& value) override {
        Keep(PyComplex_FromDoubles(value.Value().ConvertedReal(), value.Value().ConvertedImag()));
    }
    void Visit(const omu_PrimString& value) override { _made = host_PyText(value.Text()); }
    void Visit(const omu_PrimTranslatedString& value) override {
        _made = host_PyText(value.AsTranslatedString().View());
    }
    void Visit(const omu_PrimEnumBase& value) override { _made = host_Constant(value.GetString()); }
    void Visit(const omu_PrimTuple& value) override {
        Sequence(value, host_Made(PyTuple_New(value.Length())),
                 [](PyObject* tuple, int i, PyObject* item) { PyTuple_SET_ITEM(tuple, i, item); });
    }
    void Visit(const omu_PrimList& value) override {
        Sequence(value, host_Made(PyList_New(value.Length())),
                 [](PyObject* list, int i, PyObject* item) { PyList_SET_ITEM(list, i, item); });
    }
    void Visit(const omu_PrimArray& value) override { _made = host_FromArray(value); }
    void Visit(const omu_PrimDictionary<int>& value) override {
        Dictionary(value, [](int key) { return host_Made(PyLong_FromLong(key)); });
    }
    void Visit(const omu_PrimDictionary<cow_String>& value) override {
        Dictionary(value, [](const cow_String& key) { return host_PyText(key); });
    }
    void Visit(const omu_PrimWrapper& value) override {
        const omu_InterfaceHandle handle = value.Handle();
        if (handle == omu_InterfaceHandle()) {
            VisitOther(value);
        } else {
            _made = host_InterfaceObject(handle);
        }
    }
    void Visit(const omu_PyObjectWrapper& value) override {
        auto* object = static_cast<PyObject*>(value.Object());
        _made = host_PyRef::Share(object != nullptr ? object : Py_None);
    }
    void Visit(const omu_PrimException& value) override { value.Propagate(); }
    void VisitOther(const omu_Primitive& value) override {
        _made = Value::New(Owned(value.Copy()));
    }

private:
    void Keep(PyObject* made) { _made = host_Made(made); }

    template <class Store>
    void Sequence(const omu_PrimSequence& sequence, host_PyRef made, Store store) {
        const int length = sequence.Length();
        for (int i = 0; i < length; ++i) {
            const omu_Primitive* element = sequence.Index(i);
            store(made.Get(), i,
                  element != nullptr ? Convert(*element).Release() : Py_NewRef(Py_None));
        }
        _made = std::move(made);
    }
    template <class Key, class MakeKey>
    void Dictionary(const omu_PrimDictionary<Key>& dictionary, MakeKey makeKey) {
        host_PyRef made = host_Made(PyDict_New());
        for (const auto& entry : dictionary) {
            const host_PyRef key = makeKey(entry.Key());
            const host_PyRef value = Convert(entry.Value().ConstGet());
            host_Checked(PyDict_SetItem(made.Get(), key.Get(), value.Get()));
        }
        _made = std::move(made);
    }

    host_PyRef _made;
};

// The type Value.

PyObject* Repr(PyObject* self) {
    return host_AtBorder([&] { return host_PyText(Value::Of(self)->AsRepr()).Release(); });
}

PyObject* Str(PyObject* self) {
    return host_AtBorder([&] { return host_PyText(Value::Of(self)->AsString(0)).Release(); });
}

PyObject* Compare(PyObject* left, PyObject* right, int operation) {
    if (!Value::Is(right) || (operation != Py_EQ && operation != Py_NE)) {
        Py_RETURN_NOTIMPLEMENTED;
    }
    return host_AtBorder([&] {
        return PyBool_FromLong((*Value::Of(left) == *Value::Of(right)) == (operation == Py_EQ));
    });
}

}  // namespace

std::unique_ptr<omu_Primitive> host_FromPython(PyObject* object) {
    host_Progress progress("Reading values");
    return Convert(object, {progress});
}

host_PyRef host_ToPython(const omu_Primitive& value) { return ToPython().Convert(value); }

host_PyRef host_ToPython(std::unique_ptr<omu_Primitive> value) {
    if (value == nullptr) {
        return host_PyRef::Share(Py_None);
    }
    if (const auto* array = omu_PrimCast<omu_PrimArray>(*value)) {
        omu_PrimArray own = *array;
        value.reset();  // now the elements are this copy's alone
        return host_FromArray(std::move(own));
    }
    return host_ToPython(*value);
}

void host_DefineValues(PyObject* module) {
    static PyType_Slot slots[] = {
        {Py_tp_doc, host_Slot("A value of the application that Python has no type for: a path, an "
                              "expression, a type. Commands take it as it is.")},
        {Py_tp_dealloc, host_Slot(&Value::Dealloc)},
        {Py_tp_repr, host_Slot(&Repr)},
        {Py_tp_str, host_Slot(&Str)},
        {Py_tp_richcompare, host_Slot(&Compare)},
        {Py_tp_hash, host_Slot(&PyObject_HashNotImplemented)},
        {}};
    Value::Define(module, "caehost.Value", Py_TPFLAGS_DISALLOW_INSTANTIATION, slots);
}
