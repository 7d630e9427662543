#pragma once

#include <string>
#include <string_view>

/// A step of a command and how far it is, as it is told to the user.
struct host_ProgressStep {
    std::string name;
    int done = 0;
    int total = 0;       ///< 0: not known; 100: in percent
    double rate = 0;     ///< items a second; 0: not known yet
    double elapsed = 0;  ///< [s]
    bool isCounted = true;
};

/// "1,234,567".
[[nodiscard]] std::string host_CountText(int count);
/// "0.25 /s", "850 /s", "12.3 k/s".
[[nodiscard]] std::string host_RateText(double rate);
/// "0:03", "1:02:03": what is still to be waited.
[[nodiscard]] std::string host_DurationText(double seconds);

/// "Judging cells [####......]  45 %  12.3 k/s  0:03 left" within that many columns. What there is
/// no room for is left out: first the bar, then the end of the line.
[[nodiscard]] std::string host_ProgressBar(const host_ProgressStep& step, int columns);
/// "Judging cells: 45 % (450,000 of 1,000,000), 0:03 left"; of a step that is done "Judging cells:
/// 100 % (1,000,000 of 1,000,000) in 7.3 s".
[[nodiscard]] std::string host_ProgressLine(const host_ProgressStep& step);

/// The beginning of UTF-8 \p text that needs no more columns, and how many it needs. Characters
/// that may be wide count as two; control characters become blanks.
struct host_Fitted {
    std::string text;
    int columns = 0;
};
[[nodiscard]] host_Fitted host_Fit(std::string_view text, int columns);
