#include "UTI_CoreUtils.h"
#include "atr_String.h"
#include "mem_Allocation.h"
#include "mem_AllocationOperators.h"
#include "mem_AllocationOperatorsTiny.h"
#include "mem_ExhaustedException.h"
#include "omi_Singleton.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <stdexcept>

namespace {

struct General : mem_AllocationOperators {
    double value = 0.0;
};
struct Tiny : mem_AllocationOperatorsTiny {
    double value = 0.0;
};
static_assert(sizeof(General) == sizeof(double) && sizeof(Tiny) == sizeof(double));

struct RaisesWhenMade {
    static inline int attempts = 0;
    RaisesWhenMade() {
        if (++attempts == 1) {
            throw std::runtime_error("first attempt");
        }
    }
};

/// Fails all requests of this size or more.
constinit std::size_t failFrom = 0;

class Exhaustion : public testing::Test {
protected:
    Exhaustion() = default;
    ~Exhaustion() override { mem_SetFaultHook(nullptr); }

    static void FailFrom(std::size_t size) {
        failFrom = size;
        mem_SetFaultHook([](std::size_t wanted) { return wanted >= failFrom; });
    }
};

TEST_F(Exhaustion, RaisesOrReturnsNullAsEachFunctionStates) {
    void* block = mem_Malloc(64);
    ASSERT_NE(block, nullptr);
    std::memset(block, 7, 64);
    FailFrom(0);
    EXPECT_EQ(mem_Malloc(1), nullptr);
    EXPECT_EQ(mem_Realloc(block, 1000), nullptr);
    EXPECT_THROW(static_cast<void>(mem_OperatorNewThrow(1)), mem_ExhaustedException);
    EXPECT_THROW(static_cast<void>(mem_OperatorNewTinyThrow(1)), mem_ExhaustedException);
    EXPECT_THROW(static_cast<void>(new (mem_BuiltInAlloc()) int[4]), mem_ExhaustedException);
    EXPECT_THROW(std::make_unique<General>(), mem_ExhaustedException);
    EXPECT_THROW(std::make_unique<Tiny>(), std::bad_alloc);
    EXPECT_THROW(std::make_unique<General[]>(2), std::bad_alloc);
    EXPECT_THROW(atr_String("text"), std::bad_alloc);
    EXPECT_THROW(omi_Singleton<General>::Instance(), std::bad_alloc);
    EXPECT_FALSE(omi_SingletonBase<General>::Exists());
    try {
        mem_ThrowExhausted(12345);
    } catch (const mem_ExhaustedException& exception) {
        EXPECT_STREQ(exception.what(), "Memory is exhausted: 12345 bytes were requested.");
        EXPECT_EQ(exception.Size(), 12345u);
    }
    mem_SetFaultHook(nullptr);
    EXPECT_EQ(static_cast<unsigned char*>(block)[63], 7);  // the failed growth kept the block
    mem_Free(block);
}

TEST_F(Exhaustion, RequestTheSystemCannotServeFailsToo) {
    EXPECT_THROW(static_cast<void>(mem_OperatorNewThrow(SIZE_MAX / 2)), mem_ExhaustedException);
    EXPECT_THROW(static_cast<void>(mem_OperatorNewTinyThrow(SIZE_MAX / 2)), mem_ExhaustedException);
}

TEST(Allocation, OperatorsServeSingleObjectsAndArrays) {
    EXPECT_EQ(std::make_unique<General[]>(3)[2].value, 0.0);
    EXPECT_EQ(std::make_unique<Tiny[]>(3)[2].value, 0.0);
    const auto tiny = std::make_unique<Tiny>();
    EXPECT_EQ(new (tiny.get()) Tiny, tiny.get());  // placement new is not hidden
    int* const built = new (mem_BuiltInAlloc()) int[1000]();
    EXPECT_EQ(built[999], 0);
    mem_Free(built);
    mem_Free(nullptr);
}

TEST(Singleton, IsMadeOnFirstUseAndAnewAfterFinalize) {
    using Base = omi_SingletonBase<RaisesWhenMade>;
    EXPECT_THROW(omi_Singleton<RaisesWhenMade>::Instance(), std::runtime_error);
    EXPECT_FALSE(Base::Exists());
    EXPECT_EQ(&omi_Singleton<RaisesWhenMade>::Instance(),
              &omi_Singleton<RaisesWhenMade>::Instance());
    EXPECT_EQ(RaisesWhenMade::attempts, 2);
    Base::Finalize();
    EXPECT_FALSE(Base::Exists());
    Base::Finalize();
    omi_Singleton<RaisesWhenMade>::Instance();
    EXPECT_EQ(RaisesWhenMade::attempts, 3);
    Base::Finalize();
}

TEST(LibraryCounter, OnlyTheFirstAndTheLastCallWork) {
    int count = 5;
    UTI_CoreUtils_initialize(count);
    UTI_CoreUtils_initialize(count);
    EXPECT_EQ(count, 6);
    UTI_CoreUtils_finalize(count);
    EXPECT_EQ(count, 6);
    UTI_CoreUtils_finalize(count);
    EXPECT_EQ(count, 5);
    UTI_CoreUtils_finalize(count);  // unbalanced: the counter wraps to all ones
    UTI_CoreUtils_initialize(count);
    EXPECT_EQ(count, 5);
    UTI_CoreUtils_initialize(count);
    EXPECT_EQ(count, 6);
    UTI_CoreUtils_finalize(count);
    EXPECT_EQ(count, 5);
}

}  // namespace
