#include "host_Support.h"

#include "host_PythonError.h"

namespace {

constexpr const char* kSource = R"py(
import caehost


class _Text:
    """A default that is no expression; shows as it was declared."""

    def __init__(self, text):
        self._text = text

    def __repr__(self):
        return self._text


def _default(text):
    try:
        return eval(text, dict(vars(caehost)))
    except Exception:
        return _Text(text)


def signature(command):
    from inspect import Parameter, Signature

    return Signature(
        [
            Parameter(
                name,
                Parameter.POSITIONAL_OR_KEYWORD,
                default=Parameter.empty if default is None else _default(default),
            )
            for name, _, _, default, _ in command.parameters
        ],
        __validate_parameters__=False,
    )


def argument_matches(line, text, namespace):
    """Completions of `text`, which ends `line`, inside the call of a command: names of parameters,
    and behind `name=` the constants that the parameter takes."""
    import re

    line = re.sub(r"'[^']*'|\"[^\"]*\"", "", line)
    while (without := re.sub(r"\([^()]*\)", "", line)) != line:
        line = without
    call = re.search(r"(\w+)\(([^(]*)$", line)
    command = namespace.get(call[1]) if call else None
    if type(command) is not caehost.Command:
        return []
    value = re.search(r"(\w+)\s*=\s*\w*$", call[2])
    if value:
        constants = (p[4] for p in command.parameters if p[0] == value[1])
        return [name for name in next(constants, ()) if name.startswith(text)]
    return [p[0] + "=" for p in command.parameters if p[0].startswith(text)]


def share_terminal(_):
    """Lets what scripts print wipe the progress bar first."""
    import io
    import sys

    class Output(io.TextIOWrapper):
        def write(self, text):
            caehost._clear_progress()
            return super().write(text)

    for name in ("stdout", "stderr"):
        stream = getattr(sys, name)
        if type(stream) is io.TextIOWrapper and stream is getattr(sys, f"__{name}__"):
            shared = Output(stream.buffer, stream.encoding, stream.errors, write_through=True)
            shared.mode = stream.mode
            setattr(sys, name, shared)


def prompt():
    """Readies the prompt: commands and constants at hand, completion, history."""
    import __main__
    import atexit
    import os
    import sys

    exec("from caehost import *", vars(__main__))
    print(f"caehost {caehost.__version__}, Python {sys.version.split()[0]}. "
          "help(command) explains a command; Ctrl-D ends.")
    try:
        import readline
        import rlcompleter
    except ImportError:
        return

    class Completer(rlcompleter.Completer):
        def complete(self, text, state):
            if state == 0:
                line = readline.get_line_buffer()[: readline.get_endidx()]
                self._arguments = argument_matches(line, text, vars(__main__))
            if self._arguments:
                return self._arguments[state] if state < len(self._arguments) else None
            return super().complete(text, state)

    readline.set_completer(Completer(vars(__main__)).complete)
    readline.parse_and_bind("tab: complete")
    history = os.path.join(os.path.expanduser("~"), ".caehost_history")
    try:
        readline.read_history_file(history)
    except OSError:
        pass

    def save():
        try:
            readline.write_history_file(history)
        except OSError:
            pass

    readline.set_history_length(1000)
    atexit.register(save)
)py";

/// The module, run at its first use.
PyObject* Module() {
    static PyObject* module = nullptr;
    if (module == nullptr) {
        const host_PyRef code =
            host_Made(Py_CompileString(kSource, "<caehost support>", Py_file_input));
        module = host_Made(PyImport_ExecCodeModule("_caehost_support", code.Get())).Release();
    }
    return module;
}

}  // namespace

host_PyRef host_SupportFunction(const char* name) {
    return host_Made(PyObject_GetAttrString(Module(), name));
}

host_PyRef host_CallSupport(const char* name, PyObject* argument) {
    return host_Made(PyObject_CallOneArg(host_SupportFunction(name).Get(), argument));
}
