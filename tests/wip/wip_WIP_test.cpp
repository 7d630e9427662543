#include "wip_WIP.h"

#include "nex_AssertException.h"
#include "omu_PrimTuple.h"
#include "wip_TextReporter.h"
#include "wip_initialize.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <thread>

namespace {

wip_WIP& Front() { return thr_ThreadSingleton<wip_WIP>::Instance(); }

struct Operation {
    int line;
    const char* reported;
    std::function<void()> report;
};

const wip_errorLevelEnm kLevel = wip_errorLevelEnm(3);

std::vector<Operation> Operations() {
    static omu_PrimTuple arguments('(');
    const cow_List<atr_String> list = {"m", "n"};
    return {
        {58, "Error m 3", [] { Front().Error("m", kLevel); }},
        {66, "ErrorList m n 3", [=] { Front().ErrorList(list, kLevel); }},
        {73, "Verbose m", [] { Front().Verbose("m"); }},
        {80, "Warning m", [] { Front().Warning("m"); }},
        {87, "WarningList m n", [=] { Front().WarningList(list); }},
        {100, "Landmark m", [] { Front().FacilityMessage("m", 7, 1, 2, arguments); }},
        {107, "Milestone m", [] { Front().Milestone("m"); }},
        {114, "Landmark m", [] { Front().Landmark("m"); }},
        {121, "Print m", [] { Front().Print("m"); }},
        {128, "Display m", [] { Front().Display("m"); }},
        {136, "Milestone m o 1 2", [] { Front().Milestone("m", "o", 1, 2); }},
        {143, "Milestone m 5", [] { Front().Milestone("m", 5); }},
        {157, "Interrupted", [] { EXPECT_EQ(Front().Interrupted(), 17); }},
        {164, "CommandDone", [] { Front().CommandDone(); }},
        {171, "InterruptedThrow", [] { Front().InterruptedThrow(); }},
    };
}

TEST(wip_WIP, HandsEverythingOnToTheAttachedReporter) {
    wip_TextReporter first;
    wip_TextReporter reporter;
    Front().SetWipReporter(&first);
    Front().SetWipReporter(&reporter);
    for (const Operation& operation : Operations()) {
        reporter.text.clear();
        operation.report();
        EXPECT_EQ(reporter.text, operation.reported + std::string("\n"));
    }
    EXPECT_EQ(first.text, "");
}

TEST(wip_WIP, RaisesWithTheOperationsNumberWithoutAReporter) {
    ASSERT_EQ(Front().GetWipReporter(), nullptr);
    for (const Operation& operation : Operations()) {
        try {
            operation.report();
            FAIL() << operation.reported;
        } catch (const nex_AssertException& error) {
            EXPECT_EQ(error.AsString(), "WipReporter != 0");
            EXPECT_STREQ(error.SourcePath(), "generated/wip/impl/wip_WIP");
            EXPECT_EQ(error.SourceLine(), operation.line);
        }
    }
}

TEST(wip_WIP, FacilityMessagesAreSortedByTheirKind) {
    wip_TextReporter reporter;
    Front().SetWipReporter(&reporter);
    omu_PrimTuple arguments('(');
    const std::pair<int, const char*> kinds[] = {
        {0, "Warning m\n"},
        {1, "Warning m\n"},
        {2, "Warning m\n"},
        {3, "Warning m\n"},
        {4, "Milestone m\n"},
        {5, ""},
        {6, ""},
        {7, "Landmark m\n"},
        {8, "Verbose m\n"},
        {9, ""},
        {256, ""},
        {-1, ""},
        {-2147483647, ""},
    };
    for (const auto& [kind, reported] : kinds) {
        reporter.text.clear();
        Front().FacilityMessage("m", kind, 1, 2, arguments);
        EXPECT_EQ(reporter.text, reported) << kind;
    }
}

TEST(wip_WIP, ReporterLeavesTheFrontOfTheThreadThatDestroysIt) {
    auto reporter = std::make_unique<wip_TextReporter>();
    Front().SetWipReporter(reporter.get());
    wip_TextReporter().Print("of no front");
    EXPECT_EQ(Front().GetWipReporter(), reporter.get());

    auto* attached = reporter.get();
    std::thread([&] { reporter.reset(); }).join();
    EXPECT_EQ(Front().GetWipReporter(), attached);  // the caller's own business
    Front().SetWipReporter(nullptr);

    reporter = std::make_unique<wip_TextReporter>();
    Front().SetWipReporter(reporter.get());
    reporter.reset();
    EXPECT_EQ(Front().GetWipReporter(), nullptr);
}

TEST(wip_WIP, StopDestroysTheFrontAndNotTheReporter) {
    int count = 0;
    wip_initialize(count);
    thr_ThreadSingletonBase<wip_WIP>::Destroy();
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Destroy(), 0);
    wip_TextReporter reporter;
    Front().SetWipReporter(&reporter);
    wip_finalize(count);
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Instance(), nullptr);
    reporter.Print("still there");
    EXPECT_EQ(Front().GetWipReporter(), nullptr);
    thr_ThreadSingletonBase<wip_WIP>::Destroy();
}

}  // namespace
