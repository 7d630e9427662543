#pragma once

#include "CoreUtilsExport.h"
#include "thr_ThrSingletonRegistry.h"

/// Way to the calling thread's registry of destroy functions.
class CORE_API thr_GlobalSingleton {
public:
    /// The calling thread's registry, made on first use. It runs when the thread ends, however the
    /// thread was started and even when first used after the thread_local destructors. For the main
    /// thread it does not run at process exit: there the module finalisers destroy.
    /// \throws mem_ExhaustedException, std::system_error  when it cannot be made.
    [[nodiscard]] static thr_ThrSingletonRegistry& Instance();

    thr_GlobalSingleton() = delete;
};
