#pragma once

#include "CoreUtilsExport.h"

#include <cstddef>

/// \file
/// The allocator of the product line. All functions return memory aligned for std::max_align_t,
/// are safe to call from any thread, and give out blocks that mem_Free and mem_Realloc accept from
/// any thread, whichever function they came from. Blocks of up to 512 bytes come from a pool where
/// there is one; the environment variable TVX_MEM_POOL set to 0 serves them without, for memory
/// checkers that watch malloc.

/// A new block of \p size bytes; null when memory is exhausted. Size 0 gives a block of its own.
[[nodiscard]] CORE_API void* mem_Malloc(std::size_t size) noexcept;

/// Moves \p block (null: none yet) into a block of \p size bytes and returns that; the common
/// bytes are kept. Null when memory is exhausted: the old block then stays as it was.
[[nodiscard]] CORE_API void* mem_Realloc(void* block, std::size_t size) noexcept;

/// Gives \p block back; null is allowed.
CORE_API void mem_Free(void* block) noexcept;

/// A new block of \p size bytes.
/// \throws mem_ExhaustedException  when memory is exhausted.
[[nodiscard]] CORE_API void* mem_OperatorNewThrow(std::size_t size);

/// The same, for small objects.
/// \throws mem_ExhaustedException  when memory is exhausted.
[[nodiscard]] CORE_API void* mem_OperatorNewTinyThrow(std::size_t size);

/// The same, for arrays of built-in types: what new[] with a mem_BuiltInAlloc tag calls.
/// \throws mem_ExhaustedException  when memory is exhausted.
[[nodiscard]] CORE_API void* mem_OperatorNewThrowBuiltin(std::size_t size);

/// Raises mem_ExhaustedException for a request of \p size bytes; allocates nothing for it.
[[noreturn]] CORE_API void mem_ThrowExhausted(std::size_t size);

/// Lets tests exhaust memory: while set, a request for which \p shouldFail returns true fails.
/// Null (the default) switches that off. The hook runs in the requesting thread.
CORE_API void mem_SetFaultHook(bool (*shouldFail)(std::size_t size)) noexcept;

/// Selects the library's array allocation: `new (mem_BuiltInAlloc()) int[n]`, freed by mem_Free.
struct mem_BuiltInAlloc {};

[[nodiscard]] inline void* operator new[](std::size_t size, mem_BuiltInAlloc /*tag*/) {
    return mem_OperatorNewThrowBuiltin(size);
}

/// Called by the compiler alone, when a constructor of the array's elements raises.
inline void operator delete[](void* block, mem_BuiltInAlloc /*tag*/) noexcept { mem_Free(block); }
