#pragma once

#include "mem_Allocation.h"

#include <cstddef>

/// Empty base that gives a class the library's allocator: new raises mem_ExhaustedException.
class mem_AllocationOperators {
public:
    static void* operator new(std::size_t size) { return mem_OperatorNewThrow(size); }
    static void* operator new[](std::size_t size) { return mem_OperatorNewThrow(size); }
    static void operator delete(void* block) noexcept { mem_Free(block); }
    static void operator delete[](void* block) noexcept { mem_Free(block); }

    // Declaring the forms above hides the global placement form.
    static void* operator new(std::size_t /*size*/, void* place) noexcept { return place; }
    static void operator delete(void* /*block*/, void* /*place*/) noexcept {}
};
