#include "mem_Allocation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <mutex>
#include <random>
#include <set>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#include <limits.h>
#include <pthread.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace {

#if !defined(_WIN32)
// Sanitizer builds have no pool of their own accord; these tests are about the pool.
[[maybe_unused]] const int poolForced = setenv("TVX_MEM_POOL", "1", 1);
#endif

/// A block filled with a mark that shows whether anybody else wrote into it.
struct Marked {
    unsigned char* block;
    std::size_t size;
    unsigned char mark;

    static Marked Make(std::size_t size, unsigned char mark) {
        auto* const block = static_cast<unsigned char*>(mem_OperatorNewTinyThrow(size));
        std::memset(block, mark, size);
        return {block, size, mark};
    }

    [[nodiscard]] bool IsIntact() const {
        return std::all_of(block, block + size, [this](unsigned char c) { return c == mark; });
    }
};

/// Whether blocks lie at multiples of their size within 64 KiB. They do not where the system did
/// not grant the pool its range of addresses (a limit on address space, a memory checker).
bool PoolIsThere() {
    std::vector<void*> blocks(100);
    std::generate(blocks.begin(), blocks.end(), [] { return mem_OperatorNewTinyThrow(80); });
    const bool there = std::all_of(blocks.begin(), blocks.end(), [](const void* block) {
        return reinterpret_cast<std::uintptr_t>(block) % 65536 % 80 == 0;
    });
    std::for_each(blocks.begin(), blocks.end(), &mem_Free);
    return there;
}

TEST(Pool, BlocksAreAlignedApartAndResizable) {
    std::vector<Marked> blocks;
    for (std::size_t size = 0; size <= 1100; ++size) {
        blocks.push_back(Marked::Make(size, static_cast<unsigned char>(size)));
        EXPECT_EQ(reinterpret_cast<std::uintptr_t>(blocks.back().block) % 16, 0u);
    }
    for (Marked& marked : blocks) {
        ASSERT_TRUE(marked.IsIntact()) << marked.size;
        void* const longer = mem_Realloc(marked.block, marked.size + 700);
        ASSERT_NE(longer, nullptr);
        marked.block = static_cast<unsigned char*>(longer);
        ASSERT_TRUE(marked.IsIntact()) << marked.size;
        marked.size = std::min<std::size_t>(marked.size, 5);
        marked.block = static_cast<unsigned char*>(mem_Realloc(marked.block, 5));
        ASSERT_TRUE(marked.IsIntact());
        mem_Free(marked.block);
    }
}

TEST(Pool, MemoryOfAnEndedThreadServesAnySizeAgain) {
    if (!PoolIsThere()) {
        GTEST_SKIP() << "The pool has no range of addresses";
    }
    // 32 MiB are 512 spans of 64 KiB. A span is free for other sizes when the last block is back,
    // which takes the blocks that the thread kept at hand, too.
    std::set<std::uintptr_t> spans;
    for (std::size_t size = 32; size <= 320; size += 32) {
        std::thread([&spans, size] {
            std::vector<void*> blocks(32 * 1024 * 1024 / size);
            for (void*& block : blocks) {
                block = mem_OperatorNewTinyThrow(size);
                spans.insert(reinterpret_cast<std::uintptr_t>(block) >> 16);
            }
            std::shuffle(blocks.begin(), blocks.end(), std::mt19937(1));
            std::for_each(blocks.begin(), blocks.end(), &mem_Free);
        }).join();
    }
    EXPECT_LT(spans.size(), 600u);
}

/// Threads that allocate at random, hand blocks to each other and end while others hold theirs.
TEST(Pool, ThreadsExchangeBlocks) {
    std::mutex lock;
    std::vector<Marked> shared;
    std::atomic<int> damaged = 0;
    const auto work = [&](unsigned seed) {
        std::mt19937 random(seed);
        std::vector<Marked> own;
        for (int i = 0; i < 4000; ++i) {
            own.push_back(Marked::Make(random() % 600, static_cast<unsigned char>(random())));
            std::swap(own.back(), own[random() % own.size()]);
            if (random() % 3 != 0) {
                damaged += !own.back().IsIntact();
                mem_Free(own.back().block);
                own.pop_back();
            } else if (random() % 4 == 0) {
                const std::lock_guard guard(lock);
                shared.push_back(own.back());
                std::swap(shared.back(), shared[random() % shared.size()]);
                own.back() = shared.back();
                shared.pop_back();
            }
        }
        const std::lock_guard guard(lock);
        shared.insert(shared.end(), own.begin(), own.end());
    };
    for (unsigned round = 0; round < 10; ++round) {
        std::vector<std::thread> threads;
        for (unsigned i = 0; i < 6; ++i) {
            threads.emplace_back(work, 10 * round + i);
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
    }
    for (const Marked& marked : shared) {
        damaged += !marked.IsIntact();
        mem_Free(marked.block);
    }
    EXPECT_EQ(damaged, 0);
}

#if !defined(_WIN32)
pthread_key_t lateKey;
#if defined(__SANITIZE_THREAD__)
constexpr int kLateRounds = PTHREAD_DESTRUCTOR_ITERATIONS - 1;  // it is gone itself in the last one
#else
constexpr int kLateRounds = PTHREAD_DESTRUCTOR_ITERATIONS;
#endif
thread_local int lateRounds = 0;
std::set<void*> lateBlocks;

void UsePoolLate(void* block) {
    mem_Free(block);
    for (int i = 0; i < 300; ++i) {
        const Marked marked = Marked::Make(48, 1);
        const Marked other = Marked::Make(48, 2);
        EXPECT_TRUE(marked.IsIntact());
        lateBlocks.insert({marked.block, other.block});
        mem_Free(marked.block);
        mem_Free(other.block);
    }
    // The system calls handlers that set their value again in four rounds and then no more: what
    // the pool kept for the thread by then would be lost.
    if (++lateRounds < kLateRounds) {
        pthread_setspecific(lateKey, mem_OperatorNewTinyThrow(48));
    }
}

TEST(Pool, ServesAThreadThatIsEnding) {
    if (!PoolIsThere()) {  // makes the pool's own key: this one is cleared later
        GTEST_SKIP() << "The pool has no range of addresses";
    }
    ASSERT_EQ(pthread_key_create(&lateKey, &UsePoolLate), 0);
    for (int i = 0; i < 200; ++i) {
        std::thread([] { pthread_setspecific(lateKey, mem_OperatorNewTinyThrow(48)); }).join();
    }
    pthread_key_delete(lateKey);
    EXPECT_LT(lateBlocks.size(), 200u);  // the threads came by the same blocks again
}

TEST(Pool, WorksInAForkedChild) {
    std::atomic<bool> stop = false;
    std::atomic<bool> started = false;
    std::thread busy([&] {  // holds the pool's lock now and then; takes no other
        std::array<void*, 500> blocks;
        while (!stop) {
            std::generate(blocks.begin(), blocks.end(),
                          [] { return mem_OperatorNewTinyThrow(64); });
            std::for_each(blocks.begin(), blocks.end(), &mem_Free);
            started = true;
        }
    });
    while (!started) {
    }
    for (int i = 0; i < 20; ++i) {
        const pid_t child = fork();
        if (child == 0) {
            alarm(10);  // a child that waits for the lock for ever ends so, and the test fails
            for (int k = 0; k < 1000; ++k) {
                static_cast<void>(mem_OperatorNewTinyThrow(64));
            }
            _exit(0);
        }
        int status = -1;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    stop = true;
    busy.join();
}
#endif

}  // namespace
