// Calls from Python into C++: f(7, 2.5, name=..., points=ten floats, mode=one of three), flag left
// at its default; arrays and tuples there and back. Peers are bound by hand and by pybind11.

#include "bench_Command.h"
#include "omu_StandardTraits.h"

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_HOST
#include "UTI_CaeUtils.h"
#include "host_Command.h"
#include "host_Interpreter.h"
#include "host_Module.h"
#ifdef BENCH_HAVE_PYBIND11
#include <pybind11/embed.h>
#include <pybind11/stl.h>
#endif
#endif

#include <cstdlib>
#include <cstring>
#include <span>
#include <string>
#include <vector>

#ifdef BENCH_HAVE_HOST

namespace {

/// What every binding of f does with its arguments.
double Work(int count, double size, const char* name, const double* points, std::size_t pointCount,
            int mode, bool flag) {
    return count * size + points[pointCount - 1] + mode + (flag ? 1 : 0) + (*name == 'b' ? 1 : 0);
}

omu_Primitive* OursF(omu_Arguments& arguments) {
    bench_Command read;
    read.Read(arguments);
    const std::span<const double> points = read.points.Values();
    return new omu_PrimNumber(Work(read.count, read.size, read.name.AsCharPtr(), points.data(),
                                   points.size(), static_cast<int>(bench_Mode(read.mode)),
                                   read.flag));
}

omu_Primitive* Echo(omu_Arguments& arguments) {
    omu_PrimHolder value;
    arguments.Begin();
    arguments.Get(value, "value");
    arguments.End();
    return value.ConstGet().Copy();
}

// f bound by hand.
PyObject* ParsedF(PyObject*, PyObject* args, PyObject* keywords) {
    static const char* names[] = {"count", "size", "name", "points", "mode", "flag", nullptr};
    int count = 0;
    double size = 0.0;
    const char* name = nullptr;
    PyObject* points = nullptr;
    int mode = 0;
    int flag = 1;
    if (!PyArg_ParseTupleAndKeywords(args, keywords, "idsOi|p", const_cast<char**>(names), &count,
                                     &size, &name, &points, &mode, &flag)) {
        return nullptr;
    }
    PyObject* sequence = PySequence_Fast(points, "points must be a sequence");
    if (sequence == nullptr) {
        return nullptr;
    }
    std::vector<double> values;
    for (Py_ssize_t i = 0; i < PySequence_Fast_GET_SIZE(sequence); ++i) {
        values.push_back(PyFloat_AsDouble(PySequence_Fast_GET_ITEM(sequence, i)));
    }
    Py_DECREF(sequence);
    if (PyErr_Occurred() != nullptr) {
        return nullptr;
    }
    return PyFloat_FromDouble(
        Work(count, size, name, values.data(), values.size(), mode, flag != 0));
}

#ifdef BENCH_HAVE_PYBIND11
double BoundF(int count, double size, const std::string& name, const std::vector<double>& points,
              bench_Mode mode, bool flag) {
    return Work(count, size, name.c_str(), points.data(), points.size(), static_cast<int>(mode),
                flag);
}

PYBIND11_EMBEDDED_MODULE(bench_pybind11, module) {
    namespace py = pybind11;
    py::enum_<bench_Mode>(module, "Mode")
        .value("COARSE", bench_Mode::Coarse)
        .value("MEDIUM", bench_Mode::Medium)
        .value("FINE", bench_Mode::Fine);
    module.def("f", &BoundF, py::arg("count"), py::arg("size"), py::arg("name"), py::arg("points"),
               py::arg("mode"), py::arg("flag") = true);
    module.def("echo", [](std::vector<double> values) { return py::tuple(py::cast(values)); });
}
#endif

constexpr const char* kDriver = R"(
import numpy
import caehost
PTS = tuple(i * 0.5 for i in range(10))
FLOATS = tuple(i * 0.37 for i in range(100000))
ARRAY = numpy.arange(1000000.0)
def call(f, mode, n):
    pts = PTS
    for _ in range(n):
        r = f(7, 2.5, name='bracket', points=pts, mode=mode)
    assert r == 7 * 2.5 + 4.5 + 2 + 1 + 1, r
def wrong(f, mode, n):
    pts = PTS
    for _ in range(n):
        try:
            f('seven', 2.5, name='bracket', points=pts, mode=mode)
        except TypeError:
            pass
        else:
            assert False
)";

PyObject* theGlobals = nullptr;

/// Runs a statement in the driver's namespace; ends the program where Python raises.
void Run(const char* statement) {
    PyObject* result = PyRun_String(statement, Py_file_input, theGlobals, theGlobals);
    if (result == nullptr) {
        PyErr_Print();
        std::exit(1);
    }
    Py_DECREF(result);
}

PyMethodDef parsedMethod = {"f",
                            reinterpret_cast<PyCFunction>(reinterpret_cast<void (*)()>(ParsedF)),
                            METH_VARARGS | METH_KEYWORDS, nullptr};

void Start() {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    host_Parameter parameter;
    const auto command = [&](const char* name, std::initializer_list<const char*> names,
                             omu_Primitive* (*run)(omu_Arguments&)) {
        host_Command added;
        added.name = name;
        added.help = "For measuring.";
        for (const char* parameterName : names) {
            parameter.name = parameterName;
            parameter.defaultText = std::strcmp(parameterName, "flag") == 0 ? "True" : "";
            parameter.constants.clear();
            if (std::strcmp(parameterName, "mode") == 0) {
                parameter.constants = {"COARSE", "MEDIUM", "FINE"};
            }
            added.parameters.push_back(parameter);
        }
        added.run = run;
        host_CommandTable::Instance().Add(added);
    };
    command("f", {"count", "size", "name", "points", "mode", "flag"}, &OursF);
    command("echo", {"value"}, &Echo);
    PyImport_AppendInittab("caehost", &host_InitModule);
    Py_InitializeEx(0);
    theGlobals = PyDict_New();
    PyDict_SetItemString(theGlobals, "__builtins__", PyEval_GetBuiltins());
    PyDict_SetItemString(theGlobals, "parsed", PyCFunction_New(&parsedMethod, nullptr));
    Run(kDriver);
#ifdef BENCH_HAVE_PYBIND11
    Run("import bench_pybind11");
#endif
}

constexpr int kCalls = 1000;

/// Times a Python statement that does \p items things.
void Statement(benchmark::State& state, const char* statement, int items) {
    PyObject* code = Py_CompileString(statement, "bench", Py_file_input);
    for (auto _ : state) {
        PyObject* result = PyEval_EvalCode(code, theGlobals, theGlobals);
        if (result == nullptr) {
            PyErr_Print();
            state.SkipWithError("Python raised");
            break;
        }
        Py_DECREF(result);
    }
    Py_DECREF(code);
    state.SetItemsProcessed(state.iterations() * items);
}

void Memcpy(benchmark::State& state) {
    const std::vector<double> from(1'000'000, 1.5);
    for (auto _ : state) {
        // As an array needs it: into memory of its own.
        void* to = std::malloc(from.size() * sizeof(double));
        std::memcpy(to, from.data(), from.size() * sizeof(double));
        benchmark::DoNotOptimize(to);
        std::free(to);
    }
}

void Register(const std::string& name, const char* statement, int items) {
    benchmark::RegisterBenchmark(name.c_str(), [=](benchmark::State& state) {
        Statement(state, statement, items);
    })->Unit(benchmark::kMicrosecond);
}

const bool registered = [] {
    Start();
    Register("1000 calls from Python/ours", "call(caehost.f, caehost.FINE, 1000)", kCalls);
    Register("1000 calls from Python/PyArg by hand", "call(parsed, 2, 1000)", kCalls);
    Register("1000 calls of a wrong type/ours", "wrong(caehost.f, caehost.FINE, 1000)", kCalls);
    Register("1000 calls of a wrong type/PyArg by hand", "wrong(parsed, 2, 1000)", kCalls);
    Register("array of 1e6 doubles and back/ours", "caehost.echo(ARRAY)", 1);
    benchmark::RegisterBenchmark("array of 1e6 doubles and back/memcpy", Memcpy)
        ->Unit(benchmark::kMicrosecond);
    Register("array of 1e6 doubles and back/NumPy copy", "ARRAY.copy()", 1);
    Register("tuple of 1e5 floats and back/ours", "caehost.echo(FLOATS)", 1);
#ifdef BENCH_HAVE_PYBIND11
    Register("1000 calls from Python/pybind11",
             "call(bench_pybind11.f, bench_pybind11.Mode.FINE, 1000)", kCalls);
    Register("1000 calls of a wrong type/pybind11",
             "wrong(bench_pybind11.f, bench_pybind11.Mode.FINE, 1000)", kCalls);
    Register("tuple of 1e5 floats and back/pybind11", "bench_pybind11.echo(FLOATS)", 1);
#endif
    return true;
}();

}  // namespace

#endif
