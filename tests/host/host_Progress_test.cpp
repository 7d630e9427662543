#include "host_Progress.h"

#include "host_ProgressReporter.h"
#include "wip_WIP.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

double now;  // what the clocks below show
int clockReadings;

double Clock() {
    ++clockReadings;
    return now;
}

struct Interrupt : std::runtime_error {
    Interrupt() : std::runtime_error("interrupted") {}
};

/// A reporter on the test's clock, which writes down what it shows.
class Progress : public testing::Test {
protected:
    Progress() {
        now = 100;
        clockReadings = 0;
        host_ProgressRoom room;
        room.write = [this](std::string_view text) {
            written += text;
            times.push_back(now);
        };
        room.print = [this](std::string_view text) { printed += text; };
        room.now = [] { return now; };
        room.columns = [this] { return columns; };
        room.checkInterrupt = [this] {
            if (isInterrupted) {
                isInterrupted = false;
                throw Interrupt();
            }
        };
        room.interrupt = [this] { isInterrupted = true; };
        reporter.emplace(host_ProgressMode::Auto, room);
        Front().SetWipReporter(&*reporter);
    }
    ~Progress() override { Front().SetWipReporter(nullptr); }

    static wip_WIP& Front() { return thr_ThreadSingleton<wip_WIP>::Instance(); }

    /// Counts items that take that long each [s].
    static void Work(host_Progress& progress, int items, double seconds) {
        for (int i = 0; i < items; ++i) {
            now += seconds;
            progress.Count();
        }
    }
    /// What stands on the terminal: of each line what was written over it last.
    [[nodiscard]] std::string Screen() const {
        std::string screen;
        std::string line;
        std::size_t at = 0;
        for (const char c : written) {
            if (c == '\r') {
                at = 0;
            } else if (c == '\n') {
                screen += line + "\n";
                line.clear();
                at = 0;
            } else {
                line.resize(std::max(line.size(), at + 1), ' ');
                line[at++] = c;
            }
        }
        line.erase(line.find_last_not_of(' ') + 1);
        return screen + line;
    }

    int columns = 80;
    bool isInterrupted = false;
    std::string written;
    std::string printed;
    std::vector<double> times;  // of each writing
    std::optional<host_ProgressReporter> reporter;
};

TEST_F(Progress, ShowsABarThatIsWipedInTheEnd) {
    {
        host_Progress progress("Judging cells", 1'000'000, &Clock);
        Work(progress, 450'000, 1e-5);
        EXPECT_EQ(Screen(), "Judging cells [" + std::string(16, '#') + std::string(21, '.') +
                                "]  44 %  100 k/s  0:06 left");
    }
    EXPECT_EQ(Screen(), "");
    EXPECT_LT(clockReadings, 3000);
    for (std::size_t i = 1; i + 1 < times.size(); ++i) {
        EXPECT_GE(times[i] - times[i - 1], 0.1 - 1e-9);
    }
}

TEST_F(Progress, ShowsNothingOfShortWorkOrOnRequest) {
    const auto work = [](double seconds) {
        const host_CommandProgress command;
        host_Progress progress("Working", 1000, &Clock);
        Work(progress, 1000, seconds / 1000);
    };
    for (const int terminal : {0, 80}) {
        columns = terminal;
        work(0.29);
        work(0.29);
    }
    reporter->SetMode(host_ProgressMode::None);
    work(100);
    EXPECT_EQ(written, "");
}

TEST_F(Progress, WritesLinesElsewhere) {
    reporter->SetMode(host_ProgressMode::Lines);
    {
        host_Progress progress("Judging cells", 1'000'000, &Clock);
        Work(progress, 1'000'000, 1e-5);
    }
    // The clock is looked at every few milliseconds, so the numbers are near these.
    ASSERT_EQ(times.size(), 10U) << written;
    EXPECT_TRUE(written.starts_with("Judging cells: 9 % (9")) << written;
    EXPECT_NE(written.find("\nJudging cells: 20 % (20"), std::string::npos) << written;
    EXPECT_NE(written.find(" of 1,000,000), 0:09 left\n"), std::string::npos) << written;
    EXPECT_TRUE(written.ends_with("\nJudging cells: 100 % (1,000,000 of 1,000,000) in 9.95 s\n"))
        << written;
    written.clear();
    {
        host_Progress progress("Reading", 0, &Clock);
        Work(progress, 300'000, 1e-5);
    }
    EXPECT_TRUE(written.starts_with("Reading: ")) << written;
    EXPECT_NE(written.find(" (100 k/s)\n"), std::string::npos) << written;
}

TEST_F(Progress, KeepsToTheWidthOfTheTerminal) {
    for (columns = 1; columns < 120; ++columns) {
        written.clear();
        now += 1;
        Front().Milestone(
            "M\xC3\xA4\xC3\x9F"
            "e \xE6\xB8\xAC\n",
            "of x", 0, 1'000'000);
        now += 1;
        Front().Milestone(
            "M\xC3\xA4\xC3\x9F"
            "e \xE6\xB8\xAC\n",
            "of x", 12'345, 1'000'000);
        EXPECT_LE(host_Fit(Screen(), 1000).columns, std::max(columns - 1, 0)) << Screen();
        EXPECT_EQ(written.find('\n'), std::string::npos);
    }
    EXPECT_EQ(Screen(),
              "M\xC3\xA4\xC3\x9F"
              "e \xE6\xB8\xAC  of x [" +
                  std::string(40, '.') + "]   1 %  12.3 k/s  1:20 left");
}

TEST_F(Progress, GoesBackToTheOuterStep) {
    host_Progress outer("Reading files", 10, &Clock);
    outer.Look();
    for (int file = 0; file < 2; ++file) {
        const host_CommandProgress command;
        host_Progress inner("Judging cells", 100, &Clock);
        inner.Look();
        Work(inner, 50, 0.02);
        inner.Look();
        EXPECT_TRUE(Screen().starts_with("Judging cells [")) << Screen();
        reporter->Print("text\n");
        EXPECT_EQ(Screen(), "");
        EXPECT_EQ(printed, "text\n");
        printed.clear();
    }
    now += 1;
    outer.Count(2);
    outer.Look();
    EXPECT_TRUE(Screen().starts_with("Reading files [#######....")) << Screen();
    EXPECT_TRUE(Screen().ends_with(" 20 %  0.667 /s  0:12 left")) << Screen();
}

TEST_F(Progress, LetsInterruptsThrough) {
    EXPECT_NO_THROW(host_Poll());
    isInterrupted = true;
    EXPECT_THROW(host_Poll(), Interrupt);

    int done = 0;
    try {
        const host_CommandProgress command;
        host_Progress progress("Working", 1'000'000, &Clock);
        for (; done < 1'000'000; ++done) {
            isInterrupted = isInterrupted || done == 500'000;
            now += 1e-5;
            progress.Count();
        }
        ADD_FAILURE();
    } catch (const Interrupt&) {
        EXPECT_LT(done, 500'000 + 2'000);  // 20 ms
    }
    EXPECT_EQ(Screen(), "");
    EXPECT_EQ(written.find("100 %"), std::string::npos);

    // A command that has only asked is interrupted once more when it is done.
    {
        const host_CommandProgress command;
        isInterrupted = true;
        EXPECT_EQ(Front().Interrupted(), 1);
        EXPECT_EQ(Front().Interrupted(), 1);
        EXPECT_FALSE(isInterrupted);
    }
    EXPECT_TRUE(isInterrupted);
}

TEST_F(Progress, ShowsMessagesBesideTheBar) {
    const host_CommandProgress command;
    Front().Milestone("Meshing");
    now += 1;
    Front().Milestone("Meshing");
    EXPECT_EQ(Screen(), "Meshing ...");
    Front().Warning("thin cells");
    Front().Error("no cells", wip_errorLevelEnm(0));
    Front().Error("no nodes", wip_errorLevelEnm(2));
    Front().Verbose("details");
    Front().Landmark("Meshed.");
    EXPECT_EQ(Screen(),
              "warning: thin cells\nerror: no cells\nerror (level 2): no nodes\nMeshed.\n");
    now += 1;
    Front().Milestone("Cells", 12'345);
    EXPECT_TRUE(Screen().ends_with("Meshed.\nCells  12,345")) << Screen();
    reporter->SetMode(host_ProgressMode::None);
    written.clear();
    Front().Landmark("Meshed.");
    Front().Warning("thin cells");
    EXPECT_EQ(Screen(), "warning: thin cells\n");
}

TEST_F(Progress, DoesNothingInAThreadWithoutReporter) {
    isInterrupted = true;
    std::thread([] {
        host_Progress progress("Working", 1'000'000);
        Work(progress, 100'000, 0);
        host_Poll();
        const host_CommandProgress command;
    }).join();
    EXPECT_TRUE(isInterrupted);
    EXPECT_EQ(written, "");
}

TEST(ProgressText, Numbers) {
    EXPECT_EQ(host_CountText(0) + host_CountText(999) + host_CountText(1000), "09991,000");
    EXPECT_EQ(host_CountText(2147483647), "2,147,483,647");
    const std::pair<double, const char*> rates[] = {
        {0.25, "0.25 /s"},   {12, "12 /s"},      {999.4, "999 /s"}, {999.6, "1 k/s"},
        {12345, "12.3 k/s"}, {2.5e6, "2.5 M/s"}, {1e15, "999 G/s"}, {1e-9, "0 /s"}};
    for (const auto& [rate, text] : rates) {
        EXPECT_EQ(host_RateText(rate), text);
    }
    const std::pair<double, const char*> durations[] = {
        {0.4, "0:00"}, {3, "0:03"}, {59.6, "1:00"}, {3723, "1:02:03"}, {1e99, "1000000:00:00"}};
    for (const auto& [seconds, text] : durations) {
        EXPECT_EQ(host_DurationText(seconds), text);
    }
}

}  // namespace
