#pragma once

#include "CaeUtilsExport.h"
#include "atr_String.h"
#include "cow_List.h"

class omu_PrimTuple;

/// How grave an error is. The host gives the values their meaning; they are passed on unchanged.
enum wip_errorLevelEnm : int;

/// Receives what long-running commands report: the host's user interface implements it and
/// attaches it to the front of each thread that may report (wip_WIP).
///
/// One reporter may serve several threads' fronts if it is made safe for that. The virtual
/// operations stand in a fixed order.
class CAE_API wip_WipReporter {
public:
    wip_WipReporter() = default;
    wip_WipReporter(const wip_WipReporter&) = delete;
    wip_WipReporter& operator=(const wip_WipReporter&) = delete;
    /// Detaches the reporter from the calling thread's front. From another thread's front it must
    /// have been detached there, or that front is left pointing at nothing.
    virtual ~wip_WipReporter();

    virtual void Error(const atr_String& message, wip_errorLevelEnm level) = 0;
    virtual void Warning(const atr_String& message) = 0;
    virtual void ErrorList(const cow_List<atr_String>& messages, wip_errorLevelEnm level) = 0;
    virtual void WarningList(const cow_List<atr_String>& messages) = 0;
    /// A message of some facility. By default kinds 0 to 3 are warnings, 4 a milestone, 7 a
    /// landmark, 8 verbose, and all others are dropped, as are the further ints and arguments.
    virtual void FacilityMessage(const atr_String& message, int kind, int first, int second,
                                 omu_PrimTuple& arguments);
    virtual void Verbose(const atr_String& message) = 0;
    virtual void Milestone(const atr_String& message, int number) = 0;
    virtual void Milestone(const atr_String& message, const atr_String& object, int done,
                           int total) = 0;
    virtual void Milestone(const atr_String& message) = 0;
    virtual void Landmark(const atr_String& message) = 0;
    virtual void Print(const atr_String& message) = 0;
    virtual void Display(const atr_String& message) = 0;
    /// Not 0 when the user has interrupted the command.
    [[nodiscard]] virtual int Interrupted() = 0;
    virtual void CommandDone() = 0;
    /// Raises, in the reporter's own way, if the user has interrupted the command.
    virtual void InterruptedThrow() = 0;
};
