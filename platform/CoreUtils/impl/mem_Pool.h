#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <new>

/// The allocator of small blocks behind mem_OperatorNewTinyThrow.
///
/// One reserved range of addresses is cut into spans of 64 KiB, a span into blocks of one size (a
/// multiple of 16 bytes). Each thread keeps free blocks of every size in lists of its own; a list
/// that runs empty or full exchanges a batch with the shared part, under a lock. A block may be
/// freed in any thread. A thread's lists go back when it ends; spans without a block in use serve
/// any size again, and all but a bounded number of them give their memory back to the system.
///
/// Where the range cannot be had, on other systems and in sanitizer builds there is no pool. The
/// environment variable TVX_MEM_POOL decides instead where it is set: 0 for none, 1 for one.
class mem_Pool {
public:
    /// The largest block it serves.
    static constexpr std::size_t kLargest = 512;

    /// A block of \p size bytes, in [1, kLargest]; null where there is no pool or it is used up.
    static void* Allocate(std::size_t size) noexcept {
        const std::size_t kind = (size - 1) / kStep;
        List& list = _cache->lists[kind];
        if (Block* const block = list.head) {
            list.head = block->next;
            ++list.room;
            return block;
        }
        return AllocateSlowly(kind);
    }

    /// Whether \p block came from here.
    static bool Owns(const void* block) noexcept { return Offset(block) < kRange; }

    /// Takes back a block that came from here.
    static void Free(void* block) noexcept {
        List& list = _cache->lists[KindOf(block)];
        if (list.room == 0) {
            FreeSlowly(block);
            return;
        }
        --list.room;
        list.head = ::new (block) Block{list.head};
    }

    /// The number of bytes that fit into a block that came from here.
    static std::size_t SizeOf(const void* block) noexcept { return (KindOf(block) + 1) * kStep; }

private:
    friend class mem_PoolCentre;

    static constexpr std::size_t kStep = 16;
    static constexpr std::size_t kKinds = kLargest / kStep;
    static constexpr std::size_t kSpanSize = std::size_t{64} << 10;
    static constexpr std::size_t kRange = std::size_t{64} << 30;

    struct Block {
        Block* next;
    };

    struct List {
        Block* head;
        std::size_t room;  // how many more blocks it takes
    };

    struct Cache {
        std::array<List, kKinds> lists;
    };

    static std::size_t Offset(const void* block) noexcept {
        return reinterpret_cast<std::uintptr_t>(block) - _base.load(std::memory_order_relaxed);
    }

    // The range begins with one byte per span: the kind of its blocks.
    static std::size_t KindOf(const void* block) noexcept {
        const auto* const kinds =
            reinterpret_cast<const std::uint8_t*>(_base.load(std::memory_order_relaxed));
        return kinds[Offset(block) / kSpanSize];
    }

    static void* AllocateSlowly(std::size_t kind) noexcept;
    static void FreeSlowly(void* block) noexcept;
    static bool HaveCache() noexcept;
    static void EndThread(void* ending) noexcept;

    // Where the range starts; without a pool, where no block can be.
    static constexpr std::uintptr_t kNowhere = std::uintptr_t{0xffff} << 48;
    static constinit std::atomic<std::uintptr_t> _base;

    // The calling thread's lists: at first, and in the end, the shared ones with neither blocks nor
    // room, which nobody writes.
    static constinit Cache _none;
#if defined(__GNUC__)
    __attribute__((
        tls_model("initial-exec")))  // one load; 8 bytes of what a loaded library may take
#endif
    static constinit thread_local Cache* _cache;
};
