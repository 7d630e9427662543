#include "wip_WIP.h"

#include "nex_AssertException.h"

wip_WIPBase::~wip_WIPBase() = default;

void wip_WIPBase::SetWipReporter(wip_WipReporter* reporter) { _reporter = reporter; }

wip_WipReporter& wip_WIPBase::Reporter(int line) const {
    if (_reporter == nullptr) {
        nex_AssertException("WipReporter != 0").Throw("generated/wip/impl/wip_WIP", line);
    }
    return *_reporter;
}

// Each operation is known by its number in the errors raised without a reporter. The numbers are
// part of the interface: they stay when this file changes.

void wip_WIPBase::Error(const atr_String& message, wip_errorLevelEnm level) const {
    Reporter(58).Error(message, level);
}

void wip_WIPBase::ErrorList(const cow_List<atr_String>& messages, wip_errorLevelEnm level) const {
    Reporter(66).ErrorList(messages, level);
}

void wip_WIPBase::Verbose(const atr_String& message) const { Reporter(73).Verbose(message); }

void wip_WIPBase::Warning(const atr_String& message) const { Reporter(80).Warning(message); }

void wip_WIPBase::WarningList(const cow_List<atr_String>& messages) const {
    Reporter(87).WarningList(messages);
}

void wip_WIPBase::FacilityMessage(const atr_String& message, int kind, int first, int second,
                                  omu_PrimTuple& arguments) const {
    Reporter(100).FacilityMessage(message, kind, first, second, arguments);
}

void wip_WIPBase::Milestone(const atr_String& message) const { Reporter(107).Milestone(message); }

void wip_WIPBase::Landmark(const atr_String& message) const { Reporter(114).Landmark(message); }

void wip_WIPBase::Print(const atr_String& message) const { Reporter(121).Print(message); }

void wip_WIPBase::Display(const atr_String& message) const { Reporter(128).Display(message); }

void wip_WIPBase::Milestone(const atr_String& message, const atr_String& object, int done,
                            int total) const {
    Reporter(136).Milestone(message, object, done, total);
}

void wip_WIPBase::Milestone(const atr_String& message, int number) const {
    Reporter(143).Milestone(message, number);
}

int wip_WIPBase::Interrupted() const { return Reporter(157).Interrupted(); }

void wip_WIPBase::CommandDone() const { Reporter(164).CommandDone(); }

void wip_WIPBase::InterruptedThrow() const { Reporter(171).InterruptedThrow(); }

wip_WIP::wip_WIP() : thr_ThreadSingletonBase<wip_WIP>(this) {}

wip_WIP::~wip_WIP() = default;
