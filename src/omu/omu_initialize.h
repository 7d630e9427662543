#pragma once

#include "CaeUtilsExport.h"

/// Brings the module up: registers its classes and reads whether deprecated arguments are
/// accepted. Only the first of nested calls works.
/// \param count  modules brought up: raised by 1 when this call works. From one thread at a time;
/// the sibling libraries and modules are neither needed nor brought up.
CAE_API void omu_initialize(int& count);

/// Undoes one start; the last destroys the module's process singletons and the calling thread's
/// command and change history. All are made anew, with defaults, on their next use.
/// \param count  lowered by 1 when this call works. A call too many wraps the counter.
CAE_API void omu_finalize(int& count);
