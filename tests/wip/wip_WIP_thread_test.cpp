#include "wip_TextReporter.h"
#include "wip_WIP.h"

#include <gtest/gtest.h>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(wip_WIP, EachOfManyThreadsReportsThroughItsOwnFront) {
    constexpr int kThreads = 300;
    std::atomic<int> faults = 0;
    const auto run = [&](int number) {
        wip_TextReporter reporter;
        auto& front = thr_ThreadSingleton<wip_WIP>::Instance();
        faults += front.GetWipReporter() != nullptr ? 1 : 0;
        front.SetWipReporter(&reporter);
        for (int report = 0; report < 20; ++report) {
            thr_ThreadSingleton<wip_WIP>::Instance().Print(std::to_string(number));
        }
        const std::string line = "Print " + std::to_string(number) + "\n";
        faults += reporter.text.size() != 20 * line.size() ||
                          reporter.text.compare(0, line.size(), line) != 0
                      ? 1
                      : 0;
        faults += &front != thr_ThreadSingletonBase<wip_WIP>::Instance() ? 1 : 0;
    };
    // Waves, so that threads end while others start.
    std::vector<std::thread> threads;
    for (int number = 0; number < kThreads; ++number) {
        threads.emplace_back(run, number);
        if (threads.size() == 20) {
            threads.front().join();
            threads.erase(threads.begin());
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(faults, 0);
}

TEST(wip_WIP, TwoThreadsHaveTwoFrontsAndEachEndsWithItsThread) {
    wip_WIP* const mine = &thr_ThreadSingleton<wip_WIP>::Instance();
    EXPECT_EQ(mine, &thr_ThreadSingleton<wip_WIP>::Instance());
    wip_TextReporter reporter;
    mine->SetWipReporter(&reporter);
    std::thread([mine] {
        EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Instance(), nullptr);
        EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Destroy(), 0);
        EXPECT_NE(&thr_ThreadSingleton<wip_WIP>::Instance(), mine);
    }).join();
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Instance()->GetWipReporter(), &reporter);

    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Destroy(), 1);
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Instance(), nullptr);
    EXPECT_EQ(thr_ThreadSingletonBase<wip_WIP>::Destroy(), 0);
    EXPECT_EQ(thr_ThreadSingleton<wip_WIP>::Instance().GetWipReporter(), nullptr);
}

}  // namespace
