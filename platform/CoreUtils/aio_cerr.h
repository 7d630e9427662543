#pragma once

#include "CoreUtilsExport.h"
#include "aio_ostream.h"

/// The standard error stream, flushed after every <<. Usable at any time, static constructors and
/// destructors included.
[[nodiscard]] CORE_API aio_ostream& aio_cerr() noexcept;
