#include "UTI_CoreUtils.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

unsigned useCount = 0;

}  // namespace

void UTI_CoreUtils_initialize(int& count) {
    if (useCount++ == 0) {
        ++count;
    }
}

void UTI_CoreUtils_finalize(int& count) {
    // What the library keeps (the global lock, the threads' registries) may be in use by threads
    // that end later: it lives as long as the process.
    if (useCount-- == 1) {
        --count;
    }
}

#if defined(_WIN32)
// Thread ends are noticed through a fiber-local slot: the system need not call for each thread.
extern "C" BOOL WINAPI DllMain(HINSTANCE library, DWORD reason, LPVOID /*reserved*/) {
    if (reason == DLL_PROCESS_ATTACH) {
        DisableThreadLibraryCalls(library);
    }
    return TRUE;
}
#endif
