#include "mem_Pool.h"

constinit std::atomic<std::uintptr_t> mem_Pool::_base{kNowhere};
constinit mem_Pool::Cache mem_Pool::_none{};
constinit thread_local mem_Pool::Cache* mem_Pool::_cache = &_none;

#if !defined(__linux__)

void* mem_Pool::AllocateSlowly(std::size_t /*kind*/) noexcept { return nullptr; }

void mem_Pool::FreeSlowly(void* /*block*/) noexcept {}

#else

#include <algorithm>
#include <cstdlib>
#include <mutex>
#include <pthread.h>
#include <sys/mman.h>

namespace {

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
constexpr bool kSanitized = true;
#elif defined(__has_feature)
constexpr bool kSanitized = __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) ||
                            __has_feature(memory_sanitizer);
#else
constexpr bool kSanitized = false;
#endif

bool IsWanted() {
    const char* const choice = std::getenv("TVX_MEM_POOL");
    return choice ? *choice != '0' : !kSanitized;
}

// A span that is used anew is filled by one call to the system in place of a fault for each page.
#if defined(MADV_POPULATE_WRITE)
constexpr int kPopulate = MADV_POPULATE_WRITE;
#else
constexpr int kPopulate = 23;
#endif

constexpr std::size_t kFirstSpans = 16;

constinit thread_local bool threadIsEnding = false;

}  // namespace

/// The part of the pool that all threads share. Its functions are called under the lock.
class mem_PoolCentre {
public:
    using Block = mem_Pool::Block;

    static std::mutex lock;

    // A child of fork must not find the lock held by a thread that it does not have. Set at load:
    // later, a fork could come between the first use of the lock and this.
    static const bool forkIsSafe;

    /// Reserves the range at the first call; false where there is no pool.
    bool Start() {
        if (!_started) {
            _started = true;
            if (IsWanted()) {
                Reserve();
            }
        }
        return _spans != nullptr;
    }

    /// Puts up to \p most blocks before \p head and returns their number.
    std::size_t Take(std::size_t kind, std::size_t most, Block*& head) {
        const std::size_t size = (kind + 1) * mem_Pool::kStep;
        const auto capacity = static_cast<std::uint32_t>(mem_Pool::kSpanSize / size);
        std::size_t taken = 0;
        while (taken < most) {
            const Index index = _open[kind] ? _open[kind] : NewSpan(kind);
            if (index == 0) {
                break;
            }
            Span& span = _spans[index];
            const std::size_t before = taken;
            for (; taken < most && span.free; ++taken) {
                Block* const block = span.free;
                span.free = block->next;
                block->next = head;
                head = block;
            }
            // Chained from the last one on, so that they are handed out by ascending address.
            const auto fresh = static_cast<std::uint32_t>(
                std::min<std::size_t>(most - taken, capacity - span.fresh));
            for (std::uint32_t i = fresh; i > 0; --i) {
                head = ::new (Address(index) + (span.fresh + i - 1) * size) Block{head};
            }
            taken += fresh;
            span.fresh += fresh;
            span.used += static_cast<std::uint32_t>(taken - before);
            if (!span.free && span.fresh == capacity) {
                Unlink(_open[kind], index);
                span.open = false;
            }
        }
        return taken;
    }

    /// Takes back \p count blocks of that kind from \p head on; returns the block behind them.
    Block* Give(std::size_t kind, std::size_t count, Block* head) {
        for (; count > 0; --count) {
            Block* const block = head;
            head = block->next;
            const auto index = static_cast<Index>(mem_Pool::Offset(block) / mem_Pool::kSpanSize);
            Span& span = _spans[index];
            block->next = span.free;
            span.free = block;
            if (!span.open) {
                Link(_open[kind], index);
                span.open = true;
            }
            if (--span.used == 0) {
                Unlink(_open[kind], index);
                FreeSpan(index);
            }
        }
        return head;
    }

    /// Has the system hand \p cache to EndThread when the calling thread ends.
    bool NoticeEnd(mem_Pool::Cache* cache) const {
        return pthread_setspecific(_threadKey, cache) == 0;
    }

private:
    using Index = std::uint32_t;  // of a span in the range; 0: none

    struct Span {
        Block* free;          // blocks given back
        std::uint32_t fresh;  // blocks from this one on were never used
        std::uint32_t used;   // blocks that threads hold
        Index next;
        Index previous;
        bool open;  // has blocks to give and is linked among those of its kind
    };

    static constexpr Index kSpanCount = mem_Pool::kRange / mem_Pool::kSpanSize;

    std::byte* Address(Index index) const {
        return reinterpret_cast<std::byte*>(mem_Pool::_base.load(std::memory_order_relaxed)) +
               index * mem_Pool::kSpanSize;
    }

    void Reserve() {
        pthread_key_t key;
        if (!forkIsSafe || pthread_key_create(&key, &mem_Pool::EndThread) != 0) {
            return;
        }
        const std::size_t size = mem_Pool::kRange + mem_Pool::kSpanSize;
        void* const range = mmap(nullptr, size, PROT_READ | PROT_WRITE,
                                 MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (range == MAP_FAILED) {
            pthread_key_delete(key);
            return;
        }
        _threadKey = key;
        const auto start = reinterpret_cast<std::uintptr_t>(range) + mem_Pool::kSpanSize - 1;
        mem_Pool::_base.store(start / mem_Pool::kSpanSize * mem_Pool::kSpanSize,
                              std::memory_order_relaxed);
        // The kinds of all spans, then the spans' records, then the spans.
        _spans = reinterpret_cast<Span*>(Address(kSpanCount / mem_Pool::kSpanSize));
        _next = kSpanCount / mem_Pool::kSpanSize +
                static_cast<Index>(kSpanCount * sizeof(Span) / mem_Pool::kSpanSize);
    }

    Index NewSpan(std::size_t kind) {
        Index index = _kept;
        if (index != 0) {
            Unlink(_kept, index);
            --_keptCount;
        } else {
            index = _returned;
            if (index != 0) {
                Unlink(_returned, index);
            } else if (_next < kSpanCount) {
                index = _next++;
            } else {
                return 0;
            }
            // The first spans are a start's few blocks: they touch a page or two each.
            if (_usedCount >= kFirstSpans) {
                madvise(Address(index), mem_Pool::kSpanSize, kPopulate);
            }
        }
        ++_usedCount;
        auto* const kinds = reinterpret_cast<std::uint8_t*>(Address(0));
        kinds[index] = static_cast<std::uint8_t>(kind);
        _spans[index] = {nullptr, 0, 0, 0, 0, true};
        Link(_open[kind], index);
        return index;
    }

    void FreeSpan(Index index) {
        Link(_kept, index);
        ++_keptCount;
        --_usedCount;
        // Kept at most: 64 MiB and a quarter of what is in use.
        while (_keptCount > 1024 + _usedCount / 4) {
            const Index returned = _kept;
            Unlink(_kept, returned);
            --_keptCount;
            madvise(Address(returned), mem_Pool::kSpanSize, MADV_DONTNEED);
            Link(_returned, returned);
        }
    }

    void Link(Index& head, Index index) {
        _spans[index].previous = 0;
        _spans[index].next = head;
        _spans[head].previous =
            index;  // that of the record 0, which is no span's, may hold anything
        head = index;
    }

    void Unlink(Index& head, Index index) {
        const Span& span = _spans[index];
        (span.previous ? _spans[span.previous].next : head) = span.next;
        _spans[span.next].previous = span.previous;
    }

    bool _started = false;
    pthread_key_t _threadKey = 0;
    Span* _spans = nullptr;  // null: no pool
    Index _next = 0;         // spans from this one on were never used
    std::array<Index, mem_Pool::kKinds> _open{};
    Index _kept = 0;      // free spans that hold memory
    Index _returned = 0;  // free spans that gave theirs back
    Index _keptCount = 0;
    Index _usedCount = 0;
};

constinit std::mutex mem_PoolCentre::lock;
const bool mem_PoolCentre::forkIsSafe =
    pthread_atfork([] { lock.lock(); }, [] { lock.unlock(); }, [] { lock.unlock(); }) == 0;

namespace {

constinit mem_PoolCentre centre;

/// How many blocks of that kind move at once: some 8 KiB.
constexpr std::size_t BatchOf(std::size_t kind) {
    return std::clamp<std::size_t>(512 / (kind + 1), 16, 128);
}

}  // namespace

/// Gives the ending thread's lists back. Whatever it still allocates and frees goes to the centre.
void mem_Pool::EndThread(void* ending) noexcept {
    auto* const cache = static_cast<Cache*>(ending);
    threadIsEnding = true;
    _cache = &_none;
    {
        const std::lock_guard guard(mem_PoolCentre::lock);
        for (std::size_t kind = 0; kind < kKinds; ++kind) {
            const List& list = cache->lists[kind];
            centre.Give(kind, 2 * BatchOf(kind) - list.room, list.head);
        }
    }
    std::free(cache);
}

/// Gives the calling thread lists of its own; false when it is ending or has no memory for them.
bool mem_Pool::HaveCache() noexcept {
    if (_cache != &_none) {
        return true;
    }
    if (threadIsEnding) {
        return false;
    }
    auto* const cache = static_cast<Cache*>(std::malloc(sizeof(Cache)));
    if (cache == nullptr || !centre.NoticeEnd(cache)) {
        std::free(cache);
        return false;
    }
    for (std::size_t kind = 0; kind < kKinds; ++kind) {
        cache->lists[kind] = {nullptr, 2 * BatchOf(kind)};
    }
    _cache = cache;
    return true;
}

void* mem_Pool::AllocateSlowly(std::size_t kind) noexcept {
    {
        const std::lock_guard guard(mem_PoolCentre::lock);
        if (!centre.Start()) {
            return nullptr;
        }
    }
    const bool cached = HaveCache();
    const std::lock_guard guard(mem_PoolCentre::lock);
    Block* blocks = nullptr;
    const std::size_t count = centre.Take(kind, cached ? BatchOf(kind) : 1, blocks);
    if (count == 0) {
        return nullptr;
    }
    if (cached) {
        _cache->lists[kind] = {blocks->next, 2 * BatchOf(kind) - (count - 1)};
    }
    return blocks;
}

void mem_Pool::FreeSlowly(void* block) noexcept {
    const std::size_t kind = KindOf(block);
    const bool cached = HaveCache();
    const std::lock_guard guard(mem_PoolCentre::lock);
    auto* const freed = ::new (block) Block{nullptr};
    if (!cached) {
        centre.Give(kind, 1, freed);
        return;
    }
    List& list = _cache->lists[kind];
    if (list.room == 0) {
        list.head = centre.Give(kind, BatchOf(kind), list.head);
        list.room = BatchOf(kind);
    }
    --list.room;
    freed->next = list.head;
    list.head = freed;
}

#endif
