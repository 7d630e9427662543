#pragma once

#include "mem_Allocation.h"

#include <cstddef>

/// Empty base for classes with many small objects: single objects come from the allocator for
/// small objects, arrays from the general one. new raises mem_ExhaustedException.
class mem_AllocationOperatorsTiny {
public:
    static void* operator new(std::size_t size) { return mem_OperatorNewTinyThrow(size); }
    // Arrays must not come from the global operator: delete[] gives them to mem_Free.
    static void* operator new[](std::size_t size) { return mem_OperatorNewThrow(size); }
    static void operator delete(void* block) noexcept { mem_Free(block); }
    static void operator delete[](void* block) noexcept { mem_Free(block); }

    // Declaring the forms above hides the global placement form.
    static void* operator new(std::size_t /*size*/, void* place) noexcept { return place; }
    static void operator delete(void* /*block*/, void* /*place*/) noexcept {}
};
