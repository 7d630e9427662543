#include "omu_CmdHistory.h"

#include "nex_TextException.h"

omu_CmdHistory::omu_CmdHistory() : thr_ThreadSingletonBase<omu_CmdHistory>(this) {}

omu_CmdHistory::~omu_CmdHistory() = default;

void omu_CmdHistory::Append(const cow_String& command) {
    _commands.push_back(command);
    if (_sink) {
        // A copy: the sink may append a command of its own.
        const cow_String appended = _commands.back();
        _sink(appended);
    }
}

const cow_String& omu_CmdHistory::Command(int index) const {
    if (index < 0 || index >= Count()) {
        nex_TextException(atr_String::Format("command %d of a history of %d", index, Count()))
            .Throw("generated/omu/impl/omu_CmdHistory", __LINE__);
    }
    return _commands[static_cast<std::size_t>(index)];
}
