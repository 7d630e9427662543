#pragma once

#include "CoreUtilsExport.h"

#include <mutex>

/// The lock of the product line's process-wide bookkeeping, reached as
/// omi_Singleton<thr_GlobalLock>::Instance(). Held for a few instructions at a time; not recursive.
class CORE_API thr_GlobalLock {
public:
    void Lock() { _mutex.lock(); }
    void Unlock() noexcept { _mutex.unlock(); }

    // The names std::lock_guard asks for.
    void lock() { Lock(); }
    void unlock() noexcept { Unlock(); }

private:
    std::mutex _mutex;
};
