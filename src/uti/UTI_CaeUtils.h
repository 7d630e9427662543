#pragma once

#include "CaeUtilsExport.h"

/// Brings the library up, its sibling libraries first, then its modules. Only the first of nested
/// calls works; every call wants its UTI_CaeUtils_finalize.
///
///     int count = 0;
///     UTI_CaeUtils_initialize(count);
///
/// \param count  what was brought up: grows by 1 for the library, 1 for each of its five modules
/// and what the siblings add. From one thread at a time; registering errors pass through.
CAE_API void UTI_CaeUtils_initialize(int& count);

/// Undoes one start; the last takes everything down in the reverse order and \p count back. A call
/// too many wraps the counter, after which starts only count until it is back at zero.
CAE_API void UTI_CaeUtils_finalize(int& count);
