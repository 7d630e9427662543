#include "host_Array.h"

#include "host_Object.h"
#include "host_Values.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <cstring>
#include <string_view>

static_assert(std::endian::native == std::endian::little, "journals hold little-endian elements");

namespace {

using Owned = std::unique_ptr<omu_Primitive>;

/// A buffer while it is borrowed from its object.
class Buffer {
public:
    explicit Buffer(PyObject* object)
        : _ok(PyObject_GetBuffer(object, &_view, PyBUF_FULL_RO) == 0) {}
    Buffer(const Buffer&) = delete;
    Buffer& operator=(const Buffer&) = delete;
    ~Buffer() {
        if (_ok) {
            PyBuffer_Release(&_view);
        }
    }

    [[nodiscard]] explicit operator bool() const noexcept { return _ok; }
    [[nodiscard]] const Py_buffer& View() const noexcept { return _view; }
    /// The elements' type as one character of module struct; '\0' for anything else and for a byte
    /// order that is not the machine's.
    [[nodiscard]] char Code() const noexcept {
        std::string_view format = _view.format != nullptr ? _view.format : "B";
        if (!format.empty() && std::string_view("@=<").find(format[0]) != std::string_view::npos) {
            format.remove_prefix(1);
        }
        if (format == "Zf" || format == "Zd") {
            return 'Z';
        }
        return format.size() == 1 ? format[0] : '\0';
    }

    /// The elements as a vector of T, which is what they are.
    template <class T>
    [[nodiscard]] std::vector<T> Elements() const {
        const auto count = static_cast<std::size_t>(_view.len) / sizeof(T);
        const auto* first = static_cast<const T*>(_view.buf);
        if (PyBuffer_IsContiguous(&_view, 'C') != 0 &&
            reinterpret_cast<std::uintptr_t>(first) % alignof(T) == 0) {
            return std::vector<T>(first, first + count);
        }
        std::vector<T> elements(count);
        host_Checked(PyBuffer_ToContiguous(elements.data(), &_view, _view.len, 'C'));
        return elements;
    }

private:
    Py_buffer _view{};
    bool _ok;
};

[[noreturn]] void RaiseRange(long long value) {
    PyErr_Format(PyExc_OverflowError, "array element %lld is outside the range %d to %d", value,
                 INT_MIN, INT_MAX);
    throw host_PythonError();
}

std::vector<int> Narrowed(const std::vector<std::int64_t>& values) {
    std::vector<int> narrowed(values.size());
    for (std::size_t i = 0; i < values.size(); ++i) {
        narrowed[i] = static_cast<int>(values[i]);
        if (narrowed[i] != values[i]) {
            RaiseRange(values[i]);
        }
    }
    return narrowed;
}

std::vector<int> Dims(const Py_buffer& view) {
    std::vector<int> dims;
    for (int i = 0; i < view.ndim; ++i) {
        if (view.shape[i] > INT_MAX) {
            RaiseRange(view.shape[i]);
        }
        dims.push_back(static_cast<int>(view.shape[i]));
    }
    return dims;
}

template <class T>
Owned MakeArray(std::vector<T> values, const Buffer& buffer) {
    return std::make_unique<omu_PrimArray>(std::move(values), Dims(buffer.View()));
}

/// The Python number that a buffer without dimensions stands for; null if it is none.
host_PyRef Scalar(PyObject* object, char code) {
    constexpr std::string_view kIntegers = "bBhHiIlLqQnN";
    if (code == '?') {
        return host_Made(PyBool_FromLong(host_Checked(PyObject_IsTrue(object))));
    }
    if (code == 'Z') {
        const Py_complex value = PyComplex_AsCComplex(object);
        return PyErr_Occurred() != nullptr ? host_Made(nullptr)
                                           : host_Made(PyComplex_FromCComplex(value));
    }
    if (std::string_view("efdg").find(code) != std::string_view::npos) {
        return host_Made(PyNumber_Float(object));
    }
    if (code != '\0' && kIntegers.find(code) != std::string_view::npos) {
        return host_Made(PyNumber_Long(object));
    }
    return {};
}

/// Whether this is one of NumPy's scalars that show their raw bytes, such as a date.
bool IsScalarOfBytes(PyObject* object) {
    const host_PyRef dimensions = host_PyRef::Steal(PyObject_GetAttrString(object, "ndim"));
    const bool isScalar = dimensions && PyObject_Not(dimensions.Get()) == 1;
    PyErr_Clear();
    return isScalar;
}

// The other way: Python looks at the elements through a buffer of the array.

using ArrayBuffer = host_Object<omu_PrimArray>;

/// Shape and strides of an exported buffer, freed with it.
struct Layout {
    std::vector<Py_ssize_t> shape;
    std::vector<Py_ssize_t> strides;
};

struct ElementFormat {
    const char* format;
    const char* dtype;
};
template <class T>
constexpr ElementFormat kFormat{};
template <>
constexpr ElementFormat kFormat<int>{"i", "int32"};
template <>
constexpr ElementFormat kFormat<float>{"f", "float32"};
template <>
constexpr ElementFormat kFormat<double>{"d", "float64"};

/// Calls \p visit with the elements, for writing; a shared block is copied first.
template <class Visit>
void EditElements(omu_PrimArray& array, Visit visit) {
    array.VisitElements([&]<class T>(std::span<const T>) { visit(array.EditElements<T>()); });
}

int GetBuffer(PyObject* self, Py_buffer* view, int) {
    view->obj = nullptr;
    return host_AtBorder([&] {
        omu_PrimArray& array = ArrayBuffer::Of(self);
        auto layout = std::make_unique<Layout>();
        layout->shape.assign(array.Dims().begin(), array.Dims().end());
        layout->strides.resize(layout->shape.size());
        EditElements(array, [&]<class T>(std::span<T> elements) {
            static T none{};
            view->buf = elements.empty() ? &none : elements.data();
            view->len = static_cast<Py_ssize_t>(elements.size_bytes());
            view->itemsize = sizeof(T);
            view->format = const_cast<char*>(kFormat<T>.format);
        });
        Py_ssize_t stride = view->itemsize;
        for (std::size_t i = layout->shape.size(); i-- > 0;) {
            layout->strides[i] = stride;
            stride *= layout->shape[i];
        }
        view->readonly = 0;
        view->ndim = array.Dimensions();
        view->shape = layout->shape.data();
        view->strides = layout->strides.data();
        view->suboffsets = nullptr;
        view->internal = layout.release();
        view->obj = Py_NewRef(self);
        return 0;
    });
}

void ReleaseBuffer(PyObject*, Py_buffer* view) { delete static_cast<Layout*>(view->internal); }

template <class T>
omu_PrimArray Decoded(PyObject* data, std::vector<int> dims) {
    std::vector<T> values;
    if (PyUnicode_Check(data) != 0) {
        const host_PyRef module = host_Made(PyImport_ImportModule("binascii"));
        const host_PyRef bytes =
            host_Made(PyObject_CallMethod(module.Get(), "a2b_base64", "O", data));
        const auto size = static_cast<std::size_t>(PyBytes_GET_SIZE(bytes.Get()));
        values.resize(size / sizeof(T));
        if (!values.empty()) {
            std::memcpy(values.data(), PyBytes_AS_STRING(bytes.Get()), values.size() * sizeof(T));
        }
    } else {
        const host_PyRef items =
            host_Made(PySequence_Fast(data, "data is neither text nor a sequence"));
        for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(items.Get()); ++i) {
            const double value = PyFloat_AsDouble(PySequence_Fast_GET_ITEM(items.Get(), i));
            if (PyErr_Occurred() != nullptr) {
                throw host_PythonError();
            }
            if constexpr (std::is_same_v<T, int>) {
                if (!(value >= INT_MIN && value <= INT_MAX)) {
                    PyErr_SetString(PyExc_OverflowError, "an element does not fit int32");
                    throw host_PythonError();
                }
            }
            values.push_back(static_cast<T>(value));
        }
    }
    return omu_PrimArray(std::move(values), std::move(dims));
}

}  // namespace

std::unique_ptr<omu_Primitive> host_FromBuffer(PyObject* object) {
    if (PyBytes_Check(object) != 0 || PyByteArray_Check(object) != 0) {
        return nullptr;
    }
    const Buffer buffer(object);
    if (!buffer) {
        PyErr_Clear();  // NumPy's dates, for one, have a buffer that cannot be described
        return nullptr;
    }
    const char code = buffer.Code();
    const Py_ssize_t size = buffer.View().itemsize;
    if (buffer.View().ndim == 0) {
        const host_PyRef scalar = Scalar(object, code);
        return scalar ? host_FromPython(scalar.Get()) : nullptr;
    }
    if (code != '\0' && std::string_view("ilqn").find(code) != std::string_view::npos) {
        if (size == sizeof(int)) {
            return MakeArray(buffer.Elements<int>(), buffer);
        }
        if (size == sizeof(std::int64_t)) {
            return MakeArray(Narrowed(buffer.Elements<std::int64_t>()), buffer);
        }
    }
    if (code == 'f' && size == sizeof(float)) {
        return MakeArray(buffer.Elements<float>(), buffer);
    }
    if (code == 'd' && size == sizeof(double)) {
        return MakeArray(buffer.Elements<double>(), buffer);
    }
    if (IsScalarOfBytes(object)) {
        return nullptr;
    }
    PyErr_Format(PyExc_TypeError,
                 "arrays have elements of type int32, int64, float32 or float64; found %s with "
                 "format '%s'",
                 Py_TYPE(object)->tp_name, buffer.View().format);
    throw host_PythonError();
}

host_PyRef host_FromArray(omu_PrimArray array) {
    const host_PyRef buffer = ArrayBuffer::New(std::move(array));
    const host_PyRef numpy = host_PyRef::Steal(PyImport_ImportModule("numpy"));
    if (numpy) {
        return host_Made(PyObject_CallMethod(numpy.Get(), "asarray", "O", buffer.Get()));
    }
    if (PyErr_ExceptionMatches(PyExc_ImportError) == 0) {
        throw host_PythonError();
    }
    PyErr_Clear();
    return host_Made(PyMemoryView_FromObject(buffer.Get()));
}

host_PyRef host_NumericArray(PyObject* data, const char* dtype, PyObject* shape) {
    const host_PyRef sizes = host_Made(PySequence_Fast(shape, "shape is not a tuple"));
    std::vector<int> dims;
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(sizes.Get()); ++i) {
        const long size = PyLong_AsLong(PySequence_Fast_GET_ITEM(sizes.Get(), i));
        if (PyErr_Occurred() != nullptr) {
            throw host_PythonError();
        }
        dims.push_back(static_cast<int>(std::clamp(size, -1L, static_cast<long>(INT_MAX))));
    }
    const std::string_view name = dtype;
    if (name == kFormat<int>.dtype) {
        return host_FromArray(Decoded<int>(data, std::move(dims)));
    }
    if (name == kFormat<float>.dtype) {
        return host_FromArray(Decoded<float>(data, std::move(dims)));
    }
    if (name == kFormat<double>.dtype) {
        return host_FromArray(Decoded<double>(data, std::move(dims)));
    }
    PyErr_Format(PyExc_ValueError, "dtype is int32, float32 or float64; found '%s'", dtype);
    throw host_PythonError();
}

void host_DefineArrays(PyObject* module) {
    static PyType_Slot slots[] = {
        {Py_tp_doc, host_Slot("The elements of a numeric array, as a buffer.")},
        {Py_tp_dealloc, host_Slot(&ArrayBuffer::Dealloc)},
        {Py_bf_getbuffer, host_Slot(&GetBuffer)},
        {Py_bf_releasebuffer, host_Slot(&ReleaseBuffer)},
        {}};
    ArrayBuffer::Define(module, "caehost.ArrayBuffer", Py_TPFLAGS_DISALLOW_INSTANTIATION, slots);
}
