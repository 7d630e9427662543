// Text of a million numbers and of strings, as tuples print them.

#include "omu_PrimString.h"
#include "omu_PrimTuple.h"

#include <benchmark/benchmark.h>

#ifdef BENCH_HAVE_FMT
#include <fmt/format.h>
#endif
#ifdef BENCH_HAVE_HOST
#include <Python.h>
#endif

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

namespace {

constexpr int kNumbers = 1'000'000;
constexpr int kStrings = 100'000;

/// "full": all digits, any magnitude; "short": multiples of 1/8, as lengths in drawings are.
std::vector<double> Numbers(bool full) {
    std::mt19937_64 random(4711);
    std::uniform_real_distribution<double> uniform(-1.0, 1.0);
    std::vector<double> numbers(kNumbers);
    for (int i = 0; i < kNumbers; ++i) {
        const double value = uniform(random);
        numbers[static_cast<std::size_t>(i)] =
            full ? value * std::pow(10.0, i % 13 - 6) : std::round(value * 8000.0) / 8.0;
    }
    return numbers;
}

template <class Append>
std::string Joined(const std::vector<double>& numbers, Append append) {
    std::string text = "(";
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        if (i != 0) {
            text += ", ";
        }
        const std::size_t start = text.size();
        append(text, numbers[i]);
        if (text.find_first_of(".e", start) == std::string::npos) {
            text += ".0";
        }
    }
    return text += ')';
}

void AppendToChars(std::string& text, double value) {
    char buffer[32];
    const auto end = std::to_chars(buffer, buffer + 32, value, std::chars_format::general, 15);
    text.append(buffer, end.ptr);
}

void AppendPrinted(std::string& text, double value) {
    char buffer[32];
    text.append(buffer, static_cast<std::size_t>(std::snprintf(buffer, 32, "%.15g", value)));
}

omu_PrimTuple Tuple(const std::vector<double>& numbers) {
    omu_PrimTuple tuple(static_cast<int>(numbers.size()), '(');
    for (const double number : numbers) {
        tuple.Put(number);
    }
    return tuple;
}

void OursNumbers(benchmark::State& state, bool full) {
    const std::vector<double> numbers = Numbers(full);
    const omu_PrimTuple tuple = Tuple(numbers);
    if (tuple.AsRepr().Std() != Joined(numbers, AppendPrinted)) {
        state.SkipWithError("the text differs from printf's");
        return;
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(tuple.AsRepr());
    }
    state.SetItemsProcessed(state.iterations() * kNumbers);
}

template <class Append>
void PeerNumbers(benchmark::State& state, bool full, Append append) {
    const std::vector<double> numbers = Numbers(full);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Joined(numbers, append));
    }
    state.SetItemsProcessed(state.iterations() * kNumbers);
}

void ToCharsNumbers(benchmark::State& state, bool full) {
    PeerNumbers(state, full, [](std::string& text, double value) { AppendToChars(text, value); });
}

void PrintedNumbers(benchmark::State& state, bool full) {
    PeerNumbers(state, full, [](std::string& text, double value) { AppendPrinted(text, value); });
}

#ifdef BENCH_HAVE_FMT
void FmtNumbers(benchmark::State& state, bool full) {
    PeerNumbers(state, full, [](std::string& text, double value) {
        fmt::format_to(std::back_inserter(text), "{:.15g}", value);
    });
}
#endif

/// Strings of 40 characters, every eighth of them a quote to escape if asked.
std::vector<std::string> Strings(bool quotes) {
    std::vector<std::string> strings(kStrings);
    for (int i = 0; i < kStrings; ++i) {
        for (int j = 0; j < 40; ++j) {
            const bool quote = quotes && j % 8 == 7;
            const char character =
                quote ? (j % 16 == 7 ? '\'' : '"') : static_cast<char>('a' + (i + j) % 26);
            strings[static_cast<std::size_t>(i)] += character;
        }
    }
    return strings;
}

void OursStrings(benchmark::State& state, bool quotes) {
    const std::vector<std::string> strings = Strings(quotes);
    omu_PrimTuple tuple(kStrings, '(');
    for (const std::string& string : strings) {
        tuple.Put(cow_String(string));
    }
    for (auto _ : state) {
        benchmark::DoNotOptimize(tuple.AsRepr());
    }
    state.SetItemsProcessed(state.iterations() * kStrings);
}

#ifdef BENCH_HAVE_HOST
/// CPython's repr of a tuple of the same elements.
template <class Elements, class Make>
void CPythonRepr(benchmark::State& state, const Elements& elements, Make make) {
    if (!Py_IsInitialized()) {
        Py_InitializeEx(0);
    }
    PyObject* tuple = PyTuple_New(static_cast<Py_ssize_t>(elements.size()));
    for (std::size_t i = 0; i < elements.size(); ++i) {
        PyTuple_SET_ITEM(tuple, static_cast<Py_ssize_t>(i), make(elements[i]));
    }
    for (auto _ : state) {
        Py_XDECREF(PyObject_Repr(tuple));
    }
    state.SetItemsProcessed(state.iterations() * static_cast<int64_t>(elements.size()));
    Py_DECREF(tuple);
}

void CPythonNumbers(benchmark::State& state, bool full) {
    CPythonRepr(state, Numbers(full), PyFloat_FromDouble);
}

void CPythonStrings(benchmark::State& state, bool quotes) {
    CPythonRepr(state, Strings(quotes), [](const std::string& text) {
        return PyUnicode_FromStringAndSize(text.data(), static_cast<Py_ssize_t>(text.size()));
    });
}

#endif

/// Registers \p run for both sets of its workload.
void Both(const std::string& first, const std::string& second, const std::string& who,
          void (*run)(benchmark::State&, bool), bool firstArgument) {
    for (const bool isFirst : {true, false}) {
        benchmark::RegisterBenchmark(((isFirst ? first : second) + "/" + who).c_str(), run,
                                     isFirst == firstArgument)
            ->Unit(benchmark::kMillisecond);
    }
}

const bool registered = [] {
    const auto numbers = [](const char* who, void (*run)(benchmark::State&, bool)) {
        Both("full numbers", "short numbers", who, run, true);
    };
    const auto strings = [](const char* who, void (*run)(benchmark::State&, bool)) {
        Both("plain strings", "strings with quotes", who, run, false);
    };
    numbers("ours", OursNumbers);
    numbers("to_chars", ToCharsNumbers);
    numbers("snprintf", PrintedNumbers);
#ifdef BENCH_HAVE_FMT
    numbers("fmt", FmtNumbers);
#endif
    strings("ours", OursStrings);
#ifdef BENCH_HAVE_HOST
    numbers("CPython repr", CPythonNumbers);
    strings("CPython repr", CPythonStrings);
#endif
    return true;
}();

}  // namespace
