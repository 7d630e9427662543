#pragma once

#include "BasicUtilsExport.h"

/// Brings the class system up: enters the library's own type tables. Only the first of nested calls
/// works, and adds 1 to \p count.
BASIC_API void UTI_BasicUtils_initialize(int& count);
/// Undoes the matching initialise; the last one drops all type tables and class metadata and
/// subtracts 1 from \p count.
BASIC_API void UTI_BasicUtils_finalize(int& count);
