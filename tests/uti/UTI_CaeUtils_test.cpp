#include "UTI_CaeUtils.h"

#include "UTI_BasicUtils.h"
#include "cls_MetadataRegistrar.h"
#include "g3d_ColorErrorException.h"
#include "g3d_ColorMap.h"
#include "g3d_initialize.h"
#include "idb_initialize.h"
#include "mdl_initialize.h"
#include "omu_BackwardCompat.h"
#include "omu_ChangeHistory.h"
#include "omu_CmdHistory.h"
#include "omu_TextRepr.h"
#include "omu_TypeRegistryCache.h"
#include "omu_initialize.h"
#include "typ_ArchCompTable.h"
#include "wip_WIP.h"
#include "wip_initialize.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <malloc.h>

namespace {

constexpr int kAll = 8;  // the library, its five modules and the two sibling libraries
constexpr int kClasses = 40 + 11 + 3;

int RegisteredClasses() { return omi_Singleton<cls_MetadataRegistrar>::Instance().Count(); }

unsigned TableSize(unsigned short module) { return typ_ArchCompTable::Module(module).Count(); }

/// Lets BasicUtils drop what a single module has registered.
void DropRegistrations() {
    int count = 0;
    UTI_BasicUtils_initialize(count);
    UTI_BasicUtils_finalize(count);
    ASSERT_EQ(count, 0);
}

/// Sets an environment variable for the life of this object; null unsets it.
class Environment {
public:
    Environment(const char* name, const char* value) : _name(name) {
        value == nullptr ? unsetenv(name) : setenv(name, value, 1);
    }
    Environment(const Environment&) = delete;
    Environment& operator=(const Environment&) = delete;
    ~Environment() { unsetenv(_name); }

private:
    const char* _name;
};

TEST(UTI_CaeUtils, OnlyTheOutermostStartAndStopWork) {
    int count = 5;
    UTI_CaeUtils_initialize(count);
    EXPECT_EQ(count, 5 + kAll);
    EXPECT_EQ(RegisteredClasses(), kClasses);
    EXPECT_EQ(TableSize(10), 25U);
    EXPECT_EQ(TableSize(19), 50U);
    EXPECT_EQ(TableSize(36), 4U);
    EXPECT_TRUE(omi_Singleton<g3d_ColorMap>::Exists());
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Instance(), nullptr);

    UTI_CaeUtils_initialize(count);
    UTI_CaeUtils_finalize(count);
    EXPECT_EQ(count, 5 + kAll);
    EXPECT_EQ(RegisteredClasses(), kClasses);

    UTI_CaeUtils_finalize(count);
    EXPECT_EQ(count, 5);
    EXPECT_FALSE(omi_Singleton<cls_MetadataRegistrar>::Exists());
    EXPECT_EQ(TableSize(0) + TableSize(10) + TableSize(19) + TableSize(31) + TableSize(36), 0U);
    EXPECT_FALSE(omi_Singleton<g3d_ColorMap>::Exists());
}

struct Single {
    const char* name;
    void (*initialize)(int&);
    void (*finalize)(int&);
    unsigned short module;  // 0: no type table
    unsigned tableSize;
    int classes;
};

constexpr Single kSingles[] = {
    {"wip", &wip_initialize, &wip_finalize, 0, 0, 0},
    {"idb", &idb_initialize, &idb_finalize, 0, 0, 0},
    {"g3d", &g3d_initialize, &g3d_finalize, 36, 4, 3},
    {"omu", &omu_initialize, &omu_finalize, 19, 50, 40},
    {"mdl", &mdl_initialize, &mdl_finalize, 10, 25, 11},
};

class SingleModule : public testing::TestWithParam<Single> {};

INSTANTIATE_TEST_SUITE_P(UTI_CaeUtils, SingleModule, testing::ValuesIn(kSingles),
                         [](const auto& of) { return of.param.name; });

TEST_P(SingleModule, ComesUpAloneAndRegistersEverythingAgain) {
    const Single& module = GetParam();
    for (int cycle = 0; cycle < 3; ++cycle) {
        int count = 0;
        module.initialize(count);
        module.initialize(count);
        EXPECT_EQ(count, 1);
        EXPECT_EQ(RegisteredClasses(), module.classes);
        constexpr unsigned short tables[] = {0, 10, 19, 31, 35, 36};
        for (const unsigned short table : tables) {
            EXPECT_EQ(TableSize(table), table == module.module ? module.tableSize : 0U);
        }
        module.finalize(count);
        EXPECT_EQ(count, 1);
        module.finalize(count);
        EXPECT_EQ(count, 0);
        // What was registered stays until the class system itself goes down.
        EXPECT_EQ(RegisteredClasses(), module.classes);
        if (cycle == 1) {
            DropRegistrations();
            EXPECT_EQ(RegisteredClasses(), 0);
        }
    }
    DropRegistrations();
}

TEST_P(SingleModule, IsOnlyCountedByTheLibraryWhileItIsUp) {
    const Single& module = GetParam();
    int count = 0;
    module.initialize(count);
    UTI_CaeUtils_initialize(count);
    EXPECT_EQ(count, kAll);
    UTI_CaeUtils_finalize(count);
    EXPECT_EQ(count, 1);
    module.finalize(count);
    EXPECT_EQ(count, 0);
}

TEST_P(SingleModule, StopTooManyMakesTheNextStartOnlyCount) {
    const Single& module = GetParam();
    int count = 0;
    module.finalize(count);
    EXPECT_EQ(count, 0);
    module.initialize(count);
    EXPECT_EQ(count, 0);
    EXPECT_EQ(RegisteredClasses(), 0);

    module.initialize(count);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(RegisteredClasses(), module.classes);
    module.finalize(count);
    EXPECT_EQ(count, 0);
    DropRegistrations();
}

TEST(UTI_CaeUtils, StopTooManyOfTheLibraryMakesTheNextStartOnlyCount) {
    int count = 0;
    UTI_CaeUtils_finalize(count);
    UTI_CaeUtils_initialize(count);
    EXPECT_EQ(count, 0);
    UTI_CaeUtils_initialize(count);
    EXPECT_EQ(count, kAll);
    UTI_CaeUtils_finalize(count);
    EXPECT_EQ(count, 0);
}

std::size_t BytesInUse() {
#if defined(__GLIBC__)
    return mallinfo2().uordblks;  // 0 under AddressSanitizer, whose leak check does this there
#else
    return 0;
#endif
}

TEST(UTI_CaeUtils, ThousandCyclesKeepCountersAndMemory) {
    int count = 0;
    std::size_t bytes = 0;
    for (int cycle = 0; cycle < 1000; ++cycle) {
        UTI_CaeUtils_initialize(count);
        ASSERT_EQ(count, kAll);
        constexpr int lists = 4;  // the class system's own
        ASSERT_EQ(omi_Singleton<cls_MetadataRegistrar>::Instance().Classes().All().size(),
                  static_cast<std::size_t>(kClasses + lists));
        thr_ThreadSingleton<wip_WIP>::Instance();
        thr_ThreadSingleton<omu_CmdHistory>::Instance().Append("mdb.save()");
        thr_ThreadSingleton<omu_ChangeHistory>::Instance();
        UTI_CaeUtils_finalize(count);
        ASSERT_EQ(count, 0);
        if (cycle == 9) {
            bytes = BytesInUse();
        }
    }
    EXPECT_EQ(BytesInUse(), bytes);
}

TEST(UTI_CaeUtils, SingletonsComeAnewAfterTheStop) {
    int count = 0;
    UTI_CaeUtils_initialize(count);
    omi_Singleton<g3d_ColorMap>::Instance().AddByRGB("Mine", 1, 0, 0);
    omi_Singleton<omu_BackwardCompat>::Instance().SetAcceptDeprecated(false);
    const int limit = omi_Singleton<omu_TextRepr>::Instance().GetMaxElementsInSequence();
    omi_Singleton<omu_TextRepr>::Instance().SetMaxElementsInSequence(7);
    EXPECT_TRUE(omi_Singleton<omu_TypeRegistryCache>::Instance().Inherits(0x130019, 0x130011));
    EXPECT_EQ(omi_Singleton<omu_TypeRegistryCache>::Instance().TypeIdOf("omu_PrimEnum"), 0x13001BU);
    EXPECT_EQ(omi_Singleton<omu_TypeRegistryCache>::Instance().Count(), 2);
    thr_ThreadSingleton<omu_CmdHistory>::Instance().Append("mdb.save()");
    auto& changes = thr_ThreadSingleton<omu_ChangeHistory>::Instance();
    changes.Begin("save");
    changes.Record([] {}, [] {});
    changes.Commit();
    UTI_CaeUtils_finalize(count);

    EXPECT_EQ(omi_Singleton<g3d_ColorMap>::Instance().Length(), 28);
    EXPECT_TRUE(omi_Singleton<omu_BackwardCompat>::Instance().AcceptDeprecated());
    EXPECT_EQ(omi_Singleton<omu_TextRepr>::Instance().GetMaxElementsInSequence(), limit);
    EXPECT_EQ(omi_Singleton<omu_TypeRegistryCache>::Instance().Count(), 0);
    EXPECT_EQ(thr_ThreadSingleton<omu_CmdHistory>::Instance().Count(), 0);
    EXPECT_EQ(thr_ThreadSingleton<omu_ChangeHistory>::Instance().UndoCount(), 0);

    // With all modules down nothing is known, and nothing wrong is remembered for later.
    EXPECT_FALSE(omi_Singleton<omu_TypeRegistryCache>::Instance().Inherits(0x130019, 0x130011));
    EXPECT_EQ(omi_Singleton<omu_TypeRegistryCache>::Instance().TypeIdOf("omu_PrimEnum"), 0U);
    UTI_CaeUtils_initialize(count);
    EXPECT_TRUE(omi_Singleton<omu_TypeRegistryCache>::Instance().Inherits(0x130019, 0x130011));
    UTI_CaeUtils_finalize(count);
}

TEST(omu_TypeRegistryCache, KeepsNoAnswerThatAFurtherModuleChanges) {
    constexpr unsigned error = 0x130003;
    constexpr unsigned root = 0x1F0001;
    int count = 0;
    omu_initialize(count);
    auto& cache = omi_Singleton<omu_TypeRegistryCache>::Instance();
    EXPECT_TRUE(cache.Inherits(error, 0x130001));
    EXPECT_FALSE(cache.Inherits(error, root));  // the class system's own classes are down
    UTI_BasicUtils_initialize(count);
    EXPECT_TRUE(cache.Inherits(error, root));
    EXPECT_FALSE(cache.Inherits(error, 0x130011));
    EXPECT_EQ(cache.Count(), 3);
    omu_finalize(count);
    UTI_BasicUtils_finalize(count);
}

TEST(UTI_CaeUtils, EnvironmentDecidesOnDeprecatedArgumentsAtTheStart) {
    struct Case {
        const char* developer;
        const char* deprecated;
        bool accepts;
    };
    for (const Case& expected :
         {Case{nullptr, nullptr, true}, Case{"", nullptr, false}, Case{"1", "ON", true},
          Case{nullptr, "OFF", false}, Case{nullptr, "on", true}, Case{"1", "on", false},
          Case{nullptr, "OFF ", true}}) {
        omi_Singleton<omu_BackwardCompat>::Instance().SetAcceptDeprecated(!expected.accepts);
        const Environment developer("TARVEX_DEVL_MODE", expected.developer);
        const Environment deprecated("TARVEX_DEPRECATED", expected.deprecated);
        int count = 0;
        UTI_CaeUtils_initialize(count);
        EXPECT_EQ(omi_Singleton<omu_BackwardCompat>::Instance().AcceptDeprecated(),
                  expected.accepts);
        UTI_CaeUtils_finalize(count);
    }
}

TEST(g3d_ColorMap, FindsUserThenDefaultColorsAndRefusesOtherNames) {
    g3d_ColorMap map;
    EXPECT_EQ(map.Length(), 28);
    EXPECT_EQ(map.ConstGet("Chartreuse"), g3d_Color(0.7F, 1, 0, 1));
    EXPECT_EQ(map.ConstGet("#FF"), g3d_Color(1, 0, 0, 1));
    EXPECT_FALSE(map.AddByRGB("Red", 0, 0, 1));
    EXPECT_TRUE(map.AddByRGB("red", 0, 0, 1));
    EXPECT_EQ(map.ConstGet("red"), g3d_Color(0, 0, 1, 1));
    EXPECT_EQ(map.Keys()[0], "Aqua");
    EXPECT_EQ(map.Keys()[28], "red");
    EXPECT_FALSE(map.Remove("Red"));
    EXPECT_TRUE(map.Remove("red"));
    try {
        static_cast<void>(map.ConstGet("red"));
        FAIL() << "an unknown name was found";
    } catch (const g3d_ColorErrorException& error) {
        EXPECT_EQ(error.JournalMessage(), "red is not a valid color name.");
        EXPECT_STREQ(error.SourcePath(), "generated/g3d/impl/g3d_ColorMap");
        EXPECT_EQ(error.SourceLine(), 247);
    }
}

}  // namespace
