#include "omi_Singleton.h"
#include "thr_GlobalSingleton.h"
#include "thr_ThreadSingleton.h"
#include "thr_Tls.h"

#include <gtest/gtest.h>

#include <atomic>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <vector>

#if !defined(_WIN32)
#include <pthread.h>
#endif

namespace {

/// A thread singleton of its own type per Tag; counts the live objects of all threads.
template <int Tag>
class Front : public thr_ThreadSingletonBase<Front<Tag>> {
public:
    Front() : thr_ThreadSingletonBase<Front>(this) {
        if (raise) {
            throw std::runtime_error("no front");
        }
        ++live;
    }
    virtual ~Front() { --live; }

    std::thread::id owner = std::this_thread::get_id();
    static inline std::atomic<int> live = 0;
    static inline bool raise = false;
};

unsigned NextSlot() {
    const unsigned slot = thr_Tls::Alloc();
    thr_Tls::Free(slot);
    return slot;
}

TEST(Tls, SlotsStartNullInEveryThreadAndAfterReuse) {
    EXPECT_EQ(thr_Tls::GetValue(thr_Tls::kNoSlot), nullptr);
    EXPECT_THROW(thr_Tls::SetValue(thr_Tls::kNoSlot, nullptr), std::system_error);
    const unsigned slot = thr_Tls::Alloc();
    int here = 0;
    thr_Tls::SetValue(slot, &here);
    EXPECT_EQ(thr_Tls::GetValue(slot), &here);
    std::thread([slot] { EXPECT_EQ(thr_Tls::GetValue(slot), nullptr); }).join();
    thr_Tls::Free(slot);
    EXPECT_EQ(thr_Tls::GetValue(slot), nullptr);
    EXPECT_THROW(thr_Tls::SetValue(slot, &here), std::system_error);
    EXPECT_EQ(thr_Tls::Alloc(), slot);
    EXPECT_EQ(thr_Tls::GetValue(slot), nullptr);
    thr_Tls::Free(slot);
    thr_Tls::Free(slot);
}

TEST(Tls, RunningOutRaises) {
    std::vector<unsigned> slots;
    EXPECT_THROW(
        for (;;) { slots.push_back(thr_Tls::Alloc()); }, std::system_error);
    EXPECT_GT(slots.size(), 500u);
    for (const unsigned slot : slots) {
        thr_Tls::Free(slot);
    }
}

TEST(ThreadSingleton, SlotLivesAsLongAsAnyObject) {
    using Single = thr_ThreadSingleton<Front<1>>;
    const unsigned slot = NextSlot();
    for (int turn = 0; turn < 2; ++turn) {
        Front<1>& front = Single::Instance();
        EXPECT_EQ(&Single::Instance(), &front);
        EXPECT_EQ(thr_Tls::GetValue(slot), &front);
        std::thread([&front] {
            EXPECT_EQ(thr_ThreadSingletonBase<Front<1>>::Instance(), nullptr);
            EXPECT_EQ(Single::Destroy(), 0);
            EXPECT_NE(&Single::Instance(), &front);
        }).join();
        EXPECT_EQ(Front<1>::live, 1);
        EXPECT_NE(NextSlot(), slot);
        EXPECT_EQ(Single::Destroy(), 1);
        EXPECT_EQ(NextSlot(), slot);
        EXPECT_EQ(Single::Destroy(), 0);
    }
}

TEST(ThreadSingleton, DestroyBeforeAnyObjectTouchesNoSlot) {
    const unsigned slot = thr_Tls::Alloc();
    int foreign = 0;
    thr_Tls::SetValue(slot, &foreign);
    EXPECT_EQ(thr_ThreadSingleton<Front<2>>::Destroy(), 0);
    EXPECT_EQ(thr_ThreadSingletonBase<Front<2>>::Instance(), nullptr);
    EXPECT_EQ(thr_Tls::GetValue(slot), &foreign);
    thr_Tls::Free(slot);
}

TEST(ThreadSingleton, ConstructorThatRaisesLeavesNothing) {
    using Single = thr_ThreadSingleton<Front<3>>;
    const unsigned slot = NextSlot();
    Front<3>::raise = true;
    EXPECT_THROW(Single::Instance(), std::runtime_error);
    EXPECT_EQ(thr_ThreadSingletonBase<Front<3>>::Instance(), nullptr);
    EXPECT_EQ(NextSlot(), slot);
    Front<3>::raise = false;
    Single::Instance();
    EXPECT_EQ(Single::Destroy(), 1);
}

TEST(ThreadSingleton, HundredsOfThreadsStartAndEndWhileOthersLook) {
    using Single = thr_ThreadSingleton<Front<4>>;
    using Other = thr_ThreadSingleton<Front<5>>;
    std::atomic<bool> stop = false;
    std::atomic<int> wrong = 0;
    std::vector<std::thread> lookers;
    for (int i = 0; i < 3; ++i) {
        lookers.emplace_back([&] {
            Front<5>& own = Other::Instance();  // holds a slot next to the one that comes and goes
            while (!stop) {
                wrong += thr_ThreadSingletonBase<Front<4>>::Instance() != nullptr;
                wrong += &Other::Instance() != &own;
            }
        });
    }
    for (int round = 0; round < 40; ++round) {
        std::vector<std::thread> workers;
        for (int i = 0; i < 10; ++i) {
            workers.emplace_back([&wrong, i] {
                for (int turn = 0; turn < 20; ++turn) {
                    Front<4>& front = Single::Instance();
                    wrong += front.owner != std::this_thread::get_id();
                    wrong += &front != &Single::Instance();
                    if (i % 2 == 0) {
                        wrong += Single::Destroy() != 1;
                    }
                }
            });
        }
        for (std::thread& worker : workers) {
            worker.join();
        }
        wrong += Front<4>::live != 0;
    }
    stop = true;
    for (std::thread& looker : lookers) {
        looker.join();
    }
    EXPECT_EQ(wrong, 0);
    EXPECT_EQ(Front<5>::live, 0);
}

#if !defined(_WIN32)
void UseFront(void* /*value*/) { thr_ThreadSingleton<Front<6>>::Instance(); }

TEST(ThreadSingleton, UsedWhileTheThreadEndsIsDestroyedToo) {
    struct UsesAtEnd {
        ~UsesAtEnd() { UseFront(nullptr); }
    };
    pthread_key_t key;  // the system calls handlers in no stated order: some come after ours
    ASSERT_EQ(pthread_key_create(&key, &UseFront), 0);
    for (int kind = 0; kind < 4; ++kind) {
        std::thread([&] {
            if (kind % 2 == 1) {
                UseFront(nullptr);
            }
            if (kind < 2) {
                static thread_local UsesAtEnd atEnd;
                static_cast<void>(&atEnd);
            } else {
                pthread_setspecific(key, &key);
            }
        }).join();
        EXPECT_EQ(Front<6>::live, 0) << kind;
    }
    pthread_key_delete(key);
}
#endif

/// What the destroy functions below have done, and whether they register again.
std::vector<int> destroyed;
int again = 0;

template <int Number>
int Destroy() {
    destroyed.push_back(Number);
    if (again > 0) {
        --again;
        thr_GlobalSingleton::Instance().Register(&Destroy<Number + 1>);
    }
    return 1;
}
template <>
int Destroy<9>() {
    thr_GlobalSingleton::Instance().Register(&Destroy<9>);
    destroyed.push_back(9);
    return 1;
}

TEST(Registry, RunsByLevelThenLatestFirst) {
    destroyed.clear();
    std::thread([] {
        thr_ThrSingletonRegistry& registry = thr_GlobalSingleton::Instance();
        EXPECT_EQ(&thr_GlobalSingleton::Instance(), &registry);
        registry.Register(&Destroy<1>);
        registry.Register(&Destroy<2>);
        registry.SetDestructLevel(&Destroy<3>, 15);
        registry.SetDestructLevel(&Destroy<4>, -1);
        registry.Register(&Destroy<5>);
        registry.SetDestructLevel(&Destroy<5>, 15);
        registry.Register(&Destroy<1>);
    }).join();
    EXPECT_EQ(destroyed, (std::vector{4, 2, 1, 5, 3}));
}

TEST(Registry, TakesRegistrationsWhileItRunsAndEnds) {
    destroyed.clear();
    again = 2;
    std::thread([] { thr_GlobalSingleton::Instance().Register(&Destroy<1>); }).join();
    EXPECT_EQ(destroyed, (std::vector{1, 2, 3}));

    destroyed.clear();
    std::thread([] { thr_GlobalSingleton::Instance().Register(&Destroy<9>); }).join();
    EXPECT_GT(destroyed.size(), 1u);
    EXPECT_LT(destroyed.size(), 100u);
}

TEST(Singleton, RacingFirstUsesAgreeOnOneObject) {
    struct Racer {
        Racer() { ++Live(); }
        ~Racer() { --Live(); }
        static std::atomic<int>& Live() {
            static std::atomic<int> live = 0;
            return live;
        }
    };
    for (int round = 0; round < 100; ++round) {
        std::atomic<int> waiting = 4;
        std::atomic<Racer*> seen = nullptr;
        std::atomic<bool> differ = false;
        std::vector<std::thread> threads;
        for (int i = 0; i < 4; ++i) {
            threads.emplace_back([&] {
                for (--waiting; waiting > 0;) {
                }
                Racer* const mine = &omi_Singleton<Racer>::Instance();
                Racer* const before = seen.exchange(mine);
                differ = differ || (before && before != mine);
            });
        }
        for (std::thread& thread : threads) {
            thread.join();
        }
        ASSERT_FALSE(differ);
        ASSERT_EQ(Racer::Live(), 1);
        omi_SingletonBase<Racer>::Finalize();
    }
}

}  // namespace
