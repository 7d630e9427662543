#include "host_PythonText.h"

#include "host_Command.h"
#include "host_Progress.h"
#include "omu_PrimArray.h"
#include "omu_PrimBoolean.h"
#include "omu_PrimComplex.h"
#include "omu_PrimDictionary.h"
#include "omu_PrimEnumBase.h"
#include "omu_PrimList.h"
#include "omu_PrimNone.h"
#include "omu_PrimNumber.h"
#include "omu_PrimString.h"
#include "omu_PrimWrapper.h"

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <limits>
#include <span>

namespace {

/// Arrays of up to so many elements are written as numbers, longer ones as base64.
constexpr std::size_t kMaxListed = 12;

/// Whether scripts have the constant \p name under that name: an importable one, in upper case.
bool IsImportable(std::string_view name) {
    constexpr std::string_view kLetters = "_ABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789";
    return !(name[0] >= '0' && name[0] <= '9') &&
           name.find_first_not_of(kLetters) == std::string_view::npos &&
           host_CommandTable::Instance().Constants().contains(std::string(name));
}

void AppendBase64(std::string& text, std::span<const std::byte> bytes) {
    constexpr char kDigits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t given = std::min<std::size_t>(3, bytes.size() - i);
        unsigned group = 0;
        for (std::size_t k = 0; k < 3; ++k) {
            group = group << 8 | (k < given ? std::to_integer<unsigned>(bytes[i + k]) : 0U);
        }
        for (std::size_t k = 0; k < 4; ++k) {
            text += k <= given ? kDigits[group >> (18 - 6 * k) & 63U] : '=';
        }
    }
}

template <class T>
constexpr const char* kDtype = nullptr;
template <>
constexpr const char* kDtype<int> = "int32";
template <>
constexpr const char* kDtype<float> = "float32";
template <>
constexpr const char* kDtype<double> = "float64";

}  // namespace

void host_PythonText::AppendQuoted(std::string_view text) {
    constexpr char kHex[] = "0123456789abcdef";
    _text += '\'';
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '\'' || c == '\\') {
            (_text += '\\') += c;
        } else if (c == '\n') {
            _text += "\\n";
        } else if (byte < 0x20 || byte == 0x7F) {
            ((_text += "\\x") += kHex[byte >> 4]) += kHex[byte & 15];
        } else {
            _text += c;  // UTF-8, which Python source is
        }
    }
    _text += '\'';
}

void host_PythonText::AppendDouble(double value) {
    if (std::isnan(value)) {
        const auto bits = std::bit_cast<std::uint64_t>(value);
        if (bits == std::bit_cast<std::uint64_t>(std::numeric_limits<double>::quiet_NaN())) {
            _text += "float('nan')";
        } else {
            _text += "float_from_bits(" + std::to_string(bits) + ")";
        }
        return;
    }
    if (std::isinf(value)) {
        _text += value > 0.0 ? "float('inf')" : "float('-inf')";
        return;
    }
    char buffer[32];  // the shortest text that reads back as the same number
    const auto end = std::to_chars(buffer, buffer + sizeof buffer, value).ptr;
    const std::string_view text(buffer, static_cast<std::size_t>(end - buffer));
    _text += text;
    if (text.find_first_of(".e") == std::string_view::npos) {
        _text += ".0";
    }
}

void host_PythonText::Omit(std::string_view shown, std::string obstacle) {
    ((_text += '<') += shown) += '>';
    if (_obstacle.empty()) {
        _obstacle = std::move(obstacle);
    }
}

void host_PythonText::Visit(const omu_PrimNone&) { _text += "None"; }

void host_PythonText::Visit(const omu_PrimBoolean& value) {
    _text += value.Value() ? "True" : "False";
}

void host_PythonText::Visit(const omu_PrimNumber& value) {
    if (value.IsType('f')) {
        AppendDouble(value.Value());
    } else {
        _text += value.AsString(0).View();
    }
}

void host_PythonText::Visit(const omu_PrimComplex& value) {
    _text += "complex(";
    AppendDouble(value.Value().ConvertedReal());
    _text += ", ";
    AppendDouble(value.Value().ConvertedImag());
    _text += ')';
}

void host_PythonText::Visit(const omu_PrimString& value) { AppendQuoted(value.Text()); }

void host_PythonText::Visit(const omu_PrimEnumBase& value) {
    const std::string_view name = value.GetString();
    if (!name.empty() && IsImportable(name)) {
        _text += name;
    } else {
        _text += "SymbolicConstant(";
        AppendQuoted(name);
        _text += ')';
    }
}

void host_PythonText::AppendElements(const omu_PrimTuple& sequence) {
    host_Progress progress("Writing the journal",
                           host_Work{static_cast<std::size_t>(sequence.Length())});
    for (int i = 0; i < sequence.Length(); ++i) {
        progress.Count();
        if (i > 0) {
            _text += ", ";
        }
        const omu_Primitive* element = sequence.Index(i);
        if (element != nullptr) {
            Append(*element);
        } else {
            _text += "None";
        }
    }
}

void host_PythonText::Visit(const omu_PrimTuple& value) {
    _text += '(';
    AppendElements(value);
    _text += value.Length() == 1 ? ",)" : ")";
}

void host_PythonText::Visit(const omu_PrimList& value) {
    _text += '[';
    AppendElements(value);
    _text += ']';
}

void host_PythonText::Visit(const omu_PrimArray& value) {
    _text += "numeric_array(";
    value.VisitElements([this]<class T>(std::span<const T> elements) {
        if (elements.size() > kMaxListed) {
            _text += '\'';
            AppendBase64(_text, std::as_bytes(elements));
            _text += '\'';
        } else {
            std::string_view separator = "[";
            for (const T element : elements) {
                _text += separator;
                separator = ", ";
                if constexpr (std::is_same_v<T, int>) {
                    _text += std::to_string(element);
                } else {
                    AppendDouble(static_cast<double>(element));
                }
            }
            _text += elements.empty() ? "[]" : "]";
        }
        ((_text += ", '") += kDtype<T>) += "', (";
    });
    for (const int dim : value.Dims()) {
        _text += std::to_string(dim) + ",";
    }
    _text += "))";
}

void host_PythonText::Visit(const omu_PrimDictionary<int>& value) {
    std::string_view separator;
    _text += '{';
    for (const auto& entry : value) {
        (_text += separator) += std::to_string(entry.Key()) + ": ";
        Append(entry.Value().ConstGet());
        separator = ", ";
    }
    _text += '}';
}

void host_PythonText::Visit(const omu_PrimDictionary<cow_String>& value) {
    std::string_view separator;
    _text += '{';
    for (const auto& entry : value) {
        _text += separator;
        AppendQuoted(entry.Key());
        _text += ": ";
        Append(entry.Value().ConstGet());
        separator = ", ";
    }
    _text += '}';
}

void host_PythonText::Visit(const omu_PrimWrapper& value) {
    const std::string name = _nameOf(value.Handle());
    if (name.empty()) {
        Omit(value.ObjectType(),
             "an object of the application that no command of the journal made");
    } else {
        _text += name;
    }
}

void host_PythonText::VisitOther(const omu_Primitive& value) {
    const std::string type = value.TypeString().Std();
    Omit(type, "an object of type " + type);
}
