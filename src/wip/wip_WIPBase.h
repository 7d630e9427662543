#pragma once

#include "mem_AllocationOperators.h"
#include "wip_WipReporter.h"

/// The front through which code reports progress: hands everything on to the attached reporter.
///
/// Without a reporter each reporting operation raises nex_AssertException and does nothing else.
/// What the reporter raises passes through.
class CAE_API wip_WIPBase : public mem_AllocationOperators {
public:
    wip_WIPBase() = default;
    wip_WIPBase(const wip_WIPBase&) = delete;
    wip_WIPBase& operator=(const wip_WIPBase&) = delete;

    /// Attaches \p reporter, which stays the caller's, in place of any other, which is not told.
    /// Null detaches.
    virtual void SetWipReporter(wip_WipReporter* reporter);
    virtual ~wip_WIPBase();

    /// The attached reporter, or null.
    [[nodiscard]] wip_WipReporter* GetWipReporter() const noexcept { return _reporter; }

    void Error(const atr_String& message, wip_errorLevelEnm level) const;
    void ErrorList(const cow_List<atr_String>& messages, wip_errorLevelEnm level) const;
    void Verbose(const atr_String& message) const;
    void Warning(const atr_String& message) const;
    void WarningList(const cow_List<atr_String>& messages) const;
    void FacilityMessage(const atr_String& message, int kind, int first, int second,
                         omu_PrimTuple& arguments) const;
    void Milestone(const atr_String& message) const;
    void Landmark(const atr_String& message) const;
    void Print(const atr_String& message) const;
    void Display(const atr_String& message) const;
    void Milestone(const atr_String& message, const atr_String& object, int done, int total) const;
    void Milestone(const atr_String& message, int number) const;
    /// Not 0 when the user has interrupted the command.
    [[nodiscard]] int Interrupted() const;
    void CommandDone() const;
    /// Raises if the user has interrupted the command.
    void InterruptedThrow() const;

private:
    wip_WipReporter& Reporter(int line) const;

    wip_WipReporter* _reporter = nullptr;
};
