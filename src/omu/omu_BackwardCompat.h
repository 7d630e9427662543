#pragma once

#include "CaeUtilsExport.h"
#include "mem_AllocationOperators.h"

/// Whether commands accept deprecated arguments, for the whole process:
/// omi_Singleton<omu_BackwardCompat>::Instance(), made anew when the library starts.
class CAE_API omu_BackwardCompat : public mem_AllocationOperators {
public:
    /// Accepted unless the environment variable TARVEX_DEVL_MODE is set; then TARVEX_DEPRECATED
    /// decides if it is exactly "ON" or "OFF".
    omu_BackwardCompat();

    [[nodiscard]] bool AcceptDeprecated() const noexcept { return _acceptDeprecated; }
    void SetAcceptDeprecated(bool accept) noexcept { _acceptDeprecated = accept; }

private:
    bool _acceptDeprecated;
};
