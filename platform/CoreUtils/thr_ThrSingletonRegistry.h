#pragma once

#include "CoreUtilsExport.h"

#include <vector>

/// Destroys the calling thread's object of some type; returns 1 if there was one, else 0.
using thr_DestroyFunction = int (*)();

/// The destroy functions that one thread runs when it ends. Each thread has its own registry
/// (thr_GlobalSingleton::Instance()) and is the only one to use it.
class CORE_API thr_ThrSingletonRegistry {
public:
    thr_ThrSingletonRegistry() = default;
    thr_ThrSingletonRegistry(const thr_ThrSingletonRegistry&) = delete;
    thr_ThrSingletonRegistry& operator=(const thr_ThrSingletonRegistry&) = delete;
    ~thr_ThrSingletonRegistry() = default;

    /// Has \p destroy called when this thread ends, at destruction level 0. Registering a function
    /// that is registered changes nothing.
    void Register(thr_DestroyFunction destroy);

    /// Functions run in ascending order of their levels, the latest registered first within one.
    /// Registers \p destroy when it is not registered.
    void SetDestructLevel(thr_DestroyFunction destroy, int level);

    /// Runs and forgets the functions, those that they register in turn included, up to a fixed
    /// number of rounds. Called at the end of a thread; \p destroy functions must not raise.
    void DestroyAll() noexcept;

private:
    struct Entry {
        thr_DestroyFunction destroy;
        int level;
    };

    Entry& FindOrAdd(thr_DestroyFunction destroy);

    std::vector<Entry> _entries;  // in order of registration
};
