#pragma once

#include "CaeUtilsExport.h"

/// Brings the module up: registers its classes. Only the first of nested calls works.
/// \param count  modules brought up: raised by 1 when this call works. From one thread at a time;
/// the sibling libraries and modules are neither needed nor brought up.
CAE_API void mdl_initialize(int& count);

/// Undoes one start.
/// \param count  lowered by 1 when this call works. A call too many wraps the counter.
CAE_API void mdl_finalize(int& count);
