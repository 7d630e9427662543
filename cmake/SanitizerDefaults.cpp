// Run-time defaults of the sanitizers, read by them before main().

#include <cstdlib>

namespace {

// The drawing driver works in the caller's thread, and keeps no cache by a thread of its own: the
// leak checker, which looks into every thread at the end of a process, crashes over the driver's.
[[gnu::constructor]] void DrawWithoutThreads() {
    setenv("LP_NUM_THREADS", "0", 0);
    setenv("MESA_SHADER_CACHE_DISABLE", "true", 0);
}

}  // namespace

extern "C" {

const char* __asan_default_options();
const char* __lsan_default_options();
const char* __lsan_default_suppressions();
const char* __tsan_default_options();
const char* __ubsan_default_options();

// Running out of memory is reported to the caller, as without the sanitizer; tests rely on it.
__attribute__((visibility("default"))) const char* __asan_default_options() {
    return "allocator_may_return_null=1:detect_stack_use_after_return=1:"
           "check_initialization_order=1:strict_string_checks=1";
}

// A program's output is its own: matched suppressions are not listed.
__attribute__((visibility("default"))) const char* __lsan_default_options() {
    return "print_suppressions=0";
}

// What the interpreter and NumPy keep to the end of the process.
__attribute__((visibility("default"))) const char* __lsan_default_suppressions() {
    return "leak:libpython3\n"
           "leak:_multiarray_umath\n";
}

__attribute__((visibility("default"))) const char* __tsan_default_options() {
    return "allocator_may_return_null=1:halt_on_error=1:second_deadlock_stack=1";
}

__attribute__((visibility("default"))) const char* __ubsan_default_options() {
    return "print_stacktrace=1";
}
}
