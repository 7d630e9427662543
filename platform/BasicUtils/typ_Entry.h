#pragma once

#include "BasicUtilsExport.h"

#include <cstdint>

/// One class in a module's type table.
struct typ_Entry {
    /// What the entry describes.
    enum Kind : std::uint32_t { Unused = 0, Exception = 4, Persistent = 7 };

    std::uint32_t kind;  ///< a Kind
    std::uint32_t base;  ///< type identity of the base class; 1 is the root
    const char* name;    ///< class name; null for an unused index
};
