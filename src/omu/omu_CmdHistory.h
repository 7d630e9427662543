#pragma once

#include "CaeUtilsExport.h"
#include "cow_String.h"
#include "mem_AllocationOperators.h"
#include "thr_ThreadSingleton.h"

#include <functional>
#include <vector>

/// The calling thread's journal: the commands that succeeded, as the text that repeats each.
/// Reached as thr_ThreadSingleton<omu_CmdHistory>::Instance(); used by its own thread only.
class CAE_API omu_CmdHistory : public thr_ThreadSingletonBase<omu_CmdHistory>,
                               public mem_AllocationOperators {
public:
    /// Receives each command as it is appended, for instance to flush it to a file.
    using Sink = std::function<void(const cow_String& command)>;

    /// Called by thr_ThreadSingleton alone.
    omu_CmdHistory();
    virtual ~omu_CmdHistory();

    /// Appends \p command, then hands it to the sink and returns when that does. What the sink
    /// raises passes through; the command stays appended, since it has been executed.
    void Append(const cow_String& command);
    /// Number of commands.
    [[nodiscard]] int Count() const noexcept { return static_cast<int>(_commands.size()); }
    /// Command \p index, in [0, Count()), oldest first; valid until the next Append or Clear.
    /// Otherwise nex_TextException.
    [[nodiscard]] const cow_String& Command(int index) const;
    /// Forgets all commands; the sink stays.
    void Clear() noexcept { _commands.clear(); }
    /// Puts \p sink in place of any other; an empty one ends it. Not from within a sink.
    void SetSink(Sink sink) { _sink = std::move(sink); }

private:
    std::vector<cow_String> _commands;
    Sink _sink;
};
