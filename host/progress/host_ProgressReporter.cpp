#include "host_ProgressReporter.h"

#include "host_Interpreter.h"
#include "host_Progress.h"
#include "wip_WIP.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <sys/ioctl.h>
#include <typeinfo>
#include <unistd.h>

namespace {

constexpr double kUpdateEvery = 0.1;  // [s]
constexpr double kShort = 0.3;        // what is over sooner shows nothing
// Lines are written once a second at first, later when that part of the time has passed again.
constexpr double kLineEvery = 1;
constexpr double kLineShare = 0.1;
constexpr int kUsualColumns = 80;

void WriteTo(std::FILE* stream, std::string_view text) {
    std::fwrite(text.data(), 1, text.size(), stream);
    std::fflush(stream);
}

/// Columns of the terminal on standard error; 0 where there is none that can draw a line anew.
int TerminalColumns() {
    const char* const kind = std::getenv("TERM");
    if (::isatty(STDERR_FILENO) == 0 || (kind != nullptr && std::string_view(kind) == "dumb")) {
        return 0;
    }
    winsize size{};
    return ::ioctl(STDERR_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0 ? size.ws_col
                                                                             : kUsualColumns;
}

}  // namespace

host_ProgressRoom host_ProgressRoom::Process() {
    return {[](std::string_view text) { WriteTo(stderr, text); },
            [](std::string_view text) { WriteTo(stdout, text); },
            &host_Progress::Now,
            &TerminalColumns,
            &host_CheckInterrupt,
            &PyErr_SetInterrupt};
}

host_ProgressReporter::host_ProgressReporter(host_ProgressMode mode, host_ProgressRoom room)
    : _mode(mode),
      _room(std::move(room)),
      _isOnTerminal(_room.columns() > 0),
      _updated(_room.now() - kUpdateEvery) {}

host_ProgressReporter::~host_ProgressReporter() { Clear(); }

host_ProgressReporter* host_ProgressReporter::OfThread() noexcept {
    const wip_WIP* front = wip_WIP::Instance();
    wip_WipReporter* reporter = front != nullptr ? front->GetWipReporter() : nullptr;
    // Every command asks: the type's identity costs less than a dynamic_cast.
    return reporter != nullptr && typeid(*reporter) == typeid(host_ProgressReporter)
               ? static_cast<host_ProgressReporter*>(reporter)
               : nullptr;
}

bool host_ProgressReporter::HasBar() const {
    return _mode == host_ProgressMode::Bar || (_mode == host_ProgressMode::Auto && _isOnTerminal);
}

void host_ProgressReporter::SetMode(host_ProgressMode mode) {
    Clear();
    _mode = mode;
}

void host_ProgressReporter::Clear() noexcept {
    if (_drawn == 0) {
        return;
    }
    try {
        // Blanks, which every terminal knows; no more than there is room for by now.
        const int blanks = std::min(_drawn, Columns());
        _room.write("\r" + std::string(static_cast<std::size_t>(blanks), ' ') + "\r");
    } catch (...) {
        // The bar stays.
    }
    _drawn = 0;
}

// Steps.

void host_ProgressReporter::Milestone(const atr_String& message) {
    Reach(std::string(message.View()), 0, 0, false);
}

void host_ProgressReporter::Milestone(const atr_String& message, int number) {
    Reach(std::string(message.View()), std::max(number, 0), 0, true);
}

void host_ProgressReporter::Milestone(const atr_String& message, const atr_String& object, int done,
                                      int total) {
    std::string name(message.View());
    if (!object.IsEmpty()) {
        name += ' ';
        name += object.View();
    }
    Reach(std::move(name), done, std::max(total, 0), true);
}

void host_ProgressReporter::Reach(std::string name, int done, int total, bool isCounted) {
    const double now = _room.now();
    const auto found = std::find_if(_steps.begin(), _steps.end(), [&](const Step& step) {
        return step.shown.name == name && step.depth == _depth;
    });
    if (found != _steps.end()) {
        _steps.erase(found + 1, _steps.end());
    } else if (done < 0) {
        return;
    } else {
        if (!_isBusy) {
            _isBusy = true;
            _begun = now;
        }
        // Steps without a count have no end of their own: the next one ends them.
        if (!_steps.empty() && !_steps.back().shown.isCounted && _steps.back().depth == _depth) {
            _steps.pop_back();
        }
        _steps.push_back({{std::move(name), done, total, 0, 0, isCounted}, _depth, now, done});
    }
    Step& step = _steps.back();
    if (done >= 0 && done < step.shown.done) {
        step.start = now;  // it begins once more
        step.first = done;
    }
    const bool isOver = done < 0 || (total > 0 && done >= total);
    step.shown.done = done;
    step.shown.total = total;
    step.shown.elapsed = now - step.start;
    step.shown.rate = step.shown.elapsed > 0 ? (done - step.first) / step.shown.elapsed : 0;
    if (isOver) {
        Finish(now);
    } else {
        Update(now);
    }
}

void host_ProgressReporter::Finish(double now) {
    Step& step = _steps.back();
    if (step.shown.done >= 0 && step.hasLine && now - _updated >= kUpdateEvery) {
        WriteLine(step, now);
    }
    _steps.pop_back();
    if (_steps.empty()) {
        Clear();
        _isBusy = _depth > 0;
    }
}

void host_ProgressReporter::Update(double now) {
    if (_steps.empty() || _mode == host_ProgressMode::None || now - _updated < kUpdateEvery ||
        now - _begun < kShort) {
        return;
    }
    Step& step = _steps.back();
    if (HasBar()) {
        Draw(step, now);
        return;
    }
    const bool isNews = !step.hasLine || step.shown.done != step.lineDone;
    if (isNews && now - _updated >= std::max(kLineEvery, kLineShare * (now - step.start))) {
        WriteLine(step, now);
    }
}

int host_ProgressReporter::Columns() const {
    const int columns = _room.columns();
    // The last one stays free: some terminals go on to the next line behind it.
    return (columns > 0 ? columns : kUsualColumns) - 1;
}

void host_ProgressReporter::Draw(const Step& step, double now) {
    const std::string text = host_ProgressBar(step.shown, Columns());
    const int width = host_Fit(text, 1 << 20).columns;
    _room.write("\r" + text +
                std::string(static_cast<std::size_t>(std::max(_drawn - width, 0)), ' '));
    _drawn = std::max(width, 1);
    _drawnDepth = step.depth;
    _updated = now;
}

void host_ProgressReporter::WriteLine(Step& step, double now) {
    _room.write(host_ProgressLine(step.shown) + "\n");
    step.hasLine = true;
    step.lineDone = step.shown.done;
    _updated = now;
}

void host_ProgressReporter::CommandDone() {
    std::erase_if(_steps, [this](const Step& step) { return step.depth >= _depth; });
    if (_steps.empty() || _drawnDepth >= _depth) {
        Clear();
    }
    _depth = std::max(_depth - 1, 0);
    _isBusy = _isBusy && (_depth > 0 || !_steps.empty());
    if (_pending) {
        _pending = nullptr;
        _room.interrupt();  // the command has heard of it, but has not raised it
    }
}

// Interrupts.

void host_ProgressReporter::InterruptedThrow() {
    if (_pending) {
        std::rethrow_exception(std::exchange(_pending, nullptr));
    }
    _room.checkInterrupt();
}

int host_ProgressReporter::Interrupted() {
    if (!_pending) {
        try {
            _room.checkInterrupt();
        } catch (...) {
            _pending = std::current_exception();
        }
    }
    return _pending ? 1 : 0;
}

// Messages.

void host_ProgressReporter::Say(std::string_view prefix, const atr_String& message) {
    Clear();
    std::string line(prefix);
    line += message.View();
    line += '\n';
    _room.write(line);
}

void host_ProgressReporter::Error(const atr_String& message, wip_errorLevelEnm level) {
    Say(level == 0 ? "error: " : "error (level " + std::to_string(level) + "): ", message);
}

void host_ProgressReporter::Warning(const atr_String& message) { Say("warning: ", message); }

void host_ProgressReporter::ErrorList(const cow_List<atr_String>& messages,
                                      wip_errorLevelEnm level) {
    for (const atr_String& message : messages) {
        Error(message, level);
    }
}

void host_ProgressReporter::WarningList(const cow_List<atr_String>& messages) {
    for (const atr_String& message : messages) {
        Warning(message);
    }
}

void host_ProgressReporter::Verbose(const atr_String& /*message*/) {
    // Details for those who search for an error; the host has no such mode.
}

void host_ProgressReporter::Landmark(const atr_String& message) {
    if (_mode != host_ProgressMode::None) {
        Say({}, message);
    }
}

void host_ProgressReporter::Print(const atr_String& message) {
    Clear();
    _room.print(message.View());
}

void host_ProgressReporter::Display(const atr_String& message) {
    Clear();
    _room.print(std::string(message.View()) + "\n");
}
