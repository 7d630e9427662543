#include "host_Main.h"

#include "host_Command.h"
#include "host_Journal.h"
#include "host_Module.h"
#include "host_ProgressCommand.h"
#include "host_PythonError.h"
#include "host_Support.h"
#include "host_initialize.h"
#include "nex_Exception.h"
#include "wip_WIP.h"

#include <cstdio>
#include <filesystem>
#include <stdexcept>
#include <string_view>
#include <unistd.h>

namespace {

constexpr const char* kUsage =
    "usage: caehost [--journal FILE] [--progress MODE] [SCRIPT.py | -c CODE | -] [ARGUMENTS...]\n"
    "\n"
    "Runs a Python script that uses the application's commands (from caehost import *).\n"
    "Without a script it shows a prompt, or runs what comes on standard input.\n"
    "\n"
    "  SCRIPT.py       the script; ARGUMENTS are its sys.argv\n"
    "  -c CODE         runs CODE\n"
    "  -               runs standard input\n"
    "  --journal FILE  writes every command that succeeds to FILE, as a script that repeats it:\n"
    "                  caehost FILE\n"
    "  --progress MODE shows the progress of long commands on standard error: bar, lines, none,\n"
    "                  or auto, a bar on a terminal and else lines\n"
    "  -h, --help      shows this\n"
    "  -V, --version   shows the version\n";

/// A command line that is wrong.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    bool help = false;
    bool version = false;
    const char* journal = nullptr;
    const char* code = nullptr;
    const char* script = nullptr;
    host_ProgressMode progress = host_ProgressMode::Auto;
    std::vector<char*> argv;  // sys.argv

    [[nodiscard]] bool IsPrompt() const {
        return code == nullptr && script == nullptr && ::isatty(STDIN_FILENO) != 0;
    }
};

host_ProgressMode ProgressMode(std::string_view name) {
    if (const auto mode = host_ProgressModeOf(name)) {
        return *mode;
    }
    throw UsageError("option --progress needs auto, bar, lines or none, not " + std::string(name));
}

Options Parse(int argc, char** argv) {
    static char empty[] = "";
    Options options;
    int at = 1;
    const auto value = [&](std::string_view option, const char* what) {
        if (++at >= argc) {
            throw UsageError("option " + std::string(option) + " needs " + what);
        }
        return argv[at];
    };
    for (; at < argc; ++at) {
        const std::string_view option = argv[at];
        if (option == "-h" || option == "--help") {
            options.help = true;
        } else if (option == "-V" || option == "--version") {
            options.version = true;
        } else if (option == "--journal") {
            options.journal = value(option, "a file");
        } else if (option == "--progress") {
            options.progress = ProgressMode(value(option, "auto, bar, lines or none"));
        } else if (option == "-c") {
            char* const name = argv[at];
            options.code = value(option, "code");
            options.argv = {name};
            ++at;
            break;
        } else if (option.starts_with('-') && option != "-") {
            throw UsageError("unknown option " + std::string(option));
        } else {
            options.script = option == "-" ? nullptr : argv[at];
            options.argv = {argv[at++]};
            break;
        }
    }
    if (options.argv.empty()) {
        options.argv = {empty};
    }
    options.argv.insert(options.argv.end(), argv + at, argv + argc);
    return options;
}

void Check(const Options& options) {
    std::error_code ignored;
    if (options.script != nullptr && options.journal != nullptr &&
        std::filesystem::equivalent(options.script, options.journal, ignored)) {
        throw UsageError("the journal would overwrite the script");
    }
}

/// Ends the process with Python's message when starting it has failed.
void Expect(PyStatus status) {
    if (PyStatus_Exception(status) != 0) {
        Py_ExitStatusException(status);
    }
}

void SetText(PyConfig& config, wchar_t** field, const std::string& text) {
    Expect(PyConfig_SetBytesString(&config, field, text.c_str()));
}

void StartInterpreter(const Options& options) {
    PyPreConfig preConfig;
    PyPreConfig_InitIsolatedConfig(&preConfig);
    preConfig.utf8_mode = 1;  // scripts, journals and output are UTF-8 whatever the locale
    Expect(Py_PreInitialize(&preConfig));
    PyImport_AppendInittab(host_kName, &host_InitModule);

    PyConfig config;
    PyConfig_InitIsolatedConfig(&config);
    config.install_signal_handlers = 1;  // else Ctrl-C kills the process
    config.isolated = 0;                 // the script's folder comes first in sys.path,
    config.safe_path = 0;                // but nothing comes from the environment
    config.buffered_stdio = 0;           // what scripts and commands print stays in order
    config.quiet = 1;
    SetText(config, &config.program_name, host_kName);
    SetText(config, &config.executable, CAEHOST_PYTHON_EXECUTABLE);
    if (options.code != nullptr) {
        SetText(config, &config.run_command, std::string(options.code) + "\n");
    }
    if (options.script != nullptr) {
        SetText(config, &config.run_filename, options.script);
    }
    Expect(PyConfig_SetBytesArgv(&config, static_cast<Py_ssize_t>(options.argv.size()),
                                 options.argv.data()));
    Expect(Py_InitializeFromConfig(&config));
    PyConfig_Clear(&config);
}

int RunPython(const Options& options) {
    StartInterpreter(options);
    if (options.IsPrompt()) {
        host_Checked(PySys_SetObject("__interactivehook__", host_SupportFunction("prompt").Get()));
    }
    return Py_RunMain();
}

/// The library, up as long as this lives.
class Library {
public:
    Library() { host_initialize(_count); }
    ~Library() { host_finalize(_count); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

private:
    int _count = 0;
};

/// What the main thread reports progress to, for as long as this lives.
class Reporter {
public:
    explicit Reporter(host_ProgressMode mode) : _reporter(mode) { Attach(&_reporter); }
    ~Reporter() { Attach(nullptr); }
    Reporter(const Reporter&) = delete;
    Reporter& operator=(const Reporter&) = delete;

private:
    static void Attach(wip_WipReporter* reporter) {
        thr_ThreadSingleton<wip_WIP>::Instance().SetWipReporter(reporter);
    }

    host_ProgressReporter _reporter;
};

int Run(const Options& options, void (*registerCommands)(host_CommandTable&)) {
    if (options.help) {
        std::fputs(kUsage, stdout);
        return 0;
    }
    if (options.version) {
        std::printf("caehost %s (Python %s)\n", CAEHOST_VERSION, PY_VERSION);
        return 0;
    }
    const Library library;
    const Reporter reporter(options.progress);
    registerCommands(host_CommandTable::Instance());
    host_RegisterProgressCommand(host_CommandTable::Instance());
    if (options.journal != nullptr) {
        host_Journal::Instance().Open(options.journal);
    }
    const int exitCode = RunPython(options);
    host_Journal::Instance().Close();
    return exitCode;
}

}  // namespace

int host_Main(int argc, char** argv, void (*registerCommands)(host_CommandTable&)) {
    try {
        const Options options = Parse(argc, argv);
        Check(options);
        return Run(options, registerCommands);
    } catch (const UsageError& error) {
        std::fprintf(stderr, "caehost: %s\nTry 'caehost --help'.\n", error.what());
        return 2;
    } catch (const host_PythonError& error) {
        error.Restore();
        PyErr_Print();
    } catch (const nex_Exception& error) {
        std::fprintf(stderr, "caehost: %s\n", error.DeveloperReport().AsCharPtr());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "caehost: %s\n", error.what());
    }
    return 1;
}
