#include "mem_Allocation.h"

#include "mem_ExhaustedException.h"
#include "mem_Pool.h"

#include <atomic>
#include <cstdlib>
#include <cstring>

namespace {

constinit std::atomic<bool (*)(std::size_t)> faultHook{nullptr};

bool ShouldFail(std::size_t size) {
    bool (*const hook)(std::size_t) = faultHook.load(std::memory_order_relaxed);
    return hook != nullptr && hook(size);
}

// malloc(0) may give null, which would read as exhaustion.
std::size_t AtLeastOne(std::size_t size) { return size != 0 ? size : 1; }

void* ThrowIfNull(void* block, std::size_t size) {
    if (block == nullptr) {
        mem_ThrowExhausted(size);
    }
    return block;
}

// Small blocks from the pool, the others, and all where there is no pool, from the system.
void* Allocate(std::size_t size) noexcept {
    if (size <= mem_Pool::kLargest) {
        if (void* const block = mem_Pool::Allocate(AtLeastOne(size))) {
            return block;
        }
    }
    return std::malloc(AtLeastOne(size));
}

}  // namespace

void* mem_Malloc(std::size_t size) noexcept { return ShouldFail(size) ? nullptr : Allocate(size); }

void* mem_Realloc(void* block, std::size_t size) noexcept {
    if (!mem_Pool::Owns(block)) {
        return ShouldFail(size) ? nullptr : std::realloc(block, AtLeastOne(size));
    }
    if (size <= mem_Pool::SizeOf(block)) {
        return ShouldFail(size) ? nullptr : block;
    }
    void* const moved = mem_Malloc(size);
    if (moved != nullptr) {
        std::memcpy(moved, block, mem_Pool::SizeOf(block));
        mem_Pool::Free(block);
    }
    return moved;
}

void mem_Free(void* block) noexcept {
    if (mem_Pool::Owns(block)) {
        mem_Pool::Free(block);
    } else {
        std::free(block);
    }
}

void* mem_OperatorNewThrow(std::size_t size) { return ThrowIfNull(mem_Malloc(size), size); }

void* mem_OperatorNewTinyThrow(std::size_t size) { return ThrowIfNull(mem_Malloc(size), size); }

void* mem_OperatorNewThrowBuiltin(std::size_t size) { return ThrowIfNull(mem_Malloc(size), size); }

void mem_ThrowExhausted(std::size_t size) { throw mem_ExhaustedException(size); }

void mem_SetFaultHook(bool (*shouldFail)(std::size_t size)) noexcept {
    faultHook.store(shouldFail, std::memory_order_relaxed);
}
