#include "host_ProgressText.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace {

constexpr int kPercent = 100;  // a total that says no more than the percentage does
constexpr int kWidestBar = 40;
constexpr int kNarrowestBar = 5;

/// Three significant digits, as printf's %.3g gives in the C locale for numbers up to 999.
std::string ThreeDigits(double value) {
    char buffer[40];
    const auto end =
        std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, 3);
    return {buffer, end.ptr};
}

int Percent(const host_ProgressStep& step) {
    return static_cast<int>(100LL * std::clamp(step.done, 0, step.total) / step.total);
}

/// "0:03 left"; empty where that is not known.
std::string TimeLeft(const host_ProgressStep& step) {
    if (step.total == 0 || !(step.rate > 0)) {
        return {};
    }
    return host_DurationText(std::max(step.total - step.done, 0) / step.rate) + " left";
}

}  // namespace

std::string host_CountText(int count) {
    std::string text = std::to_string(count);
    for (std::size_t at = text.size(); at > 3;) {
        at -= 3;
        text.insert(at, ",");
    }
    return text;
}

std::string host_RateText(double rate) {
    const char* const units[] = {" /s", " k/s", " M/s", " G/s"};
    std::size_t unit = 0;
    // 999.5 would print as 1e+03.
    for (; rate >= 999.5 && unit < 3; ++unit) {
        rate /= 1000;
    }
    return (rate < 1e-3 ? "0" : ThreeDigits(std::min(rate, 999.0))) + units[unit];
}

std::string host_DurationText(double seconds) {
    const auto whole = static_cast<long long>(std::clamp(std::round(seconds), 0.0, 3.6e9));
    const auto two = [](long long number) {
        return std::string(number < 10 ? ":0" : ":") + std::to_string(number);
    };
    const long long minutes = whole / 60;
    return (minutes < 60 ? std::to_string(minutes)
                         : std::to_string(minutes / 60) + two(minutes % 60)) +
           two(whole % 60);
}

host_Fitted host_Fit(std::string_view text, int columns) {
    host_Fitted fitted;
    for (std::size_t at = 0; at < text.size();) {
        const auto lead = static_cast<unsigned char>(text[at]);
        std::size_t size = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
        size = std::min(size, text.size() - at);
        // From U+1100 on there are the scripts whose characters are wide.
        const int width = lead > 0xE1 || (lead == 0xE1 && size > 1 &&
                                          static_cast<unsigned char>(text[at + 1]) >= 0x84)
                              ? 2
                              : 1;
        if (fitted.columns + width > columns) {
            break;
        }
        fitted.columns += width;
        if (lead < 0x20 || lead == 0x7F) {
            fitted.text += ' ';
        } else {
            fitted.text += text.substr(at, size);
        }
        at += size;
    }
    return fitted;
}

std::string host_ProgressBar(const host_ProgressStep& step, int columns) {
    const host_Fitted name = host_Fit(step.name, columns);
    std::string tail;
    if (!step.isCounted) {
        tail = " ...";
    } else if (step.total == 0) {
        tail = "  " + host_CountText(step.done);
    } else {
        const std::string percent = std::to_string(Percent(step));
        tail = std::string(4 - percent.size(), ' ') + percent + " %";
    }
    if (step.isCounted && step.rate > 0 && step.total != kPercent) {
        tail += "  " + host_RateText(step.rate);
    }
    if (const std::string left = TimeLeft(step); !left.empty()) {
        tail += "  " + left;
    }
    const int room =
        std::min(columns - name.columns - static_cast<int>(tail.size()) - 3, kWidestBar);
    std::string bar;
    if (step.isCounted && step.total != 0 && room >= kNarrowestBar) {
        const auto width = static_cast<std::size_t>(room);
        const auto full = static_cast<std::size_t>(Percent(step)) * width / 100;
        bar = " [" + std::string(full, '#') + std::string(width - full, '.') + "]";
    }
    return host_Fit(name.text + bar + tail, columns).text;
}

std::string host_ProgressLine(const host_ProgressStep& step) {
    std::string text = host_Fit(step.name, 1000).text;
    if (!step.isCounted) {
        return text + " ...";
    }
    text += ": ";
    if (step.total == 0) {
        text += host_CountText(step.done);
        return step.rate > 0 ? text + " (" + host_RateText(step.rate) + ")" : text;
    }
    text += std::to_string(Percent(step)) + " %";
    if (step.total != kPercent) {
        text += " (" + host_CountText(step.done) + " of " + host_CountText(step.total) + ")";
    }
    if (step.done >= step.total) {
        return text + " in " +
               (step.elapsed < 60 ? ThreeDigits(step.elapsed) + " s"
                                  : host_DurationText(step.elapsed));
    }
    const std::string left = TimeLeft(step);
    return left.empty() ? text : text + ", " + left;
}
