#pragma once

#include "CoreUtilsExport.h"

/// Brings the library up: the first call (of those not yet undone) adds 1 to \p count, every
/// further one is only counted. From one thread at a time.
CORE_API void UTI_CoreUtils_initialize(int& count);

/// Undoes one initialise; the last one takes the library down and subtracts 1 from \p count.
/// Unbalanced calls are the caller's error: the counter wraps.
CORE_API void UTI_CoreUtils_finalize(int& count);
