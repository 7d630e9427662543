#pragma once

#include "host_PyRef.h"
#include "nex_CommandException.h"

#include <cxxabi.h>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>

/// A Python exception on its way through C++. At the border to the interpreter it becomes the
/// current exception again: the same object, traceback included. May be dropped in any thread.
class host_PythonError : public std::exception {
public:
    /// Takes the interpreter's current exception, which must be set.
    host_PythonError();

    [[nodiscard]] const char* what() const noexcept override { return "exception of Python code"; }
    /// Makes it the interpreter's current exception.
    void Restore() const noexcept;

private:
    struct Fetched;
    std::shared_ptr<const Fetched> _fetched;
};

/// Owns \p made, the result of an interpreter call; raises host_PythonError when that failed.
[[nodiscard]] inline host_PyRef host_Made(PyObject* made) {
    if (made == nullptr) {
        throw host_PythonError();
    }
    return host_PyRef::Steal(made);
}

/// The same for calls that return a negative number when they fail.
template <class Number>
Number host_Checked(Number result) {
    if (result < 0) {
        throw host_PythonError();
    }
    return result;
}

/// A Python string of UTF-8 \p text; bytes that are not UTF-8 show as U+FFFD.
[[nodiscard]] host_PyRef host_PyText(std::string_view text);
/// The UTF-8 text of a Python string, valid as long as the string.
[[nodiscard]] std::string_view host_Utf8(PyObject* string);

/// Adds a note (PEP 678) to the exception object \p error.
void host_AddNote(PyObject* error, std::string_view note);

/// The Python exception for an error of the library: type PythonType(), the message
/// JournalMessage() as its only argument, the persisted fields as attributes ("m_ArgNum" as
/// "argNum").
[[nodiscard]] host_PyRef host_MakeError(const nex_CommandException& error);

/// Makes an exception of C++ the interpreter's current exception; the second, the one that is
/// being handled.
void host_SetError(const nex_CommandException& error) noexcept;
void host_SetHandledError() noexcept;

/// Calls \p action; what it raises becomes the interpreter's current exception, and the result is
/// null or -1. Every function that the interpreter calls runs in here.
template <class Action>
auto host_AtBorder(Action&& action) -> std::invoke_result_t<Action> {
    try {
        return action();
    } catch (const nex_CommandException& error) {
        host_SetError(error);  // scripts handle these in loops: they get the short way
    } catch (const abi::__forced_unwind&) {
        throw;  // the interpreter ends this thread
    } catch (...) {
        host_SetHandledError();
    }
    if constexpr (std::is_pointer_v<std::invoke_result_t<Action>>) {
        return nullptr;
    } else {
        return -1;
    }
}

/// Adds the exception types that are not Python's own to the module.
void host_DefineErrors(PyObject* module);
