#include "host_Progress.h"

#include "wip_WIP.h"

#include <algorithm>
#include <chrono>
#include <climits>
#include <cstdio>
#include <exception>

namespace {

constexpr double kLookEvery = 0.004;  // [s]
constexpr double kPollEvery = 0.015;
constexpr double kReportEvery = 0.1;
constexpr double kFirstReport = 0.05;
constexpr std::size_t kNever = static_cast<std::size_t>(-1);

/// The calling thread's front if it has a reporter, else null. Makes no front.
const wip_WIP* Front() noexcept {
    const wip_WIP* front = wip_WIP::Instance();
    return front != nullptr && front->GetWipReporter() != nullptr ? front : nullptr;
}

}  // namespace

double host_Progress::Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

host_Progress::~host_Progress() {
    if (!_hasReported || Front() == nullptr) {
        return;
    }
    try {
        const bool isLost = _isGivenUp || std::uncaught_exceptions() > _unwinding;
        const std::size_t total = _total == 0 ? _done : _total;
        Report(isLost ? -1 : Scaled(total), Scaled(total));
    } catch (...) {
        // The reporter forgets the work when the command is done.
    }
}

void host_Progress::Look() {
    const wip_WIP* front = Front();
    if (front == nullptr) {
        _next = kNever;
        return;
    }
    const double now = _clock();
    if (!_hasLooked) {
        _hasLooked = true;
        _unwinding = std::uncaught_exceptions();
        _polled = now;
        // Where somebody looks before the first item, the speed is known from then on.
        _reported = now - kReportEvery + (_done == 0 ? 0 : kFirstReport);
        _looked = now;
    }
    // As many items as take the time between two looks at the present speed, but at most twice as
    // many as before: the clock may be coarse, and items may become slower.
    const std::size_t items = std::max<std::size_t>(_done - _lookedAt, 1);
    const double wanted = static_cast<double>(items) * kLookEvery / std::max(now - _looked, 1e-9);
    const double most = 2.0 * static_cast<double>(items);
    _next = _done + static_cast<std::size_t>(std::clamp(wanted, 1.0, most));
    _lookedAt = _done;
    _looked = now;
    if (now - _polled >= kPollEvery) {
        _polled = now;
        front->InterruptedThrow();
    }
    if (now - _reported >= kReportEvery - 1e-9 && (_total == 0 || _done < _total)) {
        _reported = now;
        _hasReported = true;
        Report(Scaled(_done), Scaled(_total));
    }
}

void host_Progress::Report(int done, int total) const {
    Front()->Milestone(_name, {}, done, total);
}

/// Shares, and numbers beyond an int, are told in hundredths.
int host_Progress::Scaled(std::size_t count) const noexcept {
    if (_total != 0 && (_isShare || _total > INT_MAX)) {
        const double share = static_cast<double>(count) / static_cast<double>(_total);
        return static_cast<int>(std::min(share, 1.0) * 100);
    }
    return static_cast<int>(std::min<std::size_t>(count, INT_MAX));
}

void host_Poll() {
    if (const wip_WIP* front = Front()) {
        front->InterruptedThrow();
    }
}

void host_Print(std::string_view text) {
    if (const wip_WIP* front = Front()) {
        front->Print(text);
    } else {
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
    }
}
