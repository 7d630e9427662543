#include "host_CommandObject.h"

#include "host_Changes.h"
#include "host_Interpreter.h"
#include "host_Journal.h"
#include "host_Notes.h"
#include "host_Object.h"
#include "host_ProgressReporter.h"
#include "host_Support.h"
#include "host_Values.h"
#include "omu_InterfaceObj.h"
#include "omu_PrimWrapper.h"

#include <optional>
#include <structmember.h>

namespace {

/// A command, or a method of an application object, with what its calls need ready.
struct Callable {
    host_Command declaration;
    omu_InterfaceHandle object;  // of none for a command
    /// The parameters' names as the interpreter interns them, beside their texts.
    std::vector<std::pair<host_PyRef, cow_String>> keywords;
    host_PyRef signature;  // inspect.Signature, once it was asked for
    cow_String label;      // of the step that a call is

    [[nodiscard]] bool IsMethod() const { return object != omu_InterfaceHandle(); }

    [[nodiscard]] const cow_String* FindKeyword(PyObject* interned) const {
        for (const auto& [name, text] : keywords) {
            if (name.Get() == interned) {
                return &text;
            }
        }
        return nullptr;
    }
};

/// The interpreter looks for the call function at this place of the object.
struct Cell {
    vectorcallfunc call;
    std::unique_ptr<Callable> callable;
};
static_assert(alignof(Cell) <= alignof(PyObject));
using Command = host_Object<Cell>;

Callable& Of(PyObject* self) { return *Command::Of(self).callable; }

/// Converts the arguments; an error of the conversion says in a note which one it is about.
void Fill(omu_Arguments& arguments, const Callable& callable, PyObject* const* given,
          Py_ssize_t positional, PyObject* keywordNames) {
    const Py_ssize_t keywordCount = keywordNames != nullptr ? PyTuple_GET_SIZE(keywordNames) : 0;
    Py_ssize_t at = 0;
    try {
        for (; at < positional; ++at) {
            arguments.Put(host_FromPython(given[at]).release());
        }
        for (; at < positional + keywordCount; ++at) {
            PyObject* name = PyTuple_GET_ITEM(keywordNames, at - positional);
            std::unique_ptr<omu_Primitive> value = host_FromPython(given[at]);
            if (const cow_String* keyword = callable.FindKeyword(name)) {
                arguments.Put(value.release(), *keyword);
            } else {
                arguments.Put(value.release(), cow_String(host_Utf8(name)));
            }
        }
    } catch (const host_PythonError& error) {
        error.Restore();
        const std::string place =
            at < positional
                ? host_ArgumentName(callable.declaration, at)
                : std::string(host_Utf8(PyTuple_GET_ITEM(keywordNames, at - positional)));
        host_NoteCurrentError("argument " + place);
        throw host_PythonError();
    }
}

/// The application object that a result is, to be named in the journal.
omu_InterfaceHandle ObjectOf(const omu_Primitive* result) {
    const auto* wrapper = result != nullptr ? omu_PrimCast<omu_PrimWrapper>(*result) : nullptr;
    return wrapper != nullptr ? wrapper->Handle() : omu_InterfaceHandle();
}

PyObject* Call(PyObject* self, PyObject* const* given, std::size_t flags, PyObject* keywordNames) {
    // The call may drop the last reference from outside.
    const host_PyRef keep = host_PyRef::Share(self);
    const Callable& callable = Of(self);
    const Py_ssize_t positional = PyVectorcall_NARGS(flags);
    const host_CommandProgress progress;
    return host_AtBorder([&]() -> PyObject* {
        try {
            host_JournalEntry entry;
            std::optional<host_Transaction> step;
            if (callable.declaration.changesModel) {
                step.emplace(callable.label);
            }
            const auto& finish = callable.declaration.finish;
            std::optional<omu_Arguments> arguments(static_cast<int>(positional));
            Fill(*arguments, callable, given, positional, keywordNames);
            entry.BeginCall(callable.declaration, callable.object, *arguments);
            std::unique_ptr<omu_Primitive> result(callable.declaration.run(*arguments));
            if (!finish) {
                // An array of the result that shared its elements with an argument has its own.
                arguments.reset();
            }
            const omu_InterfaceHandle object = ObjectOf(result.get());
            host_PyRef converted = host_ToPython(std::move(result));
            host_GiveBackDropped();
            entry.Commit(object);
            if (finish) {
                finish(*arguments);
            }
            if (step) {
                step->Commit();
            }
            return converted.Release();
        } catch (const nex_CommandException& error) {
            const host_PyRef made = host_MakeError(error);
            if (!callable.IsMethod()) {
                host_AddCommandNotes(made.Get(), error, callable.declaration, positional,
                                     keywordNames);
            }
            PyErr_SetObject(PyExceptionInstance_Class(made.Get()), made.Get());
            return nullptr;
        }
    });
}

host_PyRef Make(Callable made) {
    made.label = made.declaration.name;
    for (const host_Parameter& parameter : made.declaration.parameters) {
        made.keywords.emplace_back(host_Made(PyUnicode_InternFromString(parameter.name.c_str())),
                                   parameter.name);
    }
    return Command::New({&Call, std::make_unique<Callable>(std::move(made))});
}

PyObject* Name(PyObject* self, void*) {
    return host_AtBorder([&] { return host_PyText(Of(self).declaration.name).Release(); });
}

PyObject* Module(PyObject*, void*) { return PyUnicode_FromString("caehost"); }

PyObject* Doc(PyObject* self, void*) {
    return host_AtBorder(
        [&] { return host_PyText(host_HelpText(Of(self).declaration)).Release(); });
}

/// Tuple of (name, type, help, default text or None, names of constants) for each parameter.
PyObject* Parameters(PyObject* self, void*) {
    return host_AtBorder([&] {
        const std::vector<host_Parameter>& parameters = Of(self).declaration.parameters;
        host_PyRef all = host_Made(PyTuple_New(static_cast<Py_ssize_t>(parameters.size())));
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            const host_Parameter& parameter = parameters[i];
            const host_PyRef constants = host_Made(PyList_New(0));
            for (const std::string& constant : parameter.constants) {
                host_Checked(PyList_Append(constants.Get(), host_PyText(constant).Get()));
            }
            host_PyRef one = host_Made(Py_BuildValue(
                "ssszN", parameter.name.c_str(), parameter.type.c_str(), parameter.help.c_str(),
                parameter.IsRequired() ? nullptr : parameter.defaultText.c_str(),
                PyList_AsTuple(constants.Get())));
            PyTuple_SET_ITEM(all.Get(), static_cast<Py_ssize_t>(i), one.Release());
        }
        return all.Release();
    });
}

PyObject* Signature(PyObject* self, void*) {
    return host_AtBorder([&] {
        if (Of(self).IsMethod()) {
            PyErr_SetString(PyExc_AttributeError, "methods do not declare their parameters");
            throw host_PythonError();
        }
        host_PyRef& signature = Of(self).signature;
        if (!signature) {
            signature = host_CallSupport("signature", self);
        }
        return host_PyRef(signature).Release();
    });
}

PyObject* Repr(PyObject* self) {
    return host_AtBorder([&] {
        return host_PyText("<command " + Of(self).declaration.Signature() + ">").Release();
    });
}

/// Commands as attributes of classes stay what they are. That they have this slot at all makes
/// help() show them as routines.
PyObject* Bind(PyObject* self, PyObject*, PyObject*) { return Py_NewRef(self); }

PyObject* Reduce(PyObject* self, PyObject*) {
    if (!Of(self).IsMethod()) {
        return Name(self, nullptr);  // found again by its name in the module
    }
    PyErr_SetString(PyExc_TypeError, "methods of application objects cannot be copied");
    return nullptr;
}

}  // namespace

host_PyRef host_CommandObject(host_Command declaration) {
    return Make({std::move(declaration), {}, {}, {}, {}});
}

host_PyRef host_MethodObject(const omu_InterfaceHandle& object, const cow_String& name) {
    host_Command method;
    method.name = name.Std();
    method.run = [object, name](omu_Arguments& arguments) {
        return object.Require().CallMethod(name, arguments);
    };
    method.changesModel = true;
    return Make({std::move(method), object, {}, {}, {}});
}

void host_DefineCommands(PyObject* module) {
    static PyMemberDef members[] = {
        {"__vectorcalloffset__", T_PYSSIZET, offsetof(PyVarObject, ob_size), READONLY, nullptr},
        {}};
    static_assert(offsetof(PyVarObject, ob_size) == sizeof(PyObject));
    static PyMethodDef methods[] = {{"__reduce__", &Reduce, METH_NOARGS, nullptr}, {}};
    static PyGetSetDef attributes[] = {
        {"__name__", &Name, nullptr, nullptr, nullptr},
        {"__qualname__", &Name, nullptr, nullptr, nullptr},
        {"__module__", &Module, nullptr, nullptr, nullptr},
        {"__doc__", &Doc, nullptr, nullptr, nullptr},
        {"__signature__", &Signature, nullptr, nullptr, nullptr},
        {"parameters", &Parameters, nullptr,
         "Name, type, help, default text and constants of each parameter.", nullptr},
        {}};
    static PyType_Slot slots[] = {{Py_tp_dealloc, host_Slot(&Command::Dealloc)},
                                  {Py_tp_call, host_Slot(&PyVectorcall_Call)},
                                  {Py_tp_repr, host_Slot(&Repr)},
                                  {Py_tp_descr_get, host_Slot(&Bind)},
                                  {Py_tp_members, members},
                                  {Py_tp_methods, methods},
                                  {Py_tp_getset, attributes},
                                  {}};
    Command::Define(module, "caehost.Command",
                    Py_TPFLAGS_DISALLOW_INSTANTIATION | Py_TPFLAGS_HAVE_VECTORCALL, slots);
}
