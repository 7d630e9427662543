#pragma once

#include "host_ProgressText.h"
#include "wip_WipReporter.h"

#include <exception>
#include <functional>
#include <vector>

/// How the progress of long commands is shown.
enum class host_ProgressMode {
    Auto,   ///< a bar on a terminal, else lines
    Bar,    ///< one line, drawn over and over
    Lines,  ///< plain lines, fewer and fewer of them
    None,
};

/// What a reporter writes to and asks; tests plug in their own.
struct host_ProgressRoom {
    /// The terminal, the process's streams, and Python's pending signals.
    [[nodiscard]] static host_ProgressRoom Process();

    std::function<void(std::string_view)> write;  ///< on standard error
    std::function<void(std::string_view)> print;  ///< on standard output
    std::function<double()> now;                  ///< [s]
    std::function<int()> columns;                 ///< of the terminal; 0: there is none
    std::function<void()> checkInterrupt;         ///< raises if the user has interrupted
    std::function<void()> interrupt;              ///< interrupts once more
};

/// The host's reporter: shows milestones as a bar or as lines, messages as lines, and lets Ctrl-C
/// through.
///
/// A milestone of the same name and object as one before goes on with that step; the steps begun
/// since are over. One with done >= total ends its step, one with a negative done gives it up. At
/// most ten updates a second are shown, and none of a command that is over in 0.3 s. Errors and
/// warnings are always shown. For one thread.
class host_ProgressReporter final : public wip_WipReporter {
public:
    explicit host_ProgressReporter(host_ProgressMode mode = host_ProgressMode::Auto,
                                   host_ProgressRoom room = host_ProgressRoom::Process());
    ~host_ProgressReporter() override;

    /// The calling thread's reporter, if it is one of this class; else null.
    [[nodiscard]] static host_ProgressReporter* OfThread() noexcept;

    [[nodiscard]] host_ProgressMode Mode() const noexcept { return _mode; }
    void SetMode(host_ProgressMode mode);
    /// Whether a bar is what is shown.
    [[nodiscard]] bool HasBar() const;
    /// Wipes the bar, so that something else can be printed; it comes back with the next update.
    void Clear() noexcept;
    /// A command begins, maybe within another: CommandDone() ends it and its steps.
    void CommandBegins() noexcept { ++_depth; }

    void Error(const atr_String& message, wip_errorLevelEnm level) override;
    void Warning(const atr_String& message) override;
    void ErrorList(const cow_List<atr_String>& messages, wip_errorLevelEnm level) override;
    void WarningList(const cow_List<atr_String>& messages) override;
    void Verbose(const atr_String& message) override;
    void Milestone(const atr_String& message, int number) override;
    void Milestone(const atr_String& message, const atr_String& object, int done,
                   int total) override;
    void Milestone(const atr_String& message) override;
    void Landmark(const atr_String& message) override;
    void Print(const atr_String& message) override;
    void Display(const atr_String& message) override;
    int Interrupted() override;
    void CommandDone() override;
    void InterruptedThrow() override;

private:
    struct Step {
        host_ProgressStep shown;
        int depth;     // of commands, where it began
        double start;  // [s]
        int first;     // done, then
        bool hasLine = false;
        int lineDone = 0;  // what its last line said
    };

    void Reach(std::string name, int done, int total, bool isCounted);
    void Finish(double now);
    void Update(double now);
    [[nodiscard]] int Columns() const;
    void Draw(const Step& step, double now);
    void WriteLine(Step& step, double now);
    void Say(std::string_view prefix, const atr_String& message);

    host_ProgressMode _mode;
    host_ProgressRoom _room;
    bool _isOnTerminal;
    int _depth = 0;
    std::vector<Step> _steps;  // outer ones first
    bool _isBusy = false;      // from the first step of a command to its end
    double _begun = 0;         // since when
    double _updated;           // when something was shown last
    int _drawn = 0;            // columns of the bar on the terminal
    int _drawnDepth = 0;
    std::exception_ptr _pending;  // an interrupt that Interrupted() has told of
};

/// One command, from before its arguments are read to its end: then the calling thread's reporter
/// forgets the command's steps and wipes the bar.
class host_CommandProgress {
public:
    host_CommandProgress() noexcept : _reporter(host_ProgressReporter::OfThread()) {
        if (_reporter != nullptr) {
            _reporter->CommandBegins();
        }
    }
    ~host_CommandProgress() {
        if (_reporter != nullptr) {
            _reporter->CommandDone();
        }
    }
    host_CommandProgress(const host_CommandProgress&) = delete;
    host_CommandProgress& operator=(const host_CommandProgress&) = delete;

private:
    host_ProgressReporter* _reporter;
};
