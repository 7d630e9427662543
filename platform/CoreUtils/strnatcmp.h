#pragma once

#include "CoreUtilsExport.h"

/// Compares two texts in natural order: a run of digits counts as one number ("Step-9" comes before
/// "Step-10"), of any length; all else compares byte by byte, a shorter text first. Texts that
/// differ in leading zeros alone are ordered by the first such run, fewer zeros first ("7" before
/// "07"). Returns -1, 0 or 1; 0 for equal texts only: a total order. Locale-independent, never
/// allocates.
[[nodiscard]] CORE_API int strnatcmp(const char* a, const char* b) noexcept;

/// The same with ASCII capitals taken as small letters: 0 for texts equal but for their case.
[[nodiscard]] CORE_API int strnatcasecmp(const char* a, const char* b) noexcept;
